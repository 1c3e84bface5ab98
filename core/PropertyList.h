#pragma once
// A note's local values: attribute to value, ordered by attribute name (the
// order in which they are written to a file). The list owns its values.
//
// Kept as a sorted vector: notes hold few local values, and a vector costs a
// fraction of a tree map per note.
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

class Attribute;
class Node;
class Value;
class XMLWriter;

class PropertyList {
public:
    using Entry = std::pair<const Attribute*, Value*>;

    PropertyList() = default;
    PropertyList(const PropertyList&) = delete;
    PropertyList& operator=(const PropertyList&) = delete;
    ~PropertyList();

    const Value* Get(const Attribute* attribute) const { return Get(attribute, BitOf(attribute)); }
    // The same with the attribute's summary bit already looked up, for walks
    // that ask many lists about one attribute.
    const Value* Get(const Attribute* attribute, uint64_t bit) const {
        // Most misses are answered by the summary without a scan: reads
        // through prototype chains miss on every note but the last.
        if (!(summary & bit))
            return nullptr;
        if (entries.size() > kScanLimit) {
            auto found = Find(attribute);
            return found == entries.end() ? nullptr : found->second;
        }
        for (const Entry& e : entries)
            if (e.first == attribute)
                return e.second;
        return nullptr;
    }
    bool Has(const Attribute* attribute) const { return Get(attribute) != nullptr; }
    // Stores the value (owned from now on) and answers the one it replaced,
    // which the caller disposes of; null when there was none.
    Value* Put(const Attribute* attribute, Value* value);
    // Takes the value out without deleting it.
    Value* Take(const Attribute* attribute);
    // Removes and deletes the value.
    void Remove(const Attribute* attribute);
    void DeleteValues();
    // Copies every value of `other` by cloning.
    void CloneFrom(const PropertyList& other);
    // Copies local values of intrinsic, visible attributes (not `ID`) to `node`.
    void CopyAttributesTo(Node* node) const;

    // Makes room for `count` values at once, for a note about to be given
    // that many (as a reader knows from the notes before).
    void Reserve(size_t count) { entries.reserve(count); }

    // Some attribute was renamed: lists may no longer be in name order, and
    // are searched from end to end from now on.
    static void AttributeRenamed();

    size_t size() const { return entries.size(); }
    bool empty() const { return entries.empty(); }
    std::vector<Entry>::const_iterator begin() const { return entries.begin(); }
    std::vector<Entry>::const_iterator end() const { return entries.end(); }

private:
    // Lists of more values than this are searched by halving, in the name
    // order they are kept in (a note may hold tens of thousands of values).
    static constexpr size_t kScanLimit = 16;
    static uint64_t BitOf(const Attribute* attribute);
    void Resummarize();
    std::vector<Entry>::iterator Find(const Attribute* attribute);
    std::vector<Entry>::const_iterator Find(const Attribute* attribute) const;
    std::vector<Entry> entries;
    // One bit per group of attributes that have a value here.
    uint64_t summary = 0;
};
