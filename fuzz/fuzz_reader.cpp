// Feeds bytes to TalvikReader. Whatever it accepts must write out, read back
// and write out again to the same bytes.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string_view>

#include "Hypertext.h"
#include "TalvikReader.h"
#include "TalvikWriter.h"

namespace {

bool ReadInto(Hypertext& doc, std::string_view bytes) {
    TalvikReader reader(doc.Root());
    return reader.Read(bytes);
}

std::string WriteOut(const Hypertext& doc) {
    std::ostringstream out;
    TalvikWriter(&doc).Write(out);
    return out.str();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    Hypertext first;
    if (!ReadInto(first, bytes))
        return 0;
    std::string written = WriteOut(first);
    Hypertext second;
    if (!ReadInto(second, written)) {
        std::fprintf(stderr, "the writer's own output did not read back\n");
        std::abort();
    }
    if (WriteOut(second) != written) {
        std::fprintf(stderr, "a second trip changed the bytes\n");
        std::abort();
    }
    return 0;
}
