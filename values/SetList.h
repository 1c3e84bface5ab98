#pragma once
// A sorted set of strings in byte order, split from text like an ArgList.
// Used by attributes of type set and by the set operations of the language.
#include <set>
#include <string>

class SetList {
public:
    using const_iterator = std::set<std::string>::const_iterator;

    SetList() = default;
    explicit SetList(const std::string& text, char delimiter = ';');
    virtual ~SetList();

    virtual size_t size() const { return items.size(); }
    virtual bool empty() const { return items.empty(); }
    // The element at position `i`, "" beyond the end.
    virtual std::string at(long i) const;
    // The elements joined with `separator`; an element that contains the
    // separator is written in double quotes.
    virtual std::string ToString(const std::string& separator) const;
    // ["a","b"], without escaping inside the quotes.
    virtual std::string ToJson() const;
    virtual const std::set<std::string>& GetList() const { return items; }
    virtual void do_insert(const std::string& item);
    virtual void do_remove(const std::string& item);
    virtual void do_toggle(const std::string& item);

    // Replaces the elements with those split from `text`.
    void Set(const std::string& text, char delimiter);
    // Split `text` and insert, remove or toggle each item. Add and Toggle skip
    // empty items; Remove does not.
    void Add(const std::string& text, char delimiter);
    void Remove(const std::string& text, char delimiter);
    void Toggle(const std::string& text, char delimiter);

    // A new set of the "key:value" elements whose key differs from `key`;
    // elements that are not exactly two parts are left out too.
    SetList RemoveKey(const std::string& key) const;
    SetList Intersection(const SetList& other) const;
    SetList Union(const SetList& other) const;

    bool Has(const std::string& item) const { return items.count(item) != 0; }
    const_iterator Find(const std::string& item) const { return items.find(item); }
    void Clear() { items.clear(); }
    const_iterator begin() const { return items.begin(); }
    const_iterator end() const { return items.end(); }

    bool operator==(const SetList& other) const { return items == other.items; }

private:
    std::set<std::string> items;
};
