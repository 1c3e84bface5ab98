#include "Spreadsheet.h"

#include <set>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "Attribute.h"
#include "AttributeType.h"
#include "Hypertext.h"
#include "ImportManager.h"
#include "Node.h"
#include "Props.h"
#include "STime.h"

namespace {

// Reads one record from `pos`: fields split at `delimiter`, a field that
// begins with a quote running to its closing quote ("" inside stands for
// one), across line ends too. Stops after the newline that ends the record.
// Answers false when the text ended inside quotes; `newlines` counts the
// line ends passed.
bool ReadRecord(std::string_view text, size_t& pos, char delimiter, std::vector<std::string>& fields,
                long& newlines) {
    fields.clear();
    std::string field;
    bool quoted = false, inQuotes = false, atStart = true;
    while (pos < text.size()) {
        char c = text[pos++];
        if (inQuotes) {
            if (c == '"') {
                if (pos < text.size() && text[pos] == '"') {
                    field += '"';
                    ++pos;
                } else {
                    inQuotes = false;
                }
            } else {
                if (c == '\n')
                    ++newlines;
                field += c;
            }
            continue;
        }
        if (c == '\n') {
            ++newlines;
            fields.push_back(std::move(field));
            return true;
        }
        if (c == delimiter) {
            fields.push_back(std::move(field));
            field.clear();
            quoted = false;
            atStart = true;
            continue;
        }
        if (c == '"' && atStart) {
            quoted = inQuotes = true;
            atStart = false;
            continue;
        }
        // Blanks between a closing quote and the delimiter are dropped.
        if (quoted && (c == ' ' || c == '\t'))
            continue;
        atStart = false;
        field += c;
    }
    fields.push_back(std::move(field));
    return !inQuotes;
}

std::string Normalize(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '\r') {
            out += '\n';
            if (i + 1 < text.size() && text[i + 1] == '\n')
                ++i;
        } else {
            out += c;
        }
    }
    return out;
}

bool HasCommaBeforeTab(std::string_view line) {
    size_t comma = line.find(','), tab = line.find('\t');
    return comma != std::string_view::npos && (tab == std::string_view::npos || comma < tab);
}

bool Empty(const std::vector<std::string>& fields) { return fields.size() == 1 && fields[0].empty(); }

} // namespace

SpreadsheetLine::SpreadsheetLine(std::string_view text, char delimiter) {
    size_t pos = 0;
    long newlines = 0;
    ReadRecord(text, pos, delimiter, fields, newlines);
}

const std::string& SpreadsheetLine::GetField(size_t index) const {
    static const std::string none;
    return index < fields.size() ? fields[index] : none;
}

std::string SpreadsheetLine::TrimQuotes(std::string_view field) {
    if (field.size() < 2 || field.front() != '"' || field.back() != '"')
        return std::string(field);
    field = field.substr(1, field.size() - 2);
    std::string out;
    for (size_t i = 0; i < field.size(); ++i) {
        out += field[i];
        if (field[i] == '"' && i + 1 < field.size() && field[i + 1] == '"')
            ++i;
    }
    return out;
}

Spreadsheet::Spreadsheet(std::string_view text, char d) : delimiter(d) {
    std::string normal = Normalize(text);
    if (!delimiter) {
        std::string_view first(normal);
        first = first.substr(0, first.find('\n'));
        delimiter = HasCommaBeforeTab(first) ? ',' : '\t';
    }
    Parse(normal);
}

void Spreadsheet::Parse(std::string_view text) {
    size_t pos = 0;
    long line = 1;
    std::vector<std::string> fields;
    while (pos < text.size()) {
        long start = line;
        bool closed = ReadRecord(text, pos, delimiter, fields, line);
        if (!closed) {
            unterminatedLine = start;
            return;
        }
        if (!Empty(fields))
            lines.emplace_back(SpreadsheetLine(std::string_view(), delimiter)).fields = std::move(fields);
    }
}

bool Spreadsheet::LooksLikeTable(std::string_view text) {
    std::string normal = Normalize(text.substr(0, 64 * 1024));
    std::string_view view(normal);
    std::string_view first = view.substr(0, view.find('\n'));
    char delimiter = HasCommaBeforeTab(first) ? ',' : '\t';
    size_t pos = 0, count = 0, width = 0;
    long newlines = 0;
    std::vector<std::string> fields;
    // Up to ten lines are looked at; a record cut off by the end of what is
    // looked at is not counted.
    while (pos < view.size() && count < 10) {
        if (!ReadRecord(view, pos, delimiter, fields, newlines))
            break;
        if (Empty(fields))
            continue;
        if (fields.size() < 2 || (width && fields.size() != width))
            return false;
        width = fields.size();
        ++count;
    }
    return count >= 2;
}

std::vector<std::string> Spreadsheet::Columns() const {
    return lines.empty() ? std::vector<std::string>() : lines.front().Fields();
}

