#include "XMLWriter.h"

#include <array>
#include <charconv>
#include <cmath>

namespace {

// What each byte needs: 0 plain, 1 an entity, 2 a control character,
// 3 the start of a multibyte UTF-8 sequence (or a stray byte).
constexpr std::array<uint8_t, 256> MakeClasses() {
    std::array<uint8_t, 256> classes{};
    for (int i = 0; i < 32; ++i)
        classes[i] = 2;
    classes['&'] = classes['<'] = classes['>'] = classes['"'] = classes['\''] = 1;
    for (int i = 0x80; i < 256; ++i)
        classes[i] = 3;
    return classes;
}

constexpr std::array<uint8_t, 256> kClasses = MakeClasses();

// Length of the valid UTF-8 sequence at `p`, or 0 when it is invalid or a
// character that XML refuses (surrogates, U+FFFE, U+FFFF).
size_t ValidSequence(const unsigned char* p, size_t available) {
    unsigned char c = p[0];
    size_t length;
    uint32_t code;
    if (c >= 0xC2 && c <= 0xDF) {
        length = 2;
        code = c & 0x1F;
    } else if (c >= 0xE0 && c <= 0xEF) {
        length = 3;
        code = c & 0x0F;
    } else if (c >= 0xF0 && c <= 0xF4) {
        length = 4;
        code = c & 0x07;
    } else {
        return 0;
    }
    if (available < length)
        return 0;
    for (size_t i = 1; i < length; ++i) {
        if ((p[i] & 0xC0) != 0x80)
            return 0;
        code = (code << 6) | (p[i] & 0x3F);
    }
    if ((length == 3 && code < 0x800) || (length == 4 && (code < 0x10000 || code > 0x10FFFF)))
        return 0;
    if ((code >= 0xD800 && code <= 0xDFFF) || code == 0xFFFE || code == 0xFFFF)
        return 0;
    return length;
}

} // namespace

XMLWriter::~XMLWriter() { Flush(); }

void XMLWriter::Flush() {
    if (out && !buffer.empty()) {
        out->write(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        buffer.clear();
    }
}

void XMLWriter::ToXML(std::string_view text, std::string& out, bool attribute) {
    if (text.size() == 1 && (text[0] == '1' || text[0] == '0')) {
        out += text[0];
        return;
    }
    const auto* p = reinterpret_cast<const unsigned char*>(text.data());
    size_t n = text.size();
    size_t plainStart = 0;
    size_t i = 0;
    while (i < n) {
        uint8_t kind = kClasses[p[i]];
        if (kind == 0) {
            ++i;
            continue;
        }
        if (kind == 3) {
            size_t length = ValidSequence(p + i, n - i);
            if (length > 0) {
                i += length;
                continue;
            }
        }
        out.append(text.data() + plainStart, i - plainStart);
        switch (p[i]) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        case '\'': out += "&apos;"; break;
        case '\r': out += "&#13;"; break;
        case '\n': out += attribute ? "&#10;" : "\n"; break;
        case '\t': out += attribute ? "&#9;" : "\t"; break;
        default: break;   // what XML cannot hold is left out
        }
        ++i;
        plainStart = i;
    }
    out.append(text.data() + plainStart, n - plainStart);
}

std::string XMLWriter::ToXML(std::string_view text, bool attribute) {
    std::string out;
    out.reserve(text.size());
    ToXML(text, out, attribute);
    return out;
}

std::string XMLWriter::FormatDouble(double value) {
    if (!std::isfinite(value))
        return "0";
    char digits[32];
    auto result = std::to_chars(digits, digits + sizeof digits, value);
    return std::string(digits, result.ptr);
}

void XMLWriter::Declaration() { buffer += "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"; }

void XMLWriter::Open(std::string_view name) {
    buffer += '<';
    buffer += name;
    buffer += ' ';
}

void XMLWriter::Put(std::string_view name, std::string_view value) {
    buffer += name;
    buffer += "=\"";
    ToXML(value, buffer, true);
    buffer += "\" ";
}

void XMLWriter::PutBoolean(std::string_view name, bool value) { Put(name, value ? "1" : "0"); }

void XMLWriter::PutDouble(std::string_view name, double value) { Put(name, FormatDouble(value)); }

void XMLWriter::PutUnsigned(std::string_view name, unsigned long value) {
    char digits[24];
    auto result = std::to_chars(digits, digits + sizeof digits, value);
    Put(name, std::string_view(digits, static_cast<size_t>(result.ptr - digits)));
}

void XMLWriter::PutLong(std::string_view name, long value) {
    char digits[24];
    auto result = std::to_chars(digits, digits + sizeof digits, value);
    Put(name, std::string_view(digits, static_cast<size_t>(result.ptr - digits)));
}

void XMLWriter::PutRect(std::string_view name, double x, double y, double width, double height) {
    Put(name, FormatDouble(x) + "," + FormatDouble(y) + "," + FormatDouble(width) + "," + FormatDouble(height));
}

void XMLWriter::EndTag(bool newline) {
    buffer += newline ? ">\n" : ">";
    MaybeFlush();
}

void XMLWriter::EndEmptyTag() {
    buffer += "/>\n";
    MaybeFlush();
}

void XMLWriter::Close(std::string_view name) {
    buffer += "</";
    buffer += name;
    buffer += ">\n";
    MaybeFlush();
}

void XMLWriter::Text(std::string_view text) {
    ToXML(text, buffer, false);
    MaybeFlush();
}

void XMLWriter::Element(std::string_view name, std::string_view text) {
    buffer += '<';
    buffer += name;
    buffer += '>';
    ToXML(text, buffer, false);
    buffer += "</";
    buffer += name;
    buffer += ">\n";
    MaybeFlush();
}
