// Any bytes pasted as text: recognition picks the reader (RIS, table, cards,
// OPML, tab outline or one plain note). See ImportFuzz.h for what is checked.
#include "ImportFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return FuzzImport(data, size, ImportableText::Kind::Any);
}
