#pragma once
// The document's table of named colours. Colour attributes may hold a name
// ("warm gray dark") instead of a literal "#rrggbb"; this table resolves it.
//
// The file form, used in documents and in the configuration file "colors.xml":
//   <colors>
//   <color name="red" hidden="0">#e0301e</color>
//   </colors>
#include <string>
#include <unordered_map>
#include <vector>

#include "PColor.h"

class XMLItem;
class XMLWriter;

class Colors {
public:
    struct Entry {
        std::string name;
        PColor color;
        bool hidden = false;
        bool operator==(const Entry&) const = default;
    };

    // The built-in table, or the user's "colors.xml" when there is one.
    Colors();
    static Colors Empty();

    // Looks a name up, ignoring case. Answers false when it is unknown.
    bool Find(const std::string& name, PColor& color) const;
    bool Has(const std::string& name) const;
    // Literal colour text ("#rrggbb", "#rgb") or a name from the table;
    // black when it is neither. `found` tells whether it was either.
    PColor TranslateColor(const std::string& text, bool* found = nullptr) const;
    // The first visible name of exactly this colour, or "".
    std::string NameFor(const PColor& color) const;

    // Adds a colour or changes the one of that name (ignoring case) in place.
    void Set(const std::string& name, const PColor& color, bool hidden = false);
    void Remove(const std::string& name);
    bool IsHidden(const std::string& name) const;
    void SetHidden(const std::string& name, bool hidden);
    void Clear() {
        entries.clear();
        positions.clear();
    }
    const std::vector<Entry>& Entries() const { return entries; }
    size_t size() const { return entries.size(); }

    // Adds each `color` child of a `colors` element, or one `color` element.
    void Add(const XMLItem* item);
    void ToXML(XMLWriter& writer) const;
    // Replaces the table with the colours of an XML text. Answers false,
    // leaving the table alone, when the text does not parse.
    bool ReadXML(const std::string& text);
    // Replaces the table with the user's "colors.xml" or the built-in one.
    void ReadConfiguration();

    static const std::string& BuiltInXML();

    bool operator==(const Colors& other) const { return entries == other.entries; }

private:
    struct EmptyTag {};
    explicit Colors(EmptyTag) {}
    Entry* FindEntry(const std::string& name);
    const Entry* FindEntry(const std::string& name) const;
    void Reindex();
    std::vector<Entry> entries;
    // Where each name stands in `entries`, by its name folded to lower case,
    // so that a table of many colours is not searched whole for each one.
    std::unordered_map<std::string, size_t> positions;
};
