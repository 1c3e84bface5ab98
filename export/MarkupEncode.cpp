#include "MarkupEncode.h"

#include <cctype>

#include "ExportTemplate.h"

MarkupEncode::MarkupEncode(std::string name, std::string arguments, Kind kind)
    : MarkupExportElement(std::move(name), std::move(arguments)), kind(kind) {}

std::string MarkupEncode::EncodeQuotes(const std::string& text) {
    std::string out;
    for (char c : text)
        out += c == '"' ? std::string("&quot;") : std::string(1, c);
    return out;
}

std::string MarkupEncode::EncodeAmpersands(const std::string& text) {
    std::string out;
    for (char c : text)
        out += c == '&' ? std::string("&amp;") : std::string(1, c);
    return out;
}

std::string MarkupEncode::URLEncode(const std::string& text) {
    // The characters a URL query may hold as they are.
    static const std::string kAllowed = "-._~!$&'()*+,;=:@/?";
    static const char* const kHex = "0123456789ABCDEF";
    std::string out;
    for (unsigned char c : text) {
        if (std::isalnum(c) || kAllowed.find(static_cast<char>(c)) != std::string::npos) {
            out += static_cast<char>(c);
        } else {
            out += '%';
            out += kHex[c >> 4];
            out += kHex[c & 15];
        }
    }
    return out;
}

std::string MarkupEncode::IdentifierFor(const std::string& text) {
    std::string out;
    bool gap = false;
    for (size_t i = 0; i < text.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(text[i]);
        bool letter = std::isalpha(c) != 0;
        bool digit = std::isdigit(c) != 0;
        if (i == 0) {
            if (letter || c == '_') {
                out += static_cast<char>(c);
            } else {
                out += '_';
                if (digit)
                    out += static_cast<char>(c);
                else
                    gap = true;
            }
            continue;
        }
        if (letter || digit || c == '_') {
            out += static_cast<char>(c);
            gap = false;
        } else if (!gap) {
            out += '_';
            gap = true;
        }
    }
    return out;
}

std::string MarkupEncode::BackslashEncode(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '"' || c == '\'' || c == '\\')
            out += '\\';
        out += c;
    }
    return out;
}

std::string MarkupEncode::OPMLEncode(const std::string& text) {
    std::string out;
    for (char c : text) {
        switch (c) {
        case '\n':
        case '\r': out += "&#10;"; break;
        case '"': out += "&quot;"; break;
        case '&': out += "&amp;"; break;
        case '\'': out += "&apos;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        default: out += c;
        }
    }
    return out;
}

std::string MarkupEncode::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    std::string text = EvaluateArgument(TrimQuotes(arguments), node, exportTemplate);
    switch (kind) {
    case kEntities:
        if (UsingEntities(exportTemplate))
            text = EncodeAmpersands(EncodeQuotes(EntityFilter(text, node, exportTemplate)));
        return text;
    case kURL: return URLEncode(text);
    case kIdentifier: return IdentifierFor(text);
    case kBackslash: return BackslashEncode(text);
    case kOPML: return OPMLEncode(text);
    }
    return text;
}
