#pragma once
// The document's preference list: named settings that are copied from the
// global preferences when a document is made, stored with the document as one
// key-value list, and read by preference attributes as their defaults.
#include <map>
#include <string>

class Prefs {
public:
    enum Shape { kStringField, kBooleanField, kNumberField, kColorField, kRectField };

    Prefs();

    // The user's global settings, taken from the environment where they exist.
    static Prefs Defaults();

    bool Has(const std::string& key) const { return values.count(key) != 0; }
    std::string Get(const std::string& key) const;
    void Set(const std::string& key, const std::string& value) { values[key] = value; }
    void Remove(const std::string& key) { values.erase(key); }
    const std::map<std::string, std::string>& All() const { return values; }

    bool GetBoolean(const std::string& key) const;
    double GetNumber(const std::string& key) const;

    // The field that a preference kind reads, and the shape of its value.
    static const char* KeyForKind(int kind);
    static Shape KindShape(int kind);
    std::string StringFor(int kind) const;
    double NumberFor(int kind) const;
    bool BooleanFor(int kind) const;

    std::string Creator() const;

private:
    std::map<std::string, std::string> values;
};
