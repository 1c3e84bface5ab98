// Any bytes read as a TaskPaper list. See ImportFuzz.h for what is checked.
#include "ImportFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return FuzzImport(data, size, ImportableText::Kind::TaskPaper, "input.taskpaper");
}
