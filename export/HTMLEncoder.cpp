#include "HTMLEncoder.h"

#include "StyledText.h"

namespace {

char32_t Lower(char32_t c) { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c; }

bool StartsWithNoCase(std::u32string_view text, size_t i, std::u32string_view prefix) {
    if (text.size() - i < prefix.size())
        return false;
    for (size_t k = 0; k < prefix.size(); ++k)
        if (Lower(text[i + k]) != Lower(prefix[k]))
            return false;
    return true;
}

bool IsAsciiAlnum(char32_t c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); }

}  // namespace

TagState::TagState(std::u32string open, std::u32string close) : openTag(std::move(open)), closeTag(std::move(close)) {}

bool TagState::Inside(std::u32string_view text, size_t i) {
    switch (state) {
    case kOutside:
        if (StartsWithNoCase(text, i, openTag))
            state = kInOpenTag;
        return false;
    case kInOpenTag:
        if (text[i] == '>')
            state = kInside;
        return false;
    case kInside:
        if (StartsWithNoCase(text, i, closeTag)) {
            state = kInCloseTag;
            return false;
        }
        return true;
    case kInCloseTag:
        if (text[i] == '>')
            state = kOutside;
        return false;
    }
    return false;
}

std::u32string HTMLEncoder::CodePoints(std::string_view utf8) {
    std::u16string units = Utf8ToUtf16(utf8);
    std::u32string out;
    out.reserve(units.size());
    for (size_t i = 0; i < units.size(); ++i) {
        char16_t u = units[i];
        if (u >= 0xD800 && u < 0xDC00 && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000) {
            out.push_back(0x10000 + ((char32_t(u) - 0xD800) << 10) + (units[i + 1] - 0xDC00));
            ++i;
        } else if (u >= 0xD800 && u < 0xE000) {
            out.push_back(0xFFFD);
        } else {
            out.push_back(u);
        }
    }
    return out;
}

void HTMLEncoder::AppendUTF8(std::string& out, char32_t c) {
    if (c > 0x10FFFF || (c >= 0xD800 && c < 0xE000))
        c = 0xFFFD;
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (c >> 6)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (c >> 12)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (c >> 18)));
        out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
}

std::string HTMLEncoder::AsEntity(long c) {
    if (c == -54)
        return " ";
    if (c == 0xFFFC)
        return "";
    if (c == '&')
        return "&amp;";
    if (c >= 0 && c < 127)
        return std::string(1, static_cast<char>(c));
    static const char digits[] = "0123456789ABCDEF";
    std::string hex;
    for (unsigned long v = static_cast<unsigned long>(c); v; v >>= 4)
        hex.insert(hex.begin(), digits[v & 0xF]);
    return "&#x" + hex + ";";
}

bool HTMLEncoder::IsEntity(std::u32string_view text, size_t i) {
    for (size_t k = i + 1; k < text.size(); ++k) {
        char32_t c = text[k];
        if (c == ';')
            return true;
        if (!IsAsciiAlnum(c) && c != '#')
            return false;
    }
    return false;
}

std::string HTMLEncoder::EntityFilter(std::string_view text, bool keepAmpersands, bool encodeAngles) {
    TagState codeState;
    return EntityFilter(text, keepAmpersands, encodeAngles, codeState);
}

std::string HTMLEncoder::EntityFilter(std::string_view text, bool keepAmpersands, bool encodeAngles, TagState& codeState) {
    std::u32string points = CodePoints(text);
    std::string out;
    out.reserve(text.size() + text.size() / 5);
    for (size_t i = 0; i < points.size(); ++i) {
        char32_t c = points[i];
        bool inCode = codeState.Inside(points, i);
        if (c == '&') {
            if (keepAmpersands || IsEntity(points, i))
                out += '&';
            else
                out += "&amp;";
        } else if (c == '<') {
            out += encodeAngles || inCode ? "&lt;" : "<";
        } else if (c == '>') {
            out += encodeAngles || inCode ? "&gt;" : ">";
        } else {
            out += AsEntity(static_cast<long>(c));
        }
    }
    return out;
}

std::string HTMLEncoder::EncodeAmpersands(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        if (c == '&')
            out += "&amp;";
        else
            out += c;
    }
    return out;
}

std::string HTMLEncoder::EncodeQuotes(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        if (c == '"')
            out += "&quot;";
        else
            out += c;
    }
    return out;
}
