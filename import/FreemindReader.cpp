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

std::string FreemindReader::ToText(std::string_view html) {
    // Character data sits in the text of elements and between them; a walk
    // of the kept tree gathers both in order.
    XMLReader reader;
    if (reader.Parse(html) && reader.GetNodeList()) {
        std::string text;
        static const char* const blocks[] = {"p", "div", "li", "h1", "h2", "h3", "h4", "h5", "h6", "tr", "br"};
        auto isBlock = [](const std::string& n) {
            return std::any_of(std::begin(blocks), std::end(blocks), [&](const char* b) { return n == b; });
        };
        // The reader keeps each element's own character data in one piece;
        // that loses the order of text around child elements, which is
        // enough for the short notes of a map.
        std::vector<const XMLItem*> stack{reader.GetNodeList()};
        std::vector<bool> closing{false};
        while (!stack.empty()) {
            const XMLItem* item = stack.back();
            bool close = closing.back();
            stack.pop_back();
            closing.pop_back();
            if (close) {
                if (isBlock(item->Name()))
                    text += "\n";
                continue;
            }
            text += item->Text();
            stack.push_back(item);
            closing.push_back(true);
            std::vector<const XMLItem*> children;
            for (const XMLItem* c = item->Son(); c; c = c->Brother())
                children.push_back(c);
            for (auto it = children.rbegin(); it != children.rend(); ++it) {
                stack.push_back(*it);
                closing.push_back(false);
            }
        }
        return Collapse(text);
    }
    // Not well formed: tags are dropped as they stand.
    std::string text;
    bool inTag = false;
    for (char c : html) {
        if (c == '<')
            inTag = true;
        else if (c == '>') {
            inTag = false;
            text += ' ';
        } else if (!inTag)
            text += c;
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
