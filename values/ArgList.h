#pragma once
// The list of the action language: a vector of strings split from text at a
// delimiter (normally ";"). Splitting keeps quoted strings and parenthesised
// text whole and trims each item.
#include <functional>
#include <string>
#include <vector>

class ArgList {
public:
    using const_iterator = std::vector<std::string>::const_iterator;

    ArgList() = default;
    // Empty items are kept only with `keepEmpty`.
    explicit ArgList(const std::string& text, char delimiter = ';', bool keepEmpty = false);
    virtual ~ArgList();

    virtual void Apply(const std::function<void(const std::string&)>& block) const;
    virtual size_t size() const { return items.size(); }
    virtual bool empty() const { return items.empty(); }
    // The item at `i`; "" out of bounds.
    virtual std::string at(int i) const;
    virtual void push_back(const std::string& item) { items.push_back(item); }
    virtual std::string& operator[](size_t i) { return items[i]; }
    virtual const std::string& operator[](size_t i) const { return items[i]; }
    // The items joined with `separator`, without quoting.
    virtual std::string ToString(const std::string& separator) const;
    virtual const std::vector<std::string>& GetList() const { return items; }

    // Replaces the items with those split from `text`.
    virtual void Set(const std::string& text, char delimiter);
    // Appends the items split from `text`.
    virtual void Add(const std::string& text, char delimiter);

    // Item `i` read as a double; 0 when unreadable.
    double GetNum(int i) const;
    // Erases every occurrence.
    void Remove(const std::string& item);
    // Erases the first occurrence.
    void RemoveOne(const std::string& item);
    // RemoveOne when present, otherwise Add(item, ';').
    void Toggle(const std::string& item);
    // By position. Insert appends when the position is out of range; Set and
    // Remove ignore such a position.
    void Insert(int i, const std::string& item);
    void Set(int i, const std::string& item);
    void Remove(int i);

    bool Has(const std::string& item) const;
    const_iterator Find(const std::string& item) const;
    // -1 when absent.
    long IndexOf(const std::string& item) const;
    bool HasCaseInsensitive(const std::string& item) const;
    long IndexOfCaseInsensitive(const std::string& item) const;

    // Every item is numeric: trimmed, digits with at most one "." and at most
    // one "-" in first place. The empty item counts; so does the empty list.
    bool IsNumeric() const;
    // Every item is a date: trimmed, "never" or "0", or text with a ":" that
    // reads as a non-zero time.
    bool IsDate() const;

    bool KeepEmpty() const { return keepEmpty; }
    void SetKeepEmpty(bool keep) { keepEmpty = keep; }
    void clear() { items.clear(); }

    const_iterator begin() const { return items.begin(); }
    const_iterator end() const { return items.end(); }

protected:
    // Splits with an ArgListParser; ActionList splits statements instead.
    virtual void Split(const std::string& text, char delimiter);
    void SplitWith(class ArgListParser& parser);

    std::vector<std::string> items;
    bool keepEmpty = false;
};
