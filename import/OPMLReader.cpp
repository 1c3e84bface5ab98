#include "OPMLReader.h"

#include <algorithm>

#include "Attribute.h"
#include "Hypertext.h"
#include "ImportManager.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "Props.h"

namespace {

// Stops at the document element: its name is all that is wanted.
class RootNameReader : public XMLReader {
public:
    std::string name;

protected:
    bool StartItem(XMLItem* item) override {
        name = item->Name();
        Fail("seen");
        return false;
    }
};

} // namespace

OPMLReader::OPMLReader(ImportManager& m, Node* c) : manager(m), container(c) {
    parents.push_back(container);
    last.push_back(nullptr);
}

bool OPMLReader::IsOPML(std::string_view text) {
    // Well formed up to its root element, and that element named opml.
    RootNameReader reader;
    reader.Parse(text);
    if (reader.name != "opml" && reader.name != "OPML")
        return false;
    return XMLReader().Parse(text);
}

bool OPMLReader::Read(std::string_view text) {
    if (!Parse(text))
        return false;
    Finish();
    return true;
}

bool OPMLReader::StartItem(XMLItem* item) {
    const std::string& name = item->Name();
    if (Depth() == 1) {
        if (name != "opml" && name != "OPML") {
            Fail("the document element is <" + name + ">, not <opml>");
            return false;
        }
        item->keepText = false;
        return true;
    }
    if (Depth() == 2) {
        inHead = name == "head";
        inBody = name == "body";
        item->keepText = false;
        return true;
    }
    if (inBody && name == "outline" && parents.size() + 2 == static_cast<size_t>(Depth())) {
        item->keepText = false;
        Node* note = DoOutline(item, parents.back(), last.back());
        if (!note) {
            Fail("the note could not be made");
            return false;
        }
        last.back() = note;
        parents.push_back(note);
        last.push_back(nullptr);
    }
    return true;
}

bool OPMLReader::EndItem(XMLItem* item) {
    const std::string& name = item->Name();
    // Depth() is now that of the element's father.
    if (Depth() == 1) {
        inHead = inBody = false;
        return false;
    }
    if (inHead && Depth() == 2) {
        if (name == "title")
            title = item->Text();
        else if (name == "expansionState")
            expansionState = item->Text();
        return true;
    }
    if (inBody && name == "outline" && parents.size() == static_cast<size_t>(Depth())) {
        parents.pop_back();
        last.pop_back();
    }
    return Depth() >= 2;
}

Node* OPMLReader::DoOutline(XMLItem* item, Node* parent, Node* previous) {
    const XMLAttributes& attributes = item->Attributes();
    Node* note = manager.MakeNote(attributes.GetString("text"), parent, previous);
    if (!note)
        return nullptr;
    ++made;
    bool hasNote = false;
    for (const auto& [key, value] : attributes.Items()) {
        if (key == "text")
            continue;
        if (key == "_note") {
            NodeText(note).SetText(value);
            hasNote = true;
        } else if (key == "url" || key == "htmlUrl" || key == "xmlUrl") {
            if (!value.empty())
                note->Set("URL", value);
        } else if (key == "_status") {
            note->SetBoolean("Checked", value == "checked" || value == "true");
        } else if (key == "description") {
            if (!hasNote && !value.empty())
                NodeText(note).SetText(value);
        } else if (key != "type") {
            ImportUserAttribute(note, key, value);
        }
    }
    return note;
}

void OPMLReader::ImportUserAttribute(Node* note, const std::string& key, const std::string& value) {
    std::string name = manager.MakeUserAttribute(key, 0);
    if (name.empty())
        return;
    if (std::find(columns.begin(), columns.end(), name) == columns.end())
        columns.push_back(name);
    if (!value.empty())
        note->Set(name, value);
}

void OPMLReader::Finish() {
    if (!title.empty())
        container->SetName(title);
    if (!columns.empty()) {
        std::string list;
        for (const std::string& c : columns)
            list += (list.empty() ? "" : ";") + c;
        container->Set("DisplayedAttributes", list);
    }
}
