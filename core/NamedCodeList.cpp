#include "NamedCodeList.h"

#include "XMLReader.h"

namespace {

// The sections that hold each kind, in the order they are read.
const std::vector<std::string>& SectionsFor(NamedCodeList::Kind kind) {
    static const std::vector<std::string> stamps = {"stamps", "menu"};
    static const std::vector<std::string> macros = {"macros"};
    return kind == NamedCodeList::Kind::kStamps ? stamps : macros;
}

// One entry from an element: a stamp keeps its code in the attribute
// "Value", a macro as the element's text.
void AddEntry(const XMLItem* item, NamedCodeList::Kind kind, std::vector<std::pair<std::string, std::string>>& out) {
    const std::string* name = item->Attributes().Find("name");
    if (!name || name->empty())
        return;
    if (kind == NamedCodeList::Kind::kStamps) {
        if (const std::string* code = item->Attributes().Find("Value"))
            out.emplace_back(*name, *code);
        return;
    }
    out.emplace_back(*name, item->Text());
}

}  // namespace

NamedCodeList* NamedCodeList::For(Hypertext* document, Kind kind) {
    if (!document)
        return nullptr;
    const char* key = kind == Kind::kStamps ? "StampList" : "MacroList";
    return static_cast<NamedCodeList*>(
        document->Part(key, [kind, document] { return std::make_unique<NamedCodeList>(kind, document); }));
}

NamedCodeList* NamedCodeList::Stamps(Hypertext* document) { return For(document, Kind::kStamps); }
NamedCodeList* NamedCodeList::Macros(Hypertext* document) { return For(document, Kind::kMacros); }

std::vector<std::pair<std::string, std::string>> NamedCodeList::Read(Kind kind, const std::string& raw) {
    std::vector<std::pair<std::string, std::string>> out;
    XMLReader reader;
    if (raw.empty() || !reader.Parse(raw))
        return out;
    const XMLItem* top = reader.GetNodeList();
    if (!top)
        return out;
    const char* entryName = kind == Kind::kStamps ? "menu" : "macro";
    // A section element holds its entries; an entry may also stand alone.
    if (top->Name() == entryName && top->Attributes().Has("name")) {
        AddEntry(top, kind, out);
        return out;
    }
    for (const XMLItem* item = top->Son(); item; item = item->Brother())
        if (item->Name() == entryName)
            AddEntry(item, kind, out);
    return out;
}

void NamedCodeList::Refresh() {
    const std::vector<std::string>& sections = SectionsFor(kind);
    // Compared in place first: the sections rarely change, and this runs
    // for every name asked for.
    bool same = readFrom.size() == sections.size();
    for (size_t i = 0; same && i < sections.size(); ++i) {
        const std::string* raw = document ? document->CarriedSection(sections[i]) : nullptr;
        same = raw ? *raw == readFrom[i] : readFrom[i].empty();
    }
    if (same)
        return;
    readFrom.clear();
    entries.clear();
    for (const std::string& section : sections) {
        const std::string* raw = document ? document->CarriedSection(section) : nullptr;
        readFrom.push_back(raw ? *raw : std::string());
        auto read = Read(kind, readFrom.back());
        entries.insert(entries.end(), read.begin(), read.end());
    }
}

std::optional<std::string> NamedCodeList::Find(const std::string& name) {
    std::lock_guard<std::mutex> guard(mutex);
    Refresh();
    for (const auto& [entry, code] : entries)
        if (entry == name)
            return code;
    return std::nullopt;
}

std::vector<std::pair<std::string, std::string>> NamedCodeList::Entries() {
    std::lock_guard<std::mutex> guard(mutex);
    Refresh();
    return entries;
}

std::string NamedCodeList::Substitute(const std::string& code, const std::vector<std::string>& arguments) {
    std::string out;
    out.reserve(code.size());
    for (size_t i = 0; i < code.size();) {
        if (code[i] == '$' && i + 1 < code.size() && code[i + 1] >= '0' && code[i + 1] <= '9') {
            size_t end = i + 1;
            size_t number = 0;
            // Digits past what any argument list can reach still end the
            // placeholder, without overflowing the count.
            while (end < code.size() && code[end] >= '0' && code[end] <= '9') {
                if (number < 1000000)
                    number = number * 10 + static_cast<size_t>(code[end] - '0');
                ++end;
            }
            if (number >= 1 && number <= arguments.size()) {
                if (out.size() + arguments[number - 1].size() > kMaxText)
                    return std::string();
                out += arguments[number - 1];
            }
            i = end;
            continue;
        }
        if (out.size() >= kMaxText)
            return std::string();
        out += code[i++];
    }
    return out;
}
