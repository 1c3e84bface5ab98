// Any bytes read as a table, comma- or tab-separated as its first line
// tells. See ImportFuzz.h for what is checked.
#include "ImportFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return FuzzImport(data, size, ImportableText::Kind::Spreadsheet);
}
