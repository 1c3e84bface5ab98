// Feeds bytes to TalvikReader. Whatever it accepts must write out, read back
// and write out again to the same bytes. The bytes are also read with the
// parse handed to a second thread part way through, which must read as many
// notes and links, or fail with the same message.
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

// What a read came to: whether it succeeded, its message, what it made.
std::string ReadInto(Hypertext& doc, std::string_view bytes, size_t backgroundFrom = XMLReader::kBackgroundThreshold) {
    TalvikReader reader(doc.Root());
    reader.SetBackgroundThreshold(backgroundFrom);
    bool ok = reader.Read(bytes);
    return (ok ? "read " : "failed ") + reader.ErrorMessage() + " " + std::to_string(reader.NoteCount()) + " notes " +
           std::to_string(reader.LinkCount()) + " links";
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
    std::string outcome = ReadInto(first, bytes);
    if (size > 1) {
        // Split where the last byte says, so that the fuzzer steers it.
        size_t from = data[size - 1] * size / 256;
        Hypertext split;
        std::string splitOutcome = ReadInto(split, bytes, from);
        if (splitOutcome != outcome) {
            std::fprintf(stderr, "a parse split at byte %zu read differently: \"%s\" against \"%s\"\n", from,
                         splitOutcome.c_str(), outcome.c_str());
            std::abort();
        }
    }
    if (outcome.rfind("read ", 0) != 0)
        return 0;
    std::string written = WriteOut(first);
    Hypertext second;
    if (ReadInto(second, written).rfind("read ", 0) != 0) {
        std::fprintf(stderr, "the writer's own output did not read back\n");
        std::abort();
    }
    if (WriteOut(second) != written) {
        std::fprintf(stderr, "a second trip changed the bytes\n");
        std::abort();
    }
    return 0;
}
