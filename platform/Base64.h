#pragma once
// Base64 in the standard alphabet with "=" padding.
#include <string>
#include <string_view>

class Base64 {
public:
    // Encodes bytes; `lineLength` > 0 breaks the output into lines of that
    // many characters.
    static std::string Encode(std::string_view bytes, size_t lineLength = 0);
};

class Base64Decoder {
public:
    // Decodes text, passing over white space. Answers false (and what was
    // decoded up to the problem) on a character outside the alphabet or on
    // a truncated group.
    static bool Decode(std::string_view text, std::string& bytes);
    static std::string Decode(std::string_view text);
};
