#pragma once
// Bytes written as a mark and two hex digits: "%C3%A9" in URLs,
// "=C3=A9" in quoted-printable text.
#include <string>
#include <string_view>

class HexEscapes {
public:
    // The value of a hex digit of either case; -1 for anything else.
    static int DigitValue(char c);
    // The text with each `mark` that stands before two hex digits replaced
    // by the byte they write; any other mark stays as it is.
    static std::string Decode(std::string_view text, char mark);
};
