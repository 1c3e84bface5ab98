#pragma once
// Fresh UUIDs in their upper-case text form, for documents.
#include <string>

std::string NewUUIDString();