size_t Spreadsheet::NameColumn() const {
    std::vector<std::string> columns = Columns();
    for (size_t i = 0; i < columns.size(); ++i)
        if (columns[i] == "Name" || columns[i] == "name")
            return i;
    return 0;
}

std::string Spreadsheet::MakeAttributeName(std::string_view column) {
    // Attribute names may be written with a leading "$"; it is no part of them.
    if (!column.empty() && column.front() == '$')
        column.remove_prefix(1);
    std::string name;
    int32_t i = 0, length = static_cast<int32_t>(column.size());
    while (i < length) {
        int32_t start = i;
        UChar32 c;
        U8_NEXT(column.data(), i, length, c);
        if (c >= 0 && u_isalnum(c))
            name.append(column.substr(start, i - start));
        else
            name += '_';
    }
    // A name may not begin with a digit: such a column keeps its digits
    // behind a "_" rather than being dropped.
    if (!name.empty() && name[0] >= '0' && name[0] <= '9')
        name.insert(0, "_");
    return name;
}

bool Spreadsheet::CouldBeNumeric(std::string_view value) {
    bool point = false;
    for (size_t i = 0; i < value.size(); ++i) {
        char c = value[i];
        if ((c >= '0' && c <= '9') || c == ' ' || c == ',' || c == '$')
            continue;
        if (c == '.' && !point) {
            point = true;
            continue;
        }
        if (c == '-' && i == 0)
            continue;
        return false;
    }
    return true;
}

bool Spreadsheet::CouldBeBoolean(std::string_view value) {
    return value.empty() || value == "TRUE" || value == "true" || value == "FALSE" || value == "false" ||
           value == "0" || value == "1";
}

bool Spreadsheet::CouldBeDate(const std::string& value) { return value.empty() || STime::IsDate(value); }

std::string Spreadsheet::PrepareNumeric(std::string_view value) {
    std::string out;
    for (char c : value)
        if (c != '$' && c != ',' && c != ' ')
            out += c;
    return out;
}

std::string Spreadsheet::PrepareBoolean(std::string_view value) {
    return (value == "TRUE" || value == "true" || value == "1") ? "true" : "false";
}

std::vector<std::string> Spreadsheet::ProposeNewAttributes(ImportManager& manager) const {
    std::vector<std::string> columns = Columns();
    std::vector<std::string> names(columns.size());
    Props* props = manager.GetHypertext()->AttributeStorage();
    size_t nameColumn = NameColumn();
    // Each attribute takes its value from the first column that names it;
    // the name column sets the name.
    std::set<std::string> taken{"Name"};
    for (size_t c = 0; c < columns.size(); ++c) {
        if (c == nameColumn)
            continue;
        std::string name = MakeAttributeName(columns[c]);
        if (name.empty() || !taken.insert(name).second)
            continue;
        if (Attribute* known = props->Find(name)) {
            if (known->IsEditable() && !known->IsAttributeCategory())
                names[c] = name;
            continue;
        }
        bool numeric = true, boolean = true, date = true, any = false;
        for (size_t r = 1; r < lines.size() && (numeric || boolean || date); ++r) {
            const std::string& value = lines[r].GetField(c);
            any = any || !value.empty();
            numeric = numeric && CouldBeNumeric(value);
            boolean = boolean && CouldBeBoolean(value);
            date = date && CouldBeDate(value);
        }
        int type = !any      ? AttributeType::kString
                   : numeric ? AttributeType::kNumber
                   : boolean ? AttributeType::kBoolean
                   : date    ? AttributeType::kDate
                             : AttributeType::kString;
        names[c] = manager.MakeUserAttribute(name, type);
    }
    return names;
}

size_t Spreadsheet::Import(ImportManager& manager, Node* container) const {
    if (lines.empty())
        return 0;
    std::vector<std::string> names = ProposeNewAttributes(manager);
    Props* props = manager.GetHypertext()->AttributeStorage();
    std::vector<const Attribute*> attributes(names.size(), nullptr);
    for (size_t c = 0; c < names.size(); ++c)
        if (!names[c].empty())
            attributes[c] = props->Find(names[c]);
    size_t nameColumn = NameColumn();
    Node* last = nullptr;
    size_t made = 0;
    for (size_t r = 1; r < lines.size(); ++r) {
        const SpreadsheetLine& line = lines[r];
        Node* note = manager.MakeNote(line.GetField(nameColumn), container, last);
        if (!note)
            break;
        last = note;
        ++made;
        for (size_t c = 0; c < attributes.size() && c < line.size(); ++c) {
            const Attribute* attribute = attributes[c];
            const std::string& value = line.GetField(c);
            if (!attribute || value.empty())
                continue;
            if (attribute->IsNumber())
                note->Set(attribute, PrepareNumeric(value));
            else if (attribute->IsBoolean())
                note->Set(attribute, PrepareBoolean(value));
            else
                note->Set(attribute, value);
        }
    }
    return made;
}
