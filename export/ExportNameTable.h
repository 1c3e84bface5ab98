#pragma once
// The names an export gives out: the file of every note that makes a page,
// and every name taken. Naming reads every note of the document (a link may
// reach any of them), so a document keeps the table of its last export, and
// an export of the unchanged document takes it as it is instead of naming
// every note again.
#include <cstdint>
#include <memory>
#include <mutex>
#include <map>
#include <set>
#include <string>

#include "Hypertext.h"

class Attribute;
class Node;

class ExportNameTable {
public:
    // The attributes naming reads, looked up once per export.
    struct Reads {
        explicit Reads(const Hypertext* hypertext);
        // Their default values, which no note holds: a changed definition
        // changes the names without changing the document's change count.
        std::string Definitions() const;

        const Attribute* separator = nullptr;
        const Attribute* fileName = nullptr;
        const Attribute* spacer = nullptr;
        const Attribute* lowerCase = nullptr;
        const Attribute* maxLength = nullptr;
        const Attribute* extension = nullptr;
        const Attribute* dontExport = nullptr;
        const Attribute* exportChildren = nullptr;
    };

    // What a table was made from. Equal keys give equal tables: the notes
    // are unchanged (the change count), every name means the same attribute
    // (the table's stamp), with the same defaults, and the same extension is
    // forced on every page.
    struct Key {
        uint64_t changeCount = 0;
        uint64_t attributeStamp = 0;
        std::string extensionOverride;
        std::string definitions;
        bool operator==(const Key&) const = default;
    };
    static Key KeyFor(const Hypertext* hypertext, const Reads& reads, const std::string& extensionOverride);

    bool Has(const std::string& name) const { return names.count(name) != 0; }
    // The note's file ("/a/b.html"), or null when naming gave it none.
    const std::string* FileOf(const Node* node) const {
        auto found = files.find(node);
        return found == files.end() ? nullptr : &found->second;
    }
    void Add(const Node* node, std::string name);

private:
    // Ordered: names are made in outline order, mostly ascending, and an
    // ordered tree filled so touches far less memory than a hash table.
    std::set<std::string> names;
    std::map<const Node*, std::string> files;
};

// The table of a document's last export, kept on the document.
class ExportNameCache : public DocumentPart {
public:
    static ExportNameCache* For(Hypertext* hypertext);
    // The table kept under `key`, or null.
    std::shared_ptr<const ExportNameTable> Find(const ExportNameTable::Key& key) const;
    // Keeps `table` in place of the one kept before.
    void Keep(ExportNameTable::Key key, std::shared_ptr<const ExportNameTable> table);

private:
    mutable std::mutex mutex;
    ExportNameTable::Key key;
    std::shared_ptr<const ExportNameTable> table;
};
