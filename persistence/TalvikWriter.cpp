#include "TalvikWriter.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Attribute.h"
#include "Base64.h"
#include "Colors.h"
#include "Content.h"
#include "KindNode.h"
#include "Hypertext.h"
#include "Link.h"
#include "LinkManager.h"
#include "LinkType.h"
#include "Node.h"
#include "Prefs.h"
#include "Props.h"
#include "Value.h"
#include "XMLWriter.h"

namespace {

std::string& SavedByText() {
    static std::string text = "rylvane";
    return text;
}

// Writes the bytes of a value or text escaped for an element's content.
void PutElement(std::string& out, const char* name, const std::string& text) {
    out += '<';
    out += name;
    out += '>';
    XMLWriter::ToXML(text, out, false);
    out += "</";
    out += name;
    out += ">\n";
}

} // namespace

TalvikWriter::TalvikWriter(const Hypertext* h) : hypertext(h) {}

void TalvikWriter::SetSavedBy(const std::string& text) { SavedByText() = text; }

const std::string& TalvikWriter::SavedBy() { return SavedByText(); }

std::string TalvikWriter::WindowData() const {
    const std::string* raw = hypertext ? hypertext->CarriedSection("windows") : nullptr;
    return raw ? *raw : std::string();
}

bool TalvikWriter::Write(std::ostream& out) {
    if (!hypertext || hypertext->IsWriting())
        return false;
    auto* h = const_cast<Hypertext*>(hypertext);
    h->WillWrite();
    {
        XMLWriter w(out);
        Begin(w, true);
        WriteAttributes(w);
        Bump(1);
        WriteColorTable(w);
        Bump(1);
        WriteStamps(w);
        Bump(1);
        WriteLinkTypes(w);
        Bump(1);
        WriteNodes(w, hypertext->Root());
        Bump(1);
        WriteLinks(w, false);
        Bump(1);
        WriteMacros(w);
        Bump(1);
        WritePreferences(w);
        Bump(1);
        WriteWindows(w);
        Bump(1);
        WriteUtilityWindows(w);
        Bump(1);
        WriteSearches(w);
        Bump(1);
        WriteFilters(w);
        Bump(1);
        WriteGallery(w);
        Bump(1);
        WriteRecentBadges(w);
        Bump(1);
        WritePreview(w);
        End(w);
    }
    h->DidWrite();
    return static_cast<bool>(out);
}

bool TalvikWriter::ToClip(std::ostream& out, const NodeVector& nodes) {
    if (!hypertext)
        return false;
    std::vector<Node*> sorted(nodes.begin(), nodes.end());
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const Node* a, const Node* b) { return a->GetOutlineOrder() < b->GetOutlineOrder(); });
    std::vector<Node*> tops;
    for (Node* n : sorted) {
        bool covered = std::any_of(sorted.begin(), sorted.end(),
                                   [n](const Node* other) { return other != n && n->IsDescendedFrom(other); });
        if (!covered && std::find(tops.begin(), tops.end(), n) == tops.end())
            tops.push_back(n);
    }
    renumbering = true;
    clipTops.assign(tops.begin(), tops.end());
    renumbered.clear();
    nextNumber = 1;
    for (Node* n : tops)
        Number(n);
    {
        XMLWriter w(out);
        Begin(w, false);
        for (Node* n : tops)
            WriteNode(w, n);
        WriteLinks(w, true);
        End(w);
    }
    renumbering = false;
    clipTops.clear();
    return static_cast<bool>(out);
}

void TalvikWriter::Number(const Node* node) {
    if (!CanWrite(node))
        return;
    renumbered.emplace(node->GetID().GetID(), nextNumber++);
    for (const Node* child = node->Son(); child; child = child->Brother())
        Number(child);
}

uint32_t TalvikWriter::WrittenID(uint32_t id) const {
    if (!renumbering)
        return id;
    auto it = renumbered.find(id);
    return it == renumbered.end() ? id : it->second;
}

void TalvikWriter::Begin(XMLWriter& w, bool withUUID) {
    w.Declaration();
    w.Open("rylvane");
    w.PutLong("version", kVersion);
    w.PutLong("revision", kRevision);
    w.Put("savedBy", SavedBy());
    if (withUUID && !hypertext->UUID().empty())
        w.Put("uuid", hypertext->UUID());
    w.EndTag(true);
}

