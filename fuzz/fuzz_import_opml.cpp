// Any bytes read as an OPML file (".opml"): a bad one becomes the
// "Imported OPML" note. See ImportFuzz.h for what is checked.
#include "ImportFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return FuzzImport(data, size, ImportableText::Kind::OPML, "input.opml");
}
