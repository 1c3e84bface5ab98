#include "SpecialAttributes.h"

#include <atomic>

#include "Change.h"
#include "Content.h"
#include "Hooks.h"
#include "Hypertext.h"
#include "Link.h"
#include "LinkBundle.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "NodeIndex.h"
#include "NodeLinks.h"
#include "Props.h"
#include "Value.h"

namespace {


const Value* SharedBoolean(bool b) {
    static const Value* yes = Value::ForBoolean(true);
    static const Value* no = Value::ForBoolean(false);
    return b ? yes : no;
}

std::atomic<long> prototypeWrites{0};

// Counts the visible links of a note in the document's link store.
LinkCounts CountLinks(const Node* note) {
    LinkCounts counts;
    if (!note)
        return counts;
    Node* self = const_cast<Node*>(note);
    Node* original = self->GetOriginal();
    counts.inbound = static_cast<long>(NodeLinks(self).InboundLinks().OmitPrototypes().OmitHidden().size());
    counts.outbound =
        static_cast<long>(NodeLinks(self).OutboundLinks().OmitPrototypes().OmitWebLinks().OmitHidden().size());
    for (const Link* link : NodeLinks(original).OutboundLinks()) {
        if (link->IsWebLink())
            ++counts.web;
        if (link->IsTextLink())
            ++counts.text;
    }
    for (const Link* link : NodeLinks(self).OutboundLinks())
        if (!link->IsTextLink())
            ++counts.plain;
    return counts;
}

LinkCounter linkCounter = CountLinks;

} // namespace

void SetLinkCounter(LinkCounter counter) { linkCounter = counter ? counter : CountLinks; }

void IsPrototypeAttribute::WillSet(Node*, const Value*) { ++prototypeWrites; }

long IsPrototypeAttribute::SetCount() { return prototypeWrites.load(); }

// ------------------------------------------------------------------- Name

const Value* NameAttribute::ValueFor(const Node* note) const {
    return BasicAttribute::ValueFor(note ? note->GetOriginal() : nullptr);
}

void NameAttribute::Set(Node* note, const Value* value) {
    if (!note) {
        if (value)
            value->Delete();
        return;
    }
    Node* original = note->GetOriginal();
    std::string oldName = original->Name();
    BasicAttribute::Set(original, value);
    NodeFacade(note).Renamed(oldName);
}

void NameAttribute::Remove(Node* note) {
    if (!note)
        return;
    Node* original = note->GetOriginal();
    std::string oldName = original->Name();
    BasicAttribute::Remove(original);
    NodeFacade(note).Renamed(oldName);
}

// ------------------------------------------------------------------- Text

const Value* TextAttribute::ValueFor(const Node* note) const {
    return slot.KeepText(note, NodeText(note).GetText());
}

void TextAttribute::Set(Node* note, const Value* value) {
    std::string text = value ? value->AsString() : std::string();
    if (value)
        value->Delete();
    NodeText t(note);
    t.SetText(text);
    t.SetRTF("");
    t.SetRTFD("");
}

void TextAttribute::Remove(Node* note) { NodeText(note).SetText(""); }

// ------------------------------------------------------------ Path, Local

std::string PathAttribute::ComputeText(const Node* note) const {
    return note ? NodeFacade(note).HTPath() : std::string();
}

const Value* PathAttribute::ValueFor(const Node* note) const { return KeepString(note, ComputeText(note)); }

const Value* LocalAttribute::ValueFor(const Node* note) const {
    std::string names;
    Hypertext* h = note ? note->GetHypertext() : nullptr;
    if (h) {
        NodeDefaults defaults(note);
        for (Attribute* a = h->AttributeStorage()->Root(); a; a = a->Next()) {
            if (a->IsAttributeCategory() || !a->CanInherit() || !defaults.HasImmediate(a))
                continue;
            if (!names.empty())
                names += ';';
            names += a->Name();
        }
    }
    return KeepString(note, names);
}

const Value* HTMLExportPathAttribute::ValueFor(const Node* note) const { return KeepString(note, ComputeText(note)); }