void TalvikWriter::End(XMLWriter& w) { w.Close("rylvane"); }

// ---------------------------------------------------------------- attributes

void TalvikWriter::WriteAttributes(XMLWriter& w) {
    const Props* props = hypertext->AttributeStorage();
    if (props && props->Root())
        WriteAttribute(w, props->Root());
}

void TalvikWriter::WriteAttribute(XMLWriter& w, const Attribute* a) {
    if (!a->IsValid() || a->IsHidden())
        return;
    w.Open("attrib");
    w.Put("Name", a->Name());
    if (const Attribute* father = a->Father())
        w.Put("parent", father->Name());
    w.PutBoolean("editable", a->IsEditable());
    w.PutBoolean("visibleInEditor", a->VisibleInEditor());
    if (a->IsPreferenceAttribute())
        w.PutLong("kind", a->GetKind());
    if (a->GetType() != AttributeType::kString)
        w.PutLong("type", a->GetType());
    if (a->IsSequential())
        w.PutBoolean("sequential", true);
    if (!a->CanInherit())
        w.Put("canInherit", "0");
    if (!a->SuggestedValues().empty())
        w.Put("suggested", a->SuggestedValues().ToString(";"));
    if (!a->Description().empty())
        w.Put("description", a->Description());
    w.Put("default", a->GetDefaultValueAsXML(hypertext));
    w.EndTag(true);
    for (const Attribute* child = a->Son(); child; child = child->Brother())
        WriteAttribute(w, child);
    w.Close("attrib");
}

// ---------------------------------------------------------------- small sections

void TalvikWriter::WriteColorTable(XMLWriter& w) {
    if (const Colors* colors = hypertext->GetColorTable())
        colors->ToXML(w);
}

void TalvikWriter::WriteCarried(XMLWriter& w, const std::string& section) {
    if (const std::string* raw = hypertext->CarriedSection(section)) {
        w.Raw(*raw);
        w.Raw("\n");
    }
}

void TalvikWriter::WriteStamps(XMLWriter& w) {
    WriteCarried(w, "stamps");
    WriteCarried(w, "menu");
}

void TalvikWriter::WriteLinkTypes(XMLWriter& w) {
    if (const LinkTypes* types = hypertext->GetLinkTypes())
        types->ToXML(w);
}

void TalvikWriter::WriteMacros(XMLWriter& w) { WriteCarried(w, "macros"); }

void TalvikWriter::WritePreferences(XMLWriter& w) {
    const Prefs* prefs = hypertext->GetPreferences();
    if (!prefs)
        return;
    w.Open("preferences");
    w.EndTag(true);
    for (const auto& [key, value] : prefs->All()) {
        w.Open("pref");
        w.Put("name", key);
        w.EndTag();
        w.Text(value);
        w.Close("pref");
    }
    w.Close("preferences");
}

void TalvikWriter::WriteWindows(XMLWriter& w) { WriteCarried(w, "windows"); }
void TalvikWriter::WriteUtilityWindows(XMLWriter& w) { WriteCarried(w, "utilityWindows"); }
void TalvikWriter::WriteSearches(XMLWriter& w) { WriteCarried(w, "searches"); }
void TalvikWriter::WriteFilters(XMLWriter& w) { WriteCarried(w, "filters"); }
void TalvikWriter::WriteGallery(XMLWriter& w) { WriteCarried(w, "gallery"); }
void TalvikWriter::WriteRecentBadges(XMLWriter& w) { WriteCarried(w, "badges"); }

void TalvikWriter::WritePreview(XMLWriter& w) {
    const std::string& preview = hypertext->Preview();
    if (preview.empty())
        return;
    w.Open("preview");
    w.EndTag();
    w.Raw(Base64::Encode(preview));
    w.Close("preview");
}

// ---------------------------------------------------------------- notes

bool TalvikWriter::CanWrite(const Node* node) const {
    if (!node || node->IsHidden())
        return false;
    if (node->IsAlias()) {
        const Node* original = node->GetOriginal();
        if (!original || original == node || original->IsHidden())
            return false;
        // A clip holds only what it can describe by its own numbers: the ids
        // of notes outside it would be read as those of clipped notes.
        if (renumbering && std::none_of(clipTops.begin(), clipTops.end(),
                                        [original](const Node* top) { return original->IsDescendedFrom(top); }))
            return false;
    }
    return true;
}

