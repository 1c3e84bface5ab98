#include "VCard.h"

#include <algorithm>
#include <cctype>

#include "HexEscapes.h"
#include "Node.h"
#include "NodeHelpers.h"

namespace {

std::string Upper(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

std::string Trim(std::string_view s) {
    while (!s.empty() && std::isspace(static_cast<unsigned char>(s.front())))
        s.remove_prefix(1);
    while (!s.empty() && std::isspace(static_cast<unsigned char>(s.back())))
        s.remove_suffix(1);
    return std::string(s);
}

// The parts of a structured value, split at unescaped ";".
std::vector<std::string> Parts(const std::string& raw) {
    std::vector<std::string> parts(1);
    for (size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] == ';') {
            parts.emplace_back();
        } else if (raw[i] == '\\' && i + 1 < raw.size()) {
            // The escape stays for ParseRight; what it escapes splits nothing.
            parts.back() += raw[i];
            parts.back() += raw[++i];
        } else {
            parts.back() += raw[i];
        }
    }
    return parts;
}

// Whether a line's parameters (before its first ":") say its value is
// quoted-printable.
bool IsQuotedPrintable(std::string_view line) {
    // Names and parameters are short; a long line without ":" is looked at
    // no further than this, so that joining many lines stays linear.
    std::string left = Upper(line.substr(0, std::min<size_t>(line.find(':'), 256)));
    return left.find("QUOTED-PRINTABLE") != std::string::npos;
}

// Lines with folded continuations joined, and the line each began on.
std::vector<std::pair<std::string, long>> Unfold(std::string_view text) {
    std::vector<std::pair<std::string, long>> lines;
    size_t start = 0;
    long number = 0;
    bool softBreak = false;
    while (start <= text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string_view::npos)
            end = text.size();
        std::string_view line = text.substr(start, end - start);
        ++number;
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (!lines.empty() && softBreak)
            lines.back().first.append(line);
        else if (!line.empty() && (line[0] == ' ' || line[0] == '\t') && !lines.empty())
            lines.back().first.append(line.substr(1));
        else if (!line.empty())
            lines.emplace_back(std::string(line), number);
        // A quoted-printable value whose line ends in "=" goes on in the
        // next line, which is not indented.
        softBreak = false;
        if (!lines.empty() && !lines.back().first.empty() && lines.back().first.back() == '=' &&
            IsQuotedPrintable(lines.back().first)) {
            lines.back().first.pop_back();
            softBreak = true;
        }
        if (end == text.size())
            break;
        start = end + 1;
    }
    return lines;
}

std::string Join(const std::vector<std::string>& parts, const std::string& separator) {
    std::string out;
    for (const std::string& p : parts) {
        std::string t = Trim(p);
        if (t.empty())
            continue;
        if (!out.empty())
            out += separator;
        out += t;
    }
    return out;
}

} // namespace

bool VCard::ParseLine(std::string_view line, Field& field) {
    bool quoted = false;
    for (size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            quoted = !quoted;
        else if (line[i] == ':' && !quoted) {
            ParseLeft(line.substr(0, i), field);
            field.value = std::string(line.substr(i + 1));
            return !field.name.empty();
        }
    }
    return false;
}

void VCard::ParseLeft(std::string_view left, Field& field) {
    std::vector<std::string> parts(1);
    for (char c : left) {
        if (c == ';')
            parts.emplace_back();
        else
            parts.back() += c;
    }
    std::string name = Upper(Trim(parts[0]));
    size_t dot = name.rfind('.');
    if (dot != std::string::npos)
        name.erase(0, dot + 1);
    field.name = name;
    field.parameters.clear();
    for (size_t i = 1; i < parts.size(); ++i)
        field.parameters.push_back(Upper(Trim(parts[i])));
}

std::string VCard::ParseRight(std::string_view right) {
    std::string out;
    for (size_t i = 0; i < right.size(); ++i) {
        if (right[i] == '\\' && i + 1 < right.size()) {
            char next = right[++i];
            out += (next == 'n' || next == 'N') ? '\n' : next;
        } else {
            out += right[i];
        }
    }
    return out;
}

void VCard::Parse(std::string_view text) {
    fields.clear();
    begun = ended = false;
    for (auto& [line, number] : Unfold(text)) {
        Field field;
        if (!ParseLine(line, field))
            continue;
        field.line = number;
        for (const std::string& p : field.parameters)
            if (p == "QUOTED-PRINTABLE" || p == "ENCODING=QUOTED-PRINTABLE") {
                field.value = HexEscapes::Decode(field.value, '=');
                break;
            }
        std::string value = Upper(Trim(field.value));
        if (field.name == "BEGIN" && value == "VCARD") {
            begun = true;
            continue;
        }
        if (field.name == "END" && value == "VCARD") {
            ended = begun;
            break;
        }
        if (begun)
            fields.push_back(std::move(field));
    }
}

