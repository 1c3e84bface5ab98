#include "AttributeType.h"

#include <cctype>

namespace {

// The words by code; codes without a word are written "string".
const char* const kWords[] = {"string", "color", "number", "file",     "boolean", "date",     "",
                              "",       "set",   "url",    "list",     "",        "interval", "dictionary"};
constexpr int kWordCount = sizeof kWords / sizeof kWords[0];

}  // namespace

int AttributeType::FromString(const std::string& word) {
    std::string lower;
    lower.reserve(word.size());
    for (char c : word) lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (lower.empty()) return kString;
    for (int code = 0; code < kWordCount; ++code) {
        if (lower == kWords[code]) return code;
    }
    return kString;
}

std::string AttributeType::TypeStringFor(int code) {
    if (code < 0 || code >= kWordCount || kWords[code][0] == '\0') return "string";
    return kWords[code];
}
