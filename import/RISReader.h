#pragma once
// Bibliographic records in RIS form: lines of a two-letter tag, two blanks,
// "-", a blank and a value; each record ends with an "ER  -" line.
#include <string>
#include <string_view>
#include <vector>

class ImportManager;
class Node;

class RISReader {
public:
    struct Record {
        std::vector<std::pair<std::string, std::string>> tags; // in order, tag and value
        std::string raw;                                       // the record's lines
        long line = 0;                                         // the line it began on
    };

    // Whether the text holds a record end mark.
    static bool CanRead(std::string_view text);
    // The records of a text; lines that are no tag line continue the value
    // before them.
    static std::vector<Record> Parse(std::string_view text);
    // The attribute a tag goes to, or null for one that only stays in the
    // record's text.
    static const char* AttributeFor(const std::string& tag);
    // The note's name: the first title of the record.
    static std::string Title(const Record& record);
    // Makes a note per record under `parent`; answers how many.
    static size_t Import(const std::vector<Record>& records, ImportManager& manager, Node* parent);
};
