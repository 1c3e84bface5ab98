#include "Colors.h"

#include <algorithm>

#include "Configuration.h"
#include "XMLReader.h"
#include "XMLWriter.h"

namespace {

// Names compare ignoring the case of ASCII letters.
std::string Folded(const std::string& name) {
    std::string folded = name;
    for (char& c : folded)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return folded;
}

PColor Mix(const PColor& c, const PColor& toward, double amount) {
    auto channel = [amount](uint16_t from, uint16_t to) {
        return static_cast<uint16_t>(from + (static_cast<double>(to) - from) * amount + 0.5);
    };
    return PColor(channel(c.red, toward.red), channel(c.green, toward.green), channel(c.blue, toward.blue));
}

// The built-in table: each base colour with lighter and darker shades named
// "light X", "X", "X dark", "dark X" and "dark X dark".
std::string MakeBuiltInXML() {
    struct Base {
        const char* name;
        const char* hex;
    };
    static const Base bases[] = {
        {"red", "#e0301e"},       {"orange", "#f28c28"}, {"yellow", "#f5d33c"}, {"green", "#3aa655"},
        {"cyan", "#2bb5c8"},      {"blue", "#2f6fd6"},   {"violet", "#8e44ad"}, {"magenta", "#c2378f"},
        {"brown", "#8b5a2b"},     {"gray", "#8a8a8a"},   {"warm gray", "#8c8479"},
        {"cool gray", "#7d8490"},
    };
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<colors>\n";
    auto add = [&xml](const std::string& name, const PColor& color) {
        xml += "<color name=\"" + name + "\" hidden=\"0\">" + color.ToString() + "</color>\n";
    };
    add("black", PColor::Black());
    add("white", PColor::White());
    for (const auto& base : bases) {
        PColor c;
        c.FromString(base.hex);
        std::string name = base.name;
        add("light " + name, Mix(c, PColor::White(), 0.45));
        add(name, c);
        add(name + " dark", Mix(c, PColor::Black(), 0.25));
        add("dark " + name, Mix(c, PColor::Black(), 0.45));
        add("dark " + name + " dark", Mix(c, PColor::Black(), 0.65));
    }
    xml += "</colors>\n";
    return xml;
}

} // namespace

const std::string& Colors::BuiltInXML() {
    static const std::string xml = MakeBuiltInXML();
    return xml;
}

Colors::Colors() { ReadConfiguration(); }

Colors Colors::Empty() { return Colors(EmptyTag{}); }

void Colors::ReadConfiguration() {
    bool fromUser = false;
    std::string text = ConfigurationText("colors.xml", BuiltInXML(), &fromUser);
    if (!ReadXML(text) && fromUser)
        ReadXML(BuiltInXML());
}

bool Colors::ReadXML(const std::string& text) {
    XMLReader reader;
    if (!reader.Parse(text))
        return false;
    Clear();
    Add(reader.GetNodeList());
    return true;
}

Colors::Entry* Colors::FindEntry(const std::string& name) {
    auto found = positions.find(Folded(name));
    return found == positions.end() ? nullptr : &entries[found->second];
}

const Colors::Entry* Colors::FindEntry(const std::string& name) const {
    auto found = positions.find(Folded(name));
    return found == positions.end() ? nullptr : &entries[found->second];
}

void Colors::Reindex() {
    positions.clear();
    for (size_t i = 0; i < entries.size(); ++i)
        positions.emplace(Folded(entries[i].name), i);
}

bool Colors::Find(const std::string& name, PColor& color) const {
    const Entry* e = FindEntry(name);
    if (!e)
        return false;
    color = e->color;
    return true;
}

bool Colors::Has(const std::string& name) const { return FindEntry(name) != nullptr; }

PColor Colors::TranslateColor(const std::string& text, bool* found) const {
    PColor color = PColor::Black();
    bool ok = false;
    size_t start = text.find_first_not_of(" \t");
    size_t end = text.find_last_not_of(" \t");
    std::string trimmed = start == std::string::npos ? std::string() : text.substr(start, end - start + 1);
    if (!trimmed.empty()) {
        if (trimmed[0] == '#')
            ok = color.FromString(trimmed);
        else
            ok = Find(trimmed, color);
    }
    if (found)
        *found = ok;
    return ok ? color : PColor::Black();
}

std::string Colors::NameFor(const PColor& color) const {
    for (const auto& e : entries)
        if (!e.hidden && e.color == color)
            return e.name;
    return {};
}

void Colors::Set(const std::string& name, const PColor& color, bool hidden) {
    if (name.empty())
        return;
    if (Entry* e = FindEntry(name)) {
        e->color = color;
        e->hidden = hidden;
        return;
    }
    positions.emplace(Folded(name), entries.size());
    entries.push_back({name, color, hidden});
}

void Colors::Remove(const std::string& name) {
    if (positions.count(Folded(name)) == 0)
        return;
    const std::string folded = Folded(name);
    std::erase_if(entries, [&](const Entry& e) { return Folded(e.name) == folded; });
    Reindex();
}

bool Colors::IsHidden(const std::string& name) const {
    const Entry* e = FindEntry(name);
    return e && e->hidden;
}

void Colors::SetHidden(const std::string& name, bool hidden) {
    if (Entry* e = FindEntry(name))
        e->hidden = hidden;
}

void Colors::Add(const XMLItem* item) {
    if (!item)
        return;
    if (item->Name() == "colors") {
        for (const XMLItem* child = item->Son(); child; child = child->Brother())
            if (child->Name() == "color")
                Add(child);
        return;
    }
    std::string name = item->Attributes().GetString("name");
    PColor color;
    if (name.empty() || !color.FromString(item->Text()))
        return;
    Set(name, color, item->Attributes().GetBoolean("hidden"));
}

void Colors::ToXML(XMLWriter& writer) const {
    writer.Open("colors");
    writer.EndTag(true);
    for (const auto& e : entries) {
        writer.Open("color");
        writer.Put("name", e.name);
        writer.PutBoolean("hidden", e.hidden);
        writer.EndTag();
        writer.Text(e.color.ToString());
        writer.Close("color");
    }
    writer.Close("colors");
}