std::string HTMLExportPathAttribute::ComputeText(const Node* note) const {
    if (!note)
        return "";
    auto& fileName = GetHooks().exportFileName;
    std::string path;
    for (const Node* n = note; n && !n->IsRoot(); n = n->Father())
        path = "/" + (fileName ? fileName(n) : n->Name()) + path;
    if (path.empty())
        path = "/";
    return path + note->GetString("HTMLExportExtension");
}

std::string NoteURLAttribute::ComputeText(const Node* note) const {
    auto& url = GetHooks().noteURL;
    return note && url ? url(note) : std::string();
}

const Value* NoteURLAttribute::ValueFor(const Node* note) const { return KeepString(note, ComputeText(note)); }

std::string DisplayNameAttribute::ComputeText(const Node* note) const {
    return note ? note->DisplayName() : std::string();
}

const Value* DisplayNameAttribute::ValueFor(const Node* note) const { return KeepString(note, ComputeText(note)); }

const Value* AliasAttribute::ValueFor(const Node* note) const { return SharedBoolean(note && note->IsAlias()); }

const Value* AdornmentAttribute::ValueFor(const Node* note) const {
    return SharedBoolean(note && note->IsAdornment());
}

TimelineScaleColor2Attribute::~TimelineScaleColor2Attribute() {
    if (black)
        black->Delete();
}

const Value* TimelineScaleColor2Attribute::ValueFor(const Node* note) const {
    if (!note) {
        if (!black)
            black = Value::ForColor("black");
        return black;
    }
    const Value* v = BasicAttribute::ValueFor(note);
    const Value* d = GetDefaultValue(note);
    if (v && d && v->compare(d) == 0)
        if (const Value* background = note->Get("MapBackgroundColor"))
            return background;
    return v;
}

// -------------------------------------------------------------- Prototype

std::string PrototypeAttribute::ComputeText(const Node* note) const {
    const Node* prototype = note ? note->GetOriginal()->GetPrototype() : nullptr;
    return prototype ? prototype->Name() : std::string();
}

const Value* PrototypeAttribute::ValueFor(const Node* note) const { return slot.KeepText(note, ComputeText(note)); }

const Value* PrototypeAttribute::ImmediateValue(const Node* note) const {
    const Node* prototype = note ? note->GetOriginal()->GetPrototype() : nullptr;
    return prototype ? ValueFor(note) : nullptr;
}

void PrototypeAttribute::Set(Node* note, const Value* value) {
    std::string n = value ? value->AsString() : std::string();
    if (value)
        value->Delete();
    if (!note)
        return;
    StChanges changes(note->GetHypertext());
    if (n.empty()) {
        note->SetPrototype(nullptr, true);
        return;
    }
    Hypertext* h = note->GetHypertext();
    if (!h)
        return;
    Node* found = h->GetIndex()->FindPrototype(n);
    if (!found || found->IsHidden())
        found = h->GetIndex()->Find(n);
    if (found && !found->IsHidden())
        note->SetPrototype(found->GetOriginal(), true);
}

void PrototypeAttribute::Remove(Node* note) {
    if (note)
        note->SetPrototype(nullptr, true);
}

// ---------------------------------------------------------------- Aliases

const Value* AliasesAttribute::ValueFor(const Node* note) const { return slot.KeepText(note, ComputeText(note)); }

std::string AliasesAttribute::ComputeText(const Node* note) const {
    std::string paths;
    if (note)
        for (Node* alias : note->GetOriginal()->Aliases()) {
            if (!paths.empty())
                paths += ';';
            paths += NodeFacade(alias).HTPath();
        }
    return paths;
}

// ----------------------------------------------------------------- Parent

std::string ParentAttribute::ComputeText(const Node* note) const {
    Node* father = note ? note->Father() : nullptr;
    return NodeFacade(father).Valid() ? NodeFacade(father).HTPath() : std::string();
}

const Value* ParentAttribute::ValueFor(const Node* note) const { return slot.KeepText(note, ComputeText(note)); }

const Value* ParentAttribute::ImmediateValue(const Node* note) const { return ValueFor(note); }

