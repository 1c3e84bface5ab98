#include "SetList.h"

#include <algorithm>

#include "ArgList.h"
#include "Parser.h"

namespace {

// Runs `action` on each token split from `text`.
template <typename F>
void EachToken(const std::string& text, char delimiter, bool skipEmpty, F action) {
    ArgListParser parser(text, delimiter);
    while (parser.good()) {
        std::string token = parser.Token();
        if (skipEmpty && token.empty()) continue;
        action(token);
    }
}

}  // namespace

SetList::SetList(const std::string& text, char delimiter) {
    Add(text, delimiter);
}

SetList::~SetList() = default;

std::string SetList::at(long i) const {
    if (i < 0) return "";
    for (const std::string& item : items) {
        if (i-- == 0) return item;
    }
    return "";
}

std::string SetList::ToString(const std::string& separator) const {
    std::string result;
    bool first = true;
    for (const std::string& item : items) {
        if (!first) result += separator;
        first = false;
        if (!separator.empty() && item.find(separator) != std::string::npos) {
            result += '"';
            result += item;
            result += '"';
        } else {
            result += item;
        }
    }
    return result;
}

std::string SetList::ToJson() const {
    std::string result = "[";
    bool first = true;
    for (const std::string& item : items) {
        if (!first) result += ',';
        first = false;
        result += '"';
        result += item;
        result += '"';
    }
    result += ']';
    return result;
}

void SetList::do_insert(const std::string& item) {
    items.insert(item);
}

void SetList::do_remove(const std::string& item) {
    items.erase(item);
}

void SetList::do_toggle(const std::string& item) {
    if (!items.erase(item)) items.insert(item);
}

void SetList::Set(const std::string& text, char delimiter) {
    items.clear();
    Add(text, delimiter);
}

void SetList::Add(const std::string& text, char delimiter) {
    EachToken(text, delimiter, true, [this](const std::string& t) { do_insert(t); });
}

void SetList::Remove(const std::string& text, char delimiter) {
    EachToken(text, delimiter, false, [this](const std::string& t) { do_remove(t); });
}

void SetList::Toggle(const std::string& text, char delimiter) {
    EachToken(text, delimiter, true, [this](const std::string& t) { do_toggle(t); });
}

SetList SetList::RemoveKey(const std::string& key) const {
    SetList result;
    for (const std::string& item : items) {
        ArgList parts(item, ':');
        if (parts.size() == 2 && parts[0] != key) result.items.insert(item);
    }
    return result;
}

SetList SetList::Intersection(const SetList& other) const {
    SetList result;
    std::set_intersection(items.begin(), items.end(), other.items.begin(), other.items.end(),
                          std::inserter(result.items, result.items.end()));
    return result;
}

SetList SetList::Union(const SetList& other) const {
    SetList result = *this;
    result.items.insert(other.items.begin(), other.items.end());
    return result;
}
