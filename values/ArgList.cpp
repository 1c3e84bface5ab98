#include "ArgList.h"

#include <algorithm>
#include <sstream>

#include "ActionList.h"
#include "Parser.h"
#include "UnicodeString.h"

ArgList::ArgList(const std::string& text, char delimiter, bool keep) : keepEmpty(keep) {
    ArgList::Split(text, delimiter);
}

ArgList::~ArgList() = default;

void ArgList::SplitWith(ArgListParser& parser) {
    while (parser.good()) {
        std::string token = parser.Token();
        if (!token.empty() || keepEmpty) items.push_back(std::move(token));
    }
}

void ArgList::Split(const std::string& text, char delimiter) {
    ArgListParser parser(text, delimiter);
    SplitWith(parser);
}

void ArgList::Apply(const std::function<void(const std::string&)>& block) const {
    for (const std::string& item : items) block(item);
}

std::string ArgList::at(int i) const {
    if (i < 0 || static_cast<size_t>(i) >= items.size()) return "";
    return items[i];
}

std::string ArgList::ToString(const std::string& separator) const {
    std::string result;
    for (size_t i = 0; i < items.size(); ++i) {
        if (i) result += separator;
        result += items[i];
    }
    return result;
}

void ArgList::Set(const std::string& text, char delimiter) {
    items.clear();
    Split(text, delimiter);
}

void ArgList::Add(const std::string& text, char delimiter) {
    Split(text, delimiter);
}

double ArgList::GetNum(int i) const {
    std::istringstream in(at(i));
    double number = 0.0;
    in >> number;
    return number;
}

void ArgList::Remove(const std::string& item) {
    items.erase(std::remove(items.begin(), items.end(), item), items.end());
}

void ArgList::RemoveOne(const std::string& item) {
    auto it = std::find(items.begin(), items.end(), item);
    if (it != items.end()) items.erase(it);
}

void ArgList::Toggle(const std::string& item) {
    if (Has(item)) {
        RemoveOne(item);
    } else {
        Add(item, ';');
    }
}

void ArgList::Insert(int i, const std::string& item) {
    if (i < 0 || static_cast<size_t>(i) > items.size()) {
        items.push_back(item);
    } else {
        items.insert(items.begin() + i, item);
    }
}

void ArgList::Set(int i, const std::string& item) {
    if (i >= 0 && static_cast<size_t>(i) < items.size()) items[i] = item;
}

void ArgList::Remove(int i) {
    if (i >= 0 && static_cast<size_t>(i) < items.size()) items.erase(items.begin() + i);
}

bool ArgList::Has(const std::string& item) const {
    return Find(item) != items.end();
}

ArgList::const_iterator ArgList::Find(const std::string& item) const {
    return std::find(items.begin(), items.end(), item);
}

long ArgList::IndexOf(const std::string& item) const {
    auto it = Find(item);
    return it == items.end() ? -1 : static_cast<long>(it - items.begin());
}

bool ArgList::HasCaseInsensitive(const std::string& item) const {
    return IndexOfCaseInsensitive(item) >= 0;
}

long ArgList::IndexOfCaseInsensitive(const std::string& item) const {
    UnicodeString wanted(item);
    for (size_t i = 0; i < items.size(); ++i) {
        if (items[i] == item || UnicodeString(items[i]).EqualCaseInsensitive(wanted)) return static_cast<long>(i);
    }
    return -1;
}

bool ArgList::IsNumeric() const {
    for (const std::string& raw : items) {
        std::string item = Parser::Trim(raw);
        bool decimal = false;
        for (size_t i = 0; i < item.size(); ++i) {
            char c = item[i];
            if (c >= '0' && c <= '9') continue;
            if (c == '.' && !decimal) {
                decimal = true;
                continue;
            }
            if (c == '-' && i == 0) continue;
            return false;
        }
    }
    return true;
}

// ---------------------------------------------------------------- ActionList

ActionList::ActionList(const std::string& text, char delimiter, bool keep) {
    keepEmpty = keep;
    ActionList::Split(text, delimiter);
}

void ActionList::Split(const std::string& text, char delimiter) {
    ActionListParser parser(text, delimiter);
    SplitWith(parser);
}
