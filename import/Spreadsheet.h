#pragma once
// Comma- and tab-separated tables. The first line names the columns; each
// further line becomes a note, its fields the values of the columns.
#include <string>
#include <string_view>
#include <vector>

class ImportManager;
class Node;

// One line of a table, split into fields at the delimiter. A field in double
// quotes may hold the delimiter, line ends and doubled quotes.
class SpreadsheetLine {
public:
    SpreadsheetLine(std::string_view text, char delimiter);
    size_t size() const { return fields.size(); }
    // The field at `index`, quotes removed; empty beyond the last.
    const std::string& GetField(size_t index) const;
    const std::vector<std::string>& Fields() const { return fields; }
    // Removes one pair of enclosing double quotes and undoubles those inside.
    static std::string TrimQuotes(std::string_view field);

private:
    friend class Spreadsheet;
    std::vector<std::string> fields;
};

class Spreadsheet {
public:
    // Turns returns into newlines and reads the lines. The delimiter is a
    // comma or a tab; 0 lets the first line decide (HasCommaBeforeTab).
    explicit Spreadsheet(std::string_view text, char delimiter = 0);

    // A quote was left open at the end of the text: the line it began on,
    // else 0.
    long UnterminatedQuoteLine() const { return unterminatedLine; }
    char Delimiter() const { return delimiter; }
    const std::vector<SpreadsheetLine>& Lines() const { return lines; }
    // The column names (the first line).
    std::vector<std::string> Columns() const;
    size_t RowCount() const { return lines.empty() ? 0 : lines.size() - 1; }

    // Whether the first lines of a text read as a table: at least two lines
    // of the same number of fields, two or more.
    static bool LooksLikeTable(std::string_view text);

    // The first column called "Name" or "name", else 0.
    size_t NameColumn() const;
    // Makes a user attribute for each column that names none yet, typed by
    // what all its values can be. Answers the attribute of each column, or
    // "" for a column that sets none (the name column, an unnamed one).
    std::vector<std::string> ProposeNewAttributes(ImportManager& manager) const;
    // Makes a note per row under `container`; answers how many.
    size_t Import(ImportManager& manager, Node* container) const;

    static std::string MakeAttributeName(std::string_view column);
    static bool CouldBeNumeric(std::string_view value);
    static bool CouldBeBoolean(std::string_view value);
    static bool CouldBeDate(const std::string& value);
    static std::string PrepareNumeric(std::string_view value);
    static std::string PrepareBoolean(std::string_view value);

private:
    void Parse(std::string_view text);

    char delimiter;
    std::vector<SpreadsheetLine> lines;
    long unterminatedLine = 0;
};
