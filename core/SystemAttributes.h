#pragma once
// Fills a new document's attribute table with the system attributes.
class Props;

void BuildSystemAttributes(Props* props);