namespace {

// Resolves "/a/b" from the root by names; the action language installs a
// resolver that knows designators.
Node* ResolvePath(Node* root, const std::string& path) {
    if (auto& find = GetHooks().findPath)
        return find(root, path);
    Node* at = root;
    size_t i = 0;
    while (at && i < path.size()) {
        if (path[i] == '/') {
            ++i;
            continue;
        }
        size_t j = path.find('/', i);
        std::string part = path.substr(i, j == std::string::npos ? std::string::npos : j - i);
        Node* child = nullptr;
        for (Node* c = at->Son(); c; c = c->Brother())
            if (c->Name() == part) {
                child = c;
                break;
            }
        at = child;
        i = j == std::string::npos ? path.size() : j;
    }
    return at;
}

} // namespace

void ParentAttribute::Set(Node* note, const Value* value) {
    std::string path = value ? value->AsString() : std::string();
    if (value)
        value->Delete();
    if (!note || !note->GetHypertext())
        return;
    Node* root = note->Root();
    Node* newFather = path.empty() ? root : ResolvePath(root, path);
    if (!newFather || newFather == note->Father() || newFather->IsDescendedFrom(note))
        return;
    for (Node* a = newFather; a; a = a->Father()) {
        if (!a->CanReceiveChildren())
            return;
        if (a == root)
            break;
    }
    StChanges changes(note->GetHypertext());
    if (Node* old = note->Father())
        old->Changed(kChangeChildren);
    NodePosition(note).DoMoveTo(newFather, newFather->YoungestSon());
    newFather->Changed(kChangeChildren);
}

void ParentAttribute::Remove(Node* note) {
    if (!note || !note->Root() || note->Father() == note->Root())
        return;
    Node* root = note->Root();
    NodePosition(note).DoMoveTo(root, root->YoungestSon());
}

// ---------------------------------------------------------- cached counts

long WordCountAttribute::DoGetValue(const Node* note) const {
    return note ? NodeText(note->GetOriginal()).WordCount() : 0;
}

long ImageCountAttribute::DoGetValue(const Node* note) const { return NodeText(note).ImageCount(); }

long NoteSizeAttribute::DoGetValue(const Node* note) const { return NodeText(note).EstimatedNoteSize(); }

long ChildCountAttribute::DoGetValue(const Node* note) const {
    long n = 0;
    if (note)
        for (Node* c = note->GetOriginal()->Son(); c; c = c->Brother())
            if (!c->IsAdornment())
                ++n;
    return n;
}

long AdornmentCountAttribute::DoGetValue(const Node* note) const {
    long n = 0;
    if (note)
        for (Node* c = note->Son(); c; c = c->Brother())
            if (c->IsAdornment())
                ++n;
    return n;
}

long DescendantCountAttribute::DoGetValue(const Node* note) const {
    long n = 0;
    if (!note)
        return 0;
    Node* end = note->Sentinel();
    for (Node* d = note->Son(); d && d != end; d = d->Next())
        if (!d->IsAdornment())
            ++n;
    return n;
}

long TextLengthAttribute::DoGetValue(const Node* note) const { return NodeText(note).TextSize(); }

long OutlineOrderAttribute::DoGetValue(const Node* note) const { return note ? note->GetOutlineOrder() : 0; }

long InboundLinksAttribute::DoGetValue(const Node* note) const { return note ? linkCounter(note).inbound : 0; }

long OutboundLinksAttribute::DoGetValue(const Node* note) const { return note ? linkCounter(note).outbound : 0; }

long WebLinksAttribute::DoGetValue(const Node* note) const { return note ? linkCounter(note).web : 0; }

long TextLinksAttribute::DoGetValue(const Node* note) const { return note ? linkCounter(note).text : 0; }

long PlainLinksAttribute::DoGetValue(const Node* note) const { return note ? linkCounter(note).plain : 0; }

long SiblingOrderAttribute::DoGetValue(const Node* note) const { return note ? note->CountElderSiblings() + 1 : 0; }

long OutlineDepthAttribute::DoGetValue(const Node* note) const {
    long depth = 0;
    for (const Node* n = note; n && !n->IsRoot(); n = n->Father())
        ++depth;
    return depth;
}
