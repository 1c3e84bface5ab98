#pragma once
// Fills a new document's attribute table with the system attributes.
class Hypertext;
class Props;

// Builds the whole system table into `props`; with a document, also reads
// its named colours and link types.
void BuildSystemAttributes(Props* props, Hypertext* hypertext = nullptr);
