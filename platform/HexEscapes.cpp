#include "HexEscapes.h"

int HexEscapes::DigitValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

std::string HexEscapes::Decode(std::string_view text, char mark) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        int high, low;
        if (text[i] == mark && i + 2 < text.size() && (high = DigitValue(text[i + 1])) >= 0 &&
            (low = DigitValue(text[i + 2])) >= 0) {
            out += static_cast<char>(high * 16 + low);
            i += 2;
        } else {
            out += text[i];
        }
    }
    return out;
}
