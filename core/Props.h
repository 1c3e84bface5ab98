#pragma once
// The document's attribute table: every attribute definition by name, and the
// category tree under the root attribute "anything".
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "Attribute.h"

class Props {
public:
    Props();
    ~Props();
    Props(const Props&) = delete;
    Props& operator=(const Props&) = delete;

    // Never null: an unknown name answers the "NoSuchAttribute" attribute.
    Attribute* GetAttribute(const std::string& name) const;
    Attribute* Get(const std::string& name) const { return GetAttribute(name); }
    bool Has(const std::string& name) const { return byName.count(name) != 0; }
    // The attribute of that name, or null (not the null attribute) when none.
    Attribute* Find(const std::string& name) const {
        auto it = byName.find(name);
        return it == byName.end() ? nullptr : it->second;
    }
    // Refuses a name already taken; answers whether the attribute was added.
    bool AddAttribute(Attribute* attribute);
    long GetCount() const { return static_cast<long>(byName.size()); }
    // Takes the attribute out of the table and destroys it.
    void RemoveAttribute(Attribute* attribute);
    void Rename(Attribute* attribute, const std::string& name);
    // Drops every attribute and rebuilds the two built-in ones.
    void Clear();
    void NewlyCreated(Node* note) const;
    void Sort();

    // Changes whenever a name may come to mean another attribute or none
    // (an attribute added, removed or renamed, the table cleared); unique
    // across every table of the process, so that a cache keyed by it can
    // tell two tables apart.
    uint64_t Stamp() const { return stamp.load(std::memory_order_acquire); }

    Attribute* Root() const { return root; }
    Attribute* NullAttributeFor() const { return nullAttribute; }
    std::vector<Attribute*> Categories() const;
    std::vector<Attribute*> AttributesFor(const std::string& category) const;
    std::vector<Attribute*> AttributesStartingWith(const std::string& prefix) const;
    std::vector<Attribute*> AttributesContaining(const std::string& part) const;
    std::vector<Attribute*> NumericAttributesContaining(const std::string& part) const;
    // Every attribute in tree order (the root excluded).
    std::vector<Attribute*> InTreeOrder() const;
    void Log() const;

    // Factories. Each adds the attribute under its parent and answers it, or
    // answers null when the name is taken elsewhere.
    Attribute* CreateBasicAttribute(const std::string& name);
    Attribute* CreateBasicAttribute(const std::string& name, Attribute* parent, bool editable, int type);
    Attribute* CreateBasicAttribute(const std::string& name, const std::string& categoryName, bool editable, int type);
    Attribute* CreateRenamedAndDeprecatedAttribute(const std::string& name, const std::string& category, bool editable,
                                                   int type, const std::string& target);
    Attribute* CreateDeprecatedAttribute(const std::string& name, const std::string& category, bool editable, int type);
    Attribute* CreateShadowAttribute(const std::string& name, const std::string& category, bool editable, int type);
    Attribute* CreatePreferenceAttribute(const std::string& name, const std::string& category, int kind, bool editable,
                                         int type);
    Attribute* CreateTextAttribute(const std::string& name, const std::string& category);
    Attribute* CreateNameAttribute(const std::string& name, const std::string& category);
    Attribute* CreatePrototypeAttribute(const std::string& name, const std::string& category);
    Attribute* CreateParentAttribute(const std::string& name, const std::string& category);
    // Adds an attribute made elsewhere (a special class) under a category.
    Attribute* Install(Attribute* attribute, const std::string& category);

private:
    Attribute* Adopt(Attribute* attribute, Attribute* parent);
    Attribute* ParentFor(const std::string& category) const;

    void Restamp();

    std::atomic<uint64_t> stamp{0};
    Attribute* root = nullptr;
    Attribute* nullAttribute = nullptr;
    std::unordered_map<std::string, Attribute*> byName;
    std::vector<std::unique_ptr<Attribute>> owned;
    // The attribute adopted last: the next one adopted under the same father
    // goes straight after it, instead of after a walk along all of its
    // brothers (a document may define tens of thousands under one category).
    Attribute* lastAdopted = nullptr;
};
