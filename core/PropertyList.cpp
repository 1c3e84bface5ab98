#include "PropertyList.h"

#include <algorithm>
#include <atomic>

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

// Lookups compare pointers in a straight scan: a note holds few values, and
// a scan of pointers is cheaper than a binary search that compares names.
// Insertion keeps the name order that files are written in.
namespace {

std::atomic<bool> anyRenamed{false};

} // namespace

void PropertyList::AttributeRenamed() { anyRenamed.store(true, std::memory_order_relaxed); }

std::vector<PropertyList::Entry>::iterator PropertyList::Find(const Attribute* attribute) {
    auto found = static_cast<const PropertyList*>(this)->Find(attribute);
    return entries.begin() + (found - entries.cbegin());
}

std::vector<PropertyList::Entry>::const_iterator PropertyList::Find(const Attribute* attribute) const {
    if (attribute && entries.size() > kScanLimit && !anyRenamed.load(std::memory_order_relaxed)) {
        auto it = std::lower_bound(entries.begin(), entries.end(), attribute, Before);
        return it != entries.end() && it->first == attribute ? it : entries.end();
    }
    return std::find_if(entries.begin(), entries.end(), [attribute](const Entry& e) { return e.first == attribute; });
}

uint64_t PropertyList::BitOf(const Attribute* attribute) { return attribute ? attribute->SummaryBit() : 0; }

void PropertyList::Resummarize() {
    summary = 0;
    for (const Entry& e : entries)
        summary |= BitOf(e.first);
}

Value* PropertyList::Put(const Attribute* attribute, Value* value) {
    auto found = Find(attribute);
    if (found != entries.end()) {
        Value* old = found->second;
        found->second = value;
        return old;
    }
    // Values read from a file arrive in name order: try the end first.
    auto it = entries.empty() || Before(entries.back(), attribute)
                  ? entries.end()
                  : std::lower_bound(entries.begin(), entries.end(), attribute, Before);
    // Grow by half rather than doubling: notes hold few values and many notes
    // exist, so slack capacity costs more than the occasional move.
    if (entries.size() == entries.capacity()) {
        size_t at = static_cast<size_t>(it - entries.begin());
        entries.reserve(entries.size() + std::max<size_t>(4, entries.size() / 2));
        it = entries.begin() + static_cast<std::ptrdiff_t>(at);
    }
    entries.insert(it, Entry(attribute, value));
    summary |= BitOf(attribute);
    return nullptr;
}

Value* PropertyList::Take(const Attribute* attribute) {
    auto it = Find(attribute);
    if (it == entries.end())
        return nullptr;
    Value* v = it->second;
    entries.erase(it);
    Resummarize();
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
    summary = 0;
}

void PropertyList::CloneFrom(const PropertyList& other) {
    DeleteValues();
    entries.reserve(other.entries.size());
    for (const auto& e : other.entries)
        entries.emplace_back(e.first, e.second ? e.second->Clone() : nullptr);
    summary = other.summary;
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
