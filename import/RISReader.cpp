#include "RISReader.h"

#include <cstring>

#include "ImportManager.h"
#include "Node.h"
#include "NodeHelpers.h"

namespace {

// "TY  - JOUR": a tag of two capitals or a capital and a digit, two blanks,
// "-", then the value after one blank. Some writers leave the value's blank
// out when the value is empty ("ER  -").
bool IsTagLine(std::string_view line, std::string& tag, std::string& value) {
    if (line.size() < 5)
        return false;
    auto capital = [](char c) { return c >= 'A' && c <= 'Z'; };
    auto digit = [](char c) { return c >= '0' && c <= '9'; };
    if (!capital(line[0]) || !(capital(line[1]) || digit(line[1])) || line.substr(2, 3) != "  -")
        return false;
    tag = std::string(line.substr(0, 2));
    std::string_view rest = line.substr(5);
    if (!rest.empty() && rest.front() == ' ')
        rest.remove_prefix(1);
    while (!rest.empty() && (rest.back() == ' ' || rest.back() == '\r'))
        rest.remove_suffix(1);
    value = std::string(rest);
    return true;
}

} // namespace

bool RISReader::CanRead(std::string_view text) { return text.find("\nER  -") != std::string_view::npos; }

std::vector<RISReader::Record> RISReader::Parse(std::string_view text) {
    std::vector<Record> records;
    Record current;
    bool open = false;
    size_t start = 0;
    long number = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string_view::npos)
            end = text.size();
        std::string_view line = text.substr(start, end - start);
        start = end + 1;
        ++number;
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        std::string tag, value;
        if (IsTagLine(line, tag, value)) {
            if (!open) {
                current = Record();
                current.line = number;
                open = true;
            }
            current.raw.append(line).append("\n");
            if (tag == "ER") {
                records.push_back(std::move(current));
                open = false;
                continue;
            }
            current.tags.emplace_back(tag, value);
        } else if (open && !line.empty()) {
            current.raw.append(line).append("\n");
            size_t first = line.find_first_not_of(" \t");
            if (!current.tags.empty() && first != std::string_view::npos) {
                current.tags.back().second += " ";
                current.tags.back().second.append(line.substr(first));
            }
        }
    }
    return records;
}

const char* RISReader::AttributeFor(const std::string& tag) {
    static const std::pair<const char*, const char*> table[] = {
        {"TY", "RefType"},     {"AU", "Authors"},     {"A1", "Authors"},         {"A2", "Author2"},
        {"A3", "Author3"},     {"A4", "Author4"},     {"TI", "ReferenceTitle"},  {"T1", "ReferenceTitle"},
        {"CT", "ArticleTitle"}, {"BT", "BookTitle"},  {"T2", "BookTitle"},       {"JO", "Journal"},
        {"JF", "Journal"},     {"JA", "Journal"},     {"PB", "Publisher"},       {"PY", "PublicationYear"},
        {"Y1", "PublicationYear"}, {"CY", "PublicationCity"}, {"KW", "RefKeywords"}, {"CN", "CallNumber"},
        {"ET", "Edition"},     {"VL", "Volume"},      {"Y2", "AccessDate"},      {"SN", "ISBN"},
        {"DO", "DOI"},         {"IS", "Issue"},       {"SP", "Pages"},           {"UR", "ReferenceURL"},
        {"AB", "Abstract"},    {"N2", "Abstract"},
    };
    for (const auto& [t, attribute] : table)
        if (tag == t)
            return attribute;
    return nullptr;
}

std::string RISReader::Title(const Record& record) {
    for (const char* tag : {"TI", "T1", "CT", "BT", "T2"})
        for (const auto& [t, value] : record.tags)
            if (t == tag && !value.empty())
                return value;
    return "";
}

size_t RISReader::Import(const std::vector<Record>& records, ImportManager& manager, Node* parent) {
    Node* last = nullptr;
    size_t made = 0;
    for (const Record& record : records) {
        Node* note = manager.MakeNote(Title(record), parent, last);
        if (!note)
            break;
        last = note;
        ++made;
        // Repeated tags of a set attribute gather; of any other the first wins,
        // but pages join their start and end.
        std::vector<std::pair<std::string, std::string>> values;
        std::string startPage, endPage, notes;
        for (const auto& [tag, value] : record.tags) {
            if (tag == "SP") {
                if (startPage.empty())
                    startPage = value;
            } else if (tag == "EP") {
                if (endPage.empty())
                    endPage = value;
            }
            else if (tag == "N1")
                notes += (notes.empty() ? "" : "\n") + value;
            const char* attribute = AttributeFor(tag);
            if (!attribute || value.empty() || tag == "SP")
                continue;
            bool isSet = !std::strcmp(attribute, "Authors") || !std::strcmp(attribute, "RefKeywords");
            bool found = false;
            for (auto& [name, gathered] : values)
                if (name == attribute) {
                    found = true;
                    if (isSet)
                        gathered += ";" + value;
                }
            if (!found)
                values.emplace_back(attribute, value);
        }
        if (!startPage.empty())
            values.emplace_back("Pages", endPage.empty() ? startPage : startPage + "-" + endPage);
        for (const auto& [name, value] : values)
            note->Set(name, value);
        note->Set("ReferenceRIS", record.raw);
        if (!notes.empty())
            NodeText(note).SetText(notes);
    }
    return made;
}