std::vector<VCard> VCard::AllIn(std::string_view text) {
    std::vector<VCard> cards;
    size_t pos = 0;
    while (true) {
        size_t begin = pos;
        // Each card runs from a BEGIN line to the next line whose name (the
        // text before its first ":") is END. Lines are walked once each, so
        // that a long line costs no more than its length.
        size_t found = std::string_view::npos;
        for (size_t lineStart = begin; lineStart < text.size();) {
            size_t lineEnd = text.find('\n', lineStart);
            size_t next = lineEnd == std::string_view::npos ? text.size() : lineEnd + 1;
            std::string_view line = text.substr(lineStart, next - lineStart);
            size_t colon = line.find(':');
            if (colon != std::string_view::npos && Upper(Trim(line.substr(0, colon))) == "END") {
                found = next;
                break;
            }
            lineStart = next;
        }
        if (found == std::string_view::npos)
            break;
        VCard card(text.substr(begin, found - begin));
        if (card.IsValid())
            cards.push_back(std::move(card));
        pos = found;
    }
    return cards;
}

bool VCard::IsValid(std::string_view text) {
    for (const VCard& card : AllIn(text))
        if (card.IsValid())
            return true;
    return false;
}

const VCard::Field* VCard::First(const std::string& name, const std::string& parameter) const {
    for (const Field& f : fields) {
        if (f.name != name)
            continue;
        if (parameter.empty())
            return &f;
        for (const std::string& p : f.parameters)
            if (p.find(parameter) != std::string::npos)
                return &f;
    }
    return nullptr;
}

std::string VCard::FullName() const {
    if (const Field* f = First("FN")) {
        std::string name = Trim(ParseRight(f->value));
        if (!name.empty())
            return name;
    }
    if (const Field* n = First("N")) {
        std::vector<std::string> parts = Parts(n->value);
        std::vector<std::string> ordered;
        for (size_t i : {3, 1, 2, 0, 4})
            if (i < parts.size())
                ordered.push_back(ParseRight(parts[i]));
        return Join(ordered, " ");
    }
    return "";
}

std::string VCard::EMail() const {
    const Field* f = First("EMAIL");
    return f ? Trim(ParseRight(f->value)) : "";
}

std::string VCard::Telephone() const {
    const Field* f = First("TEL");
    return f ? Trim(ParseRight(f->value)) : "";
}

std::string VCard::HomeTelephone() const {
    const Field* f = First("TEL", "HOME");
    return f ? Trim(ParseRight(f->value)) : "";
}

std::string VCard::Address() const {
    const Field* f = First("ADR");
    if (!f)
        return "";
    std::vector<std::string> parts = Parts(f->value);
    for (std::string& p : parts)
        p = ParseRight(p);
    return Join(parts, ", ");
}

std::string VCard::AIM() const {
    const Field* f = First("X-AIM");
    return f ? Trim(ParseRight(f->value)) : "";
}

std::string VCard::Org() const {
    const Field* f = First("ORG");
    if (!f)
        return "";
    std::vector<std::string> parts = Parts(f->value);
    for (std::string& p : parts)
        p = ParseRight(p);
    return Join(parts, ", ");
}

std::string VCard::ABUID() const {
    const Field* f = First("X-ABUID");
    return f ? Trim(ParseRight(f->value)) : "";
}

std::string VCard::FirstContaining(const std::string& key) const {
    std::string upper = Upper(key);
    for (const Field& f : fields)
        if (f.name.find(upper) != std::string::npos)
            return Trim(ParseRight(f.value));
    return "";
}

std::string VCard::ReadableText() const {
    static const std::pair<const char*, const char*> labels[] = {
        {"FN", "Name"},   {"ORG", "Organization"}, {"TITLE", "Title"}, {"TEL", "Telephone"},
        {"EMAIL", "Email"}, {"ADR", "Address"},    {"URL", "URL"},     {"BDAY", "Birthday"},
        {"NOTE", "Note"},  {"X-AIM", "AIM"},
    };
    std::string text;
    for (const auto& [name, label] : labels) {
        for (const Field& f : fields) {
            if (f.name != name)
                continue;
            std::vector<std::string> parts = Parts(f.value);
            for (std::string& p : parts)
                p = ParseRight(p);
            std::string value = Join(parts, ", ");
            if (value.empty())
                continue;
            text += label;
            for (const std::string& p : f.parameters) {
                std::string kind = p.rfind("TYPE=", 0) == 0 ? p.substr(5) : p;
                if (kind == "HOME" || kind == "WORK" || kind == "CELL")
                    text += " (" + kind + ")";
            }
            text += ": " + value + "\n";
        }
    }
    return text;
}

void VCard::For(Node* note) const {
    note->SetName(FullName());
    NodeText(note).SetText(ReadableText());
    note->Set("FullName", FullName());
    if (!EMail().empty())
        note->Set("Email", EMail());
    if (!Org().empty())
        note->Set("Organization", Org());
    if (!Telephone().empty())
        note->Set("Telephone", Telephone());
    if (const Field* f = First("ADR")) {
        std::vector<std::string> parts = Parts(f->value);
        parts.resize(std::max<size_t>(parts.size(), 7));
        // Post box, extended, street, city, region, postal code, country.
        std::string street = Join({ParseRight(parts[0]), ParseRight(parts[1]), ParseRight(parts[2])}, ", ");
        if (!street.empty())
            note->Set("Address", street);
        static const char* const attributes[] = {"City", "State", "PostalCode", "Country"};
        for (int i = 0; i < 4; ++i) {
            std::string value = Trim(ParseRight(parts[3 + i]));
            if (!value.empty())
                note->Set(attributes[i], value);
        }
    }
}
