#include "FreemindReader.h"

#include <algorithm>
#include <cctype>

#include "ImportManager.h"
#include "Node.h"
#include "NodeHelpers.h"

namespace {

std::string Collapse(std::string_view text) {
    std::string out;
    bool blank = false;
    for (char c : text) {
        if (c == '\n') {
            while (!out.empty() && out.back() == ' ')
                out.pop_back();
            if (!out.empty() && !(out.size() >= 2 && out[out.size() - 1] == '\n' && out[out.size() - 2] == '\n'))
                out += '\n';
            blank = false;
            continue;
        }
        if (c == ' ' || c == '\t' || c == '\r') {
            blank = !out.empty() && out.back() != '\n';
            continue;
        }
        if (blank)
            out += ' ';
        blank = false;
        out += c;
    }
    while (!out.empty() && (out.back() == '\n' || out.back() == ' '))
        out.pop_back();
    return out;
}

} // namespace

namespace {

bool IsBlockElement(std::string_view name) {
    static const char* const blocks[] = {"p", "div", "li", "h1", "h2", "h3", "h4", "h5", "h6", "tr", "br"};
    std::string lower(name);
    for (char& c : lower)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return std::any_of(std::begin(blocks), std::end(blocks), [&](const char* b) { return lower == b; });
}

// Gathers character data in document order: an element's text before a
// child is written when the child begins, the rest when it ends. Elements
// are dropped as they end, so the tree is never held whole.
class TextGatherer : public XMLReader {
public:
    std::string text;

protected:
    bool StartItem(XMLItem* item) override {
        if (!open.empty())
            Flush(open.back());
        open.push_back({item, 0});
        return true;
    }
    bool EndItem(XMLItem* item) override {
        if (!open.empty() && open.back().item == item) {
            Flush(open.back());
            open.pop_back();
        }
        if (IsBlockElement(item->Name()))
            text += "\n";
        return true;
    }

private:
    struct Open {
        XMLItem* item;
        size_t written;
    };
    void Flush(Open& o) {
        const std::string& own = o.item->Text();
        if (own.size() > o.written)
            text.append(own, o.written, std::string::npos);
        o.written = own.size();
    }
    std::vector<Open> open;
};

void AppendUTF8(std::string& out, unsigned long c) {
    if (c == 0 || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF))
        return;
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// The character a reference stands for ("amp", "#38", "#x26"), appended;
// false for one not known.
bool AppendReference(std::string& out, std::string_view name) {
    static const std::pair<const char*, const char*> named[] = {
        {"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}, {"nbsp", " "}};
    for (const auto& [n, value] : named)
        if (name == n) {
            out += value;
            return true;
        }
    if (name.size() < 2 || name[0] != '#')
        return false;
    bool hex = name[1] == 'x' || name[1] == 'X';
    std::string_view digits = name.substr(hex ? 2 : 1);
    if (digits.empty() || digits.size() > 8)
        return false;
    unsigned long c = 0;
    for (char d : digits) {
        int v = d >= '0' && d <= '9' ? d - '0'
                : hex && d >= 'a' && d <= 'f' ? d - 'a' + 10
                : hex && d >= 'A' && d <= 'F' ? d - 'A' + 10
                                              : -1;
        if (v < 0)
            return false;
        c = c * (hex ? 16 : 10) + static_cast<unsigned long>(v);
    }
    AppendUTF8(out, c);
    return true;
}

} // namespace

std::string FreemindReader::ToText(std::string_view html) {
    // Well formed, or a well-formed fragment of several elements.
    for (int attempt = 0; attempt < 2; ++attempt) {
        TextGatherer reader;
        std::string wrapped;
        if (attempt == 1)
            wrapped = "<fragment>" + std::string(html) + "</fragment>";
        if (reader.Parse(attempt == 0 ? html : std::string_view(wrapped)))
            return Collapse(reader.text);
    }
    // Not well formed: tags are dropped as they stand, a block element's
    // tag breaks the line, and references are read.
    std::string text;
    for (size_t i = 0; i < html.size(); ++i) {
        char c = html[i];
        if (c == '<') {
            size_t close = html.find('>', i);
            if (close == std::string_view::npos)
                break;
            std::string_view tag = html.substr(i + 1, close - i - 1);
            if (!tag.empty() && tag[0] == '/')
                tag.remove_prefix(1);
            size_t nameEnd = 0;
            while (nameEnd < tag.size() && std::isalnum(static_cast<unsigned char>(tag[nameEnd])))
                ++nameEnd;
            text += IsBlockElement(tag.substr(0, nameEnd)) ? '\n' : ' ';
            i = close;
        } else if (c == '&') {
            size_t semi = html.find(';', i);
            if (semi != std::string_view::npos && semi - i <= 10 &&
                AppendReference(text, html.substr(i + 1, semi - i - 1)))
                i = semi;
            else
                text += c;
        } else {
            text += c;
        }
    }
    return Collapse(text);
}

FreemindReader::FreemindReader(ImportManager& m, Node* c) : manager(m), container(c) {
    parents.push_back(container);
    last.push_back(nullptr);
}

bool FreemindReader::Read(std::string_view text) { return Parse(text); }

bool FreemindReader::StartItem(XMLItem* item) {
    if (Depth() == 1) {
        if (item->Name() != "map") {
            Fail("the document element is <" + item->Name() + ">, not <map>");
            return false;
        }
        item->keepText = false;
        return true;
    }
    if (item->Name() != "node") {
        if (item->Name() != "richcontent")
            item->keepText = false;
        return true;
    }
    item->keepText = false;
    // A node directly inside the map or inside the open node makes a note.
    int expected = depths.empty() ? 2 : depths.back() + 1;
    if (Depth() != expected)
        return true;
    Node* note = DoOutline(item, parents.back(), last.back());
    if (!note) {
        Fail("the note could not be made");
        return false;
    }
    last.back() = note;
    parents.push_back(note);
    last.push_back(nullptr);
    depths.push_back(Depth());
    return true;
}

bool FreemindReader::EndItem(XMLItem* item) {
    // Depth() is now that of the element's father.
    const std::string& name = item->Name();
    if (name == "node" && !depths.empty() && depths.back() == Depth() + 1) {
        parents.pop_back();
        last.pop_back();
        depths.pop_back();
    } else if (!depths.empty() && depths.back() == Depth()) {
        Node* note = parents.back();
        if (name == "font")
            DoFont(item, note);
        else if (name == "richcontent")
            DoRichContent(item, note);
    }
    return Depth() >= 1;
}

Node* FreemindReader::DoOutline(XMLItem* item, Node* parent, Node* previous) {
    const XMLAttributes& a = item->Attributes();
    Node* note = manager.MakeNote(a.GetString("TEXT"), parent, previous);
    if (!note)
        return nullptr;
    ++made;
    // Notes are placed on a grid: a column per level, a row per note.
    note->SetDouble("Xpos", 4.0 * static_cast<double>(parents.size() - 1));
    note->SetDouble("Ypos", 2.0 * static_cast<double>(row++));
    if (const std::string* color = a.Find("COLOR"))
        note->SetColor("NameColor", *color);
    if (const std::string* color = a.Find("BACKGROUND_COLOR"))
        note->SetColor("Color", *color);
    if (const std::string* link = a.Find("LINK"))
        note->Set("URL", *link);
    return note;
}

void FreemindReader::DoFont(XMLItem* item, Node* note) {
    const XMLAttributes& a = item->Attributes();
    if (const std::string* name = a.Find("NAME"))
        note->Set("NameFont", *name);
    if (a.GetBoolean("BOLD"))
        note->SetBoolean("NameBold", true);
}

void FreemindReader::DoRichContent(XMLItem* item, Node* note) {
    // The element's bytes hold the HTML; its own tags are cut away.
    std::string_view raw = item->Raw();
    size_t open = raw.find('>');
    size_t close = raw.rfind("</");
    if (open == std::string_view::npos || close == std::string_view::npos || close <= open)
        return;
    std::string text = ToText(raw.substr(open + 1, close - open - 1));
    std::string type = item->Attributes().GetString("TYPE");
    if (type == "NODE")
        note->SetName(text.substr(0, text.find('\n')));
    else if (!text.empty())
        NodeText(note).SetText(text);
}