void TalvikWriter::WriteNodes(XMLWriter& w, const Node* node) {
    if (node)
        WriteNode(w, node);
}

void TalvikWriter::WriteNode(XMLWriter& w, const Node* node) {
    if (!CanWrite(node))
        return;
    const char* kind = node->XMLKind();
    w.Open(kind);
    w.PutUnsigned("ID", WrittenID(node->GetID().GetID()));
    std::string creator = node->GetID().GetCreator();
    w.Put("Creator", creator.empty() ? node->GetString("Creator") : creator);
    if (!node->IsAlias()) {
        const Node* prototype = node->GetPrototype();
        if (prototype && !prototype->IsHidden())
            w.Put("proto", prototype->Name());
    }
    w.EndTag(true);
    std::string prepared;
    PrepareInto(node, prepared);
    w.Raw(prepared);
    for (const Node* child = node->Son(); child; child = child->Brother())
        WriteNode(w, child);
    w.Close(kind);
}

std::string TalvikWriter::Prepare(const Node* node) const {
    std::string out;
    PrepareInto(node, out);
    return out;
}

void TalvikWriter::PrepareInto(const Node* node, std::string& out) const {
    // The note's values are listed under its lock and weighed after it is
    // released: NeedToWrite reads the prototype and defaults, which may read
    // other notes, and no other note's lock is taken under a note's lock (see
    // Node.cpp). A value replaced meanwhile stays alive in the document's
    // deferred deletion, which is drained only after an agent pass and on
    // closing, on the thread that saves.
    std::vector<std::pair<const Attribute*, const Value*>> values;
    {
        StObjectLock guard(node->Lock());
        values.reserve(node->Properties().size());
        for (const auto& [attribute, value] : node->Properties())
            values.emplace_back(attribute, value);
    }
    {
        for (const auto& [attribute, value] : values) {
            if (!attribute || !value || !attribute->NeedToWrite(node, attribute, value))
                continue;
            out += "<attribute name=\"";
            XMLWriter::ToXML(attribute->Name(), out, true);
            out += "\">";
            if (renumbering && attribute->Name() == "Alias")
                out += std::to_string(WrittenID(static_cast<uint32_t>(value->AsUnsignedLong())));
            else
                XMLWriter::ToXML(value->AsXML(), out, false);
            out += "</attribute>\n";
        }
    }
    const Content* content = node->IsAlias() ? nullptr : node->GetContent();
    if (content && (content->HasText() || content->HasRTFD() || content->HasRTF())) {
        PutElement(out, "text", content->GetText());
        if (content->HasRTFD()) {
            out += "<rtfd>";
            out += Base64::Encode(content->GetRTFD());
            out += "</rtfd>\n";
        }
        if (content->HasRTF())
            PutElement(out, "rtf", content->GetRTF());
    }
    if (const auto* adornment = dynamic_cast<const KindNode*>(node); adornment && !adornment->Picture().empty()) {
        out += "<image>";
        out += Base64::Encode(adornment->Picture());
        out += "</image>\n";
    }
    // Composites go back as they were read.
    std::string composites = node->CompositeData();
    if (!composites.empty()) {
        out += composites;
        out += '\n';
    }
}

// ---------------------------------------------------------------- links

void TalvikWriter::WriteLinks(XMLWriter& w, bool onlyRenumbered) {
    const LinkManager* manager = hypertext->Links();
    if (!manager)
        return;
    w.Open("links");
    w.EndTag(true);
    for (const Link* link : manager->All()) {
        // Prototype relations travel as the `proto` of the note.
        if (link->IsPrototype())
            continue;
        const Node* source = link->SourceNode();
        const Node* dest = link->DestNode();
        if (!CanWrite(source) || (dest && !CanWrite(dest)) || (!dest && !link->IsWebLink()))
            continue;
        if (onlyRenumbered) {
            if (!renumbered.count(source->GetID().GetID()) || (dest && !renumbered.count(dest->GetID().GetID())))
                continue;
            link->ToXML(&w, &renumbered);
        } else {
            link->ToXML(&w);
        }
    }
    w.Close("links");
}
