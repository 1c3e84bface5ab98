#include "PropertyList.h"

#include <algorithm>

#include "Attribute.h"
#include "Node.h"
#include "Value.h"

namespace {
bool Before(const PropertyList::Entry& e, const Attribute* a) {
    if (e.first == a)
        return false;
    int c = e.first->Name().compare(a->Name());
    return c < 0 || (c == 0 && e.first < a);
}
} // namespace

PropertyList::~PropertyList() { DeleteValues(); }

std::vector<PropertyList::Entry>::iterator PropertyList::Find(const Attribute* attribute) {
    auto it = std::lower_bound(entries.begin(), entries.end(), attribute, Before);
    return (it != entries.end() && it->first == attribute) ? it : entries.end();
}

std::vector<PropertyList::Entry>::const_iterator PropertyList::Find(const Attribute* attribute) const {
    auto it = std::lower_bound(entries.begin(), entries.end(), attribute, Before);
    return (it != entries.end() && it->first == attribute) ? it : entries.end();
}

const Value* PropertyList::Get(const Attribute* attribute) const {
    auto it = Find(attribute);
    return it == entries.end() ? nullptr : it->second;
}

Value* PropertyList::Put(const Attribute* attribute, Value* value) {
    auto it = std::lower_bound(entries.begin(), entries.end(), attribute, Before);
    if (it != entries.end() && it->first == attribute) {
        Value* old = it->second;
        it->second = value;
        return old;
    }
    // Grow by half rather than doubling: notes hold few values and many notes
    // exist, so slack capacity costs more than the occasional move.
    if (entries.size() == entries.capacity()) {
        size_t at = static_cast<size_t>(it - entries.begin());
        entries.reserve(entries.size() + std::max<size_t>(4, entries.size() / 2));
        it = entries.begin() + static_cast<std::ptrdiff_t>(at);
    }
    entries.insert(it, Entry(attribute, value));
    return nullptr;
}

Value* PropertyList::Take(const Attribute* attribute) {
    auto it = Find(attribute);
    if (it == entries.end())
        return nullptr;
    Value* v = it->second;
    entries.erase(it);
    return v;
}

void PropertyList::Remove(const Attribute* attribute) {
    if (Value* v = Take(attribute))
        v->Delete();
}

void PropertyList::DeleteValues() {
    for (auto& e : entries)
        if (e.second)
            e.second->Delete();
    entries.clear();
}

void PropertyList::CloneFrom(const PropertyList& other) {
    DeleteValues();
    entries.reserve(other.entries.size());
    for (const auto& e : other.entries)
        entries.emplace_back(e.first, e.second ? e.second->Clone() : nullptr);
}

void PropertyList::CopyAttributesTo(Node* node) const {
    if (!node)
        return;
    for (const auto& e : entries) {
        const Attribute* a = e.first;
        if (a->IsHidden() || a->CanInherit() || a->Name() == "ID" || !e.second)
            continue;
        node->Set(a, e.second->Clone());
    }
}
