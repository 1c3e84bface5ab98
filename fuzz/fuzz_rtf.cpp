// Feeds bytes to the RTF and RTFD readers, and checks that what they read
// survives a trip through the writer.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "StyledText.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    StyledText text = StyledText::IsRTFD(bytes) ? StyledText::FromRTFD(bytes) : StyledText::FromRTF(bytes);
    // Whatever was read, the writer's own form must read back the same.
    std::string rtf = text.ToRTF();
    StyledText again = StyledText::FromRTF(rtf);
    if (again.ToRTF() != rtf)
        std::abort();
    return 0;
}
