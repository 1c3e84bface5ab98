#include "Node.h"

#include <cassert>
#include <unordered_set>

#include "Attribute.h"
#include "Change.h"
#include "Content.h"
#include "Hooks.h"
#include "Hypertext.h"
#include "Link.h"
#include "LinkManager.h"
#include "Log.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "NodeIndex.h"
#include "NodeLinks.h"
#include "Prefs.h"
#include "Props.h"
#include "Prototypes.h"
#include "UnicodeString.h"
#include "Value.h"

const Content* EmptyContent();

// ------------------------------------------------------------ construction

Node::Node(Hypertext* h) : hypertext(h), id(h) {
    if (hypertext)
        hypertext->Adopt(this);
}

Node::Node(const std::string& n, Node* parent, Node* after, double x, double y) : Node(parent, after, true) {
    SetName(n);
    NodePosition(this).InitializePosition(parent, after, x, y);
    // Created and Modified hold the same instant: one shared date value.
    Value* now = Value::ForDate(STime::Now());
    Set("Modified", now->Clone());
    Set("Created", now);
    SetDouble("Xpos", x);
    SetDouble("Ypos", y);
    SetID(GetID());
    hypertext->AddNode(this);
}

Node::Node(Node* parent, Node* after, bool) {
    hypertext = parent ? parent->GetHypertext() : nullptr;
    assert(hypertext != nullptr && "file!=NULL");
    hypertext->Adopt(this);
    id = NodeID(hypertext);
}

void Node::Adopted(Tree* child) {
    // A note under construction answers as a plain note: AliasNode marks
    // its first father itself.
    if (static_cast<Node*>(child)->IsAlias())
        holdsAliases.store(true, std::memory_order_relaxed);
}

Node* Node::CreateForReading(Node* parent, Node* after, const uint32_t* fileID, const std::string* fileCreator,
                             size_t expectedValues) {
    if (!parent || !parent->GetHypertext())
        return nullptr;
    return FinishForReading(new Node(parent, after, true), parent, after, fileID, fileCreator, expectedValues);
}

Node* Node::FinishForReading(Node* node, Node* parent, Node* after, const uint32_t* fileID,
                             const std::string* fileCreator, size_t expectedValues) {
    if (expectedValues)
        node->properties.Reserve(expectedValues);
    NodePosition(node).PlaceWithoutPosition(parent, after);
    // The fresh id is still drawn, so that the shared counter moves as it
    // does for any new note; only its values are never made.
    if (fileID)
        node->SetID(*fileID, fileCreator ? *fileCreator : node->Creator());
    else
        node->SetID(node->GetID());
    node->hypertext->AddNode(node);
    return node;
}

Node::Node(const Node& source, unsigned char withLinks) {
    hypertext = source.hypertext;
    if (hypertext)
        hypertext->Adopt(this);
    if (const Content* text = source.GetContent(); text && text != EmptyContent())
        content = std::make_unique<Content>(*text);
    if (const NodeVector* adornments = source.OldAdornments())
        MutableRare().oldAdornments = std::make_unique<NodeVector>(*adornments);
    SetCompositeData(source.CompositeData());
    newlyCreated = source.newlyCreated;
    inhibitSorting = source.inhibitSorting;
    outlineOrder = source.outlineOrder;
    siblingOrder = source.siblingOrder;
    std::string request = source.GetPrototypeRequest();
    if (!request.empty())
        RequestPrototype(request);
    {
        StObjectLock guard(source.lock);
        properties.CloneFrom(source.properties);
    }
    // The copy shares the prototype relation of its source.
    if (Node* prototype = source.GetPrototype())
        GetPrototypeCache()->SetNode(prototype);
    std::string copyName = NodeName(const_cast<Node*>(&source)).MakeNameForDuplicate(source.Name());
    if (const Attribute* nameAttr = NameAttribute())
        Node::DoSet(nameAttr, Value::Create(copyName));
    Value* now = Value::ForDate(STime::Now());
    Set("Modified", now->Clone());
    Set("Created", now);
    id = NodeID(hypertext);
    if (hypertext)
        hypertext->AddNode(this);
    // The copy gets every outbound link of its source, hidden ones too; the
    // prototype relation is carried by the cache above, not by a new link.
    if (withLinks && hypertext && hypertext->Links())
        for (Link* link : NodeLinks(const_cast<Node*>(&source)).OutboundLinksIncludeHidden()) {
            if (link->IsPrototype())
                continue;
            LinkRecord record(link);
            record.SetSourceNode(this);
            record.CreateLink();
        }
    if (const Attribute* idAttr = GetAttribute("ID"); idAttr && idAttr->IsValid())
        Node::DoSet(idAttr, Value::ForUnsigned(id.GetID()));
    if (const Attribute* creator = GetAttribute("Creator"); creator && creator->IsValid())
        Node::DoSet(creator, id.CreatorValue());
}

Node::~Node() {
    if (hypertext)
        hypertext->Disown(this);
    beingDeleted = true;
    Hide(true);
    if (hypertext)
        hypertext->DidDelete(this);
    while (Node* child = Son()) {
        child->Unhook();
        delete child;
    }
    properties.DeleteValues();
    if (Rare* extra = KnownRare()) {
        delete extra->aliases.exchange(nullptr, std::memory_order_acq_rel);
        delete extra->prototypeCache.exchange(nullptr, std::memory_order_acq_rel);
    }
    prototypeNode = nullptr;
    delete rare.exchange(nullptr, std::memory_order_acq_rel);
    if (hypertext)
        hypertext->RemoveNode(this);
    hypertext = nullptr;
    content.reset();
}

Node* Node::Create(Hypertext* h) {
    Node* n = new Node(h);
    n->Initialize();
    return n;
}

Node* Node::Create(const std::string& n, Node* parent, Node* after, double x, double y, bool initialize) {
    if (!parent || !parent->GetHypertext())
        return nullptr;
    Node* node = new Node(n, parent, after, x, y);
    if (initialize)
        node->Initialize();
    return node;
}

Node* Node::Create(const Node& source, unsigned char withLinks) {
    Node* copy = source.Clone(withLinks);
    if (!copy)
        return nullptr;
    copy->Initialize();
    auto& hooks = GetHooks();
    if (hooks.onAdd && copy->Father())
        hooks.onAdd(copy, copy->Father());
    if (hooks.onAdornments)
        hooks.onAdornments(copy, NodeVector());
    return copy;
}

Node* Node::Clone(unsigned char withLinks) const { return new Node(*this, withLinks); }

void Node::Initialize() {
    if (hypertext)
        hypertext->NewlyCreated(this);
    NodePosition(this).JustMoved(true, NodeVector());
}

void Node::SetHypertext(Hypertext* h) {
    if (h == hypertext)
        return;
    for (Node* child = Son(); child; child = child->Brother())
        child->SetHypertext(h);
    if (hypertext) {
        hypertext->RemoveNode(this);
        hypertext->Disown(this);
    }
    hypertext = h;
    if (hypertext)
        hypertext->Adopt(this);
    id.MakeUnique(h);
    if (hypertext) {
        hypertext->AddNode(this);
        CanForward(false);
        SetLong("ID", static_cast<long>(id.GetID()));
        Set("Creator", id.GetCreator());
        CanForward(true);
    }
}

const Prefs* Node::GetPreferences() const { return hypertext ? hypertext->GetPreferences() : nullptr; }

Node* Node::Root() const { return hypertext ? hypertext->Root() : nullptr; }

void Node::SetID(const NodeID& newID) {
    const Attribute* idAttr = hypertext ? hypertext->IDAttribute() : nullptr;
    bool hasID = idAttr && properties.Has(idAttr);
    if (hasID && id.Equal(newID))
        return;
    if (hasID && hypertext)
        hypertext->RemoveNode(this);
    id = newID;
    bool forward = CanForward();
    CanForward(false);
    if (idAttr && idAttr->IsValid())
        Node::DoSet(idAttr, Value::ForUnsigned(id.GetID()));
    if (const Attribute* creator = hypertext ? hypertext->CreatorAttribute() : nullptr; creator && creator->IsValid())
        Node::DoSet(creator, id.CreatorValue());
    CanForward(forward);
    if (hasID && hypertext)
        hypertext->AddNode(this);
}

const Content* EmptyContent() {
    static const Content* empty = new Content();
    return empty;
}

Content* Node::GetContent() {
    if (!content)
        content = std::make_unique<Content>();
    return content.get();
}

const Content* Node::GetContent() const { return content ? content.get() : EmptyContent(); }

// ------------------------------------------------------------ hide and show

void Node::Hide(bool hide) {
    if (hide)
        Hide();
    else
        Show();
}

void Node::Hide() {
    if (!hypertext || !CanEdit() || hidden)
        return;
    StChanges changes(hypertext);
    NodeSelection(this).Deselect();
    DoHide();
    Unhook();
}

void Node::DoHide() {
    if (hidden)
        return;
    if (NodeAliases* aliases = KnownAliases(); aliases && !IsAlias())
        aliases->HideTheAliases(true);
    DoHideSelf();
}

void Node::DoHideSelf() {
    NodeSelection(this).Deselect();
    hidden = true;
    if (hypertext) {
        hypertext->IsBeingHidden(this, true);
        hypertext->RemoveNode(this);
    }
    for (Node* child = Son(); child; child = child->Brother())
        child->DoHide();
    ChangeFacade(this).Changed(kChangeDeleted | kChangeSelection);
    if (Node* f = Father())
        f->Changed(kChangeChildren);
}

void Node::Show() {
    if (!hypertext || !CanEdit() || !hidden)
        return;
    NodeSelection(this).Deselect();
    StChanges changes(hypertext);
    DoShow();
}

void Node::DoShow() {
    if (!hidden)
        return;
    DoShowSelf();
    if (NodeAliases* aliases = KnownAliases(); aliases && !IsAlias())
        aliases->ShowTheHiddenAliases();
}

void Node::DoShowSelf() {
    NodeSelection(this).Deselect();
    if (hypertext)
        hypertext->IsBeingHidden(this, false);
    hidden = false;
    if (hypertext)
        hypertext->AddNode(this);
    for (Node* child = Son(); child; child = child->Brother())
        child->DoShow();
    Changed(kChangeNode);
    if (Node* f = Father())
        f->Changed(kChangeChildren);
}

// ------------------------------------------------------------------ names

std::string Node::Name() const {
    const Node* original = GetOriginal();
    const Attribute* attr = original->NameAttribute();
    if (!attr)
        return "";
    std::string n;
    {
        StObjectLock guard(original->lock);
        const Value* v = attr->ValueFor(original);
        n = v ? v->AsString() : std::string();
    }
    if (!UnicodeString::IsValidUTF8(n))
        return "";
    return n;
}

std::string Node::DisplayName() const {
    auto& hooks = GetHooks();
    if (hooks.displayName)
        return hooks.displayName(this);
    return Name();
}

std::string Node::DefaultName() const {
    const Attribute* attr = NameAttribute();
    return attr ? attr->GetDefaultValueAsString() : std::string();
}

void Node::SetName(const std::string& newName) {
    Node* original = GetOriginal();
    if (original->Name() != newName) {
        if (const Attribute* attr = NameAttribute())
            original->Set(attr, Value::Create(newName));
        Changed(kChangeNode);
        if (auto& textChanged = GetHooks().textChanged)
            textChanged(original);
    }
}

const Attribute* Node::NameAttribute() const { return hypertext ? hypertext->NameAttribute() : nullptr; }

// ----------------------------------------------------------- modification

void Node::HasBeenModified() {
    SetTime("Modified", STime::Now());
    ChangeFacade(this).SetModified(true);
}

void Node::Changed(unsigned long mask) {
    if (mask == 0 || hidden)
        return;
    ChangeFacade(this).Changed(mask);
}

void Node::AddChange(unsigned long mask) {
    if (mask == 0)
        return;
    ChangeFacade(this).Changed(mask);
}

void Node::Changed(const Attribute* attribute) {
    // Many attributes (every user attribute among them) have no change
    // facets, and their changes reach no listener; the document's change
    // count sees them all.
    if (hypertext && attribute)
        hypertext->CountChange();
    if (attribute)
        Changed(attribute->GetChangeFacets());
}

void Node::ChangedAttribute(const std::string& attributeName) { Changed(GetAttribute(attributeName)); }

bool Node::CanEdit() const { return true; }

bool Node::ReadOnly() const {
    if (!CanEdit())
        return true;
    return GetBoolean("ReadOnly");
}

bool Node::IsLocked() const { return GetBoolean("Lock"); }

bool Node::IsContainer() const { return GetOriginal()->Son() != nullptr; }

// ----------------------------------------------------------------- writes

const Attribute* Node::GetAttribute(const std::string& attributeName) const {
    if (!hypertext || attributeName.empty())
        return nullptr;
    if (attributeName[0] == '$') {
        if (attributeName.size() == 1)
            return nullptr;
        return hypertext->AttributeStorage()->GetAttribute(attributeName.substr(1));
    }
    return hypertext->AttributeStorage()->GetAttribute(attributeName);
}

void Node::Set(const Attribute* attribute, const Value* value) {
    if (!attribute) {
        ConstValuePtr dropped(value);
        return;
    }
    const_cast<Attribute*>(attribute)->Set(this, value);
}

void Node::Set(const Attribute* attribute, const std::string& text) {
    if (!attribute || !attribute->IsValid())
        return;
    if (attribute->GetType() == AttributeType::kFile) {
        SetFileValue(attribute, text);
        return;
    }
    Set(attribute, Value::Create(attribute->GetType(), text));
}

void Node::Set(const std::string& attributeName, const Value* value) {
    const Attribute* a = GetAttribute(attributeName);
    if (!a || !a->IsValid()) {
        ConstValuePtr dropped(value);
        return;
    }
    Set(a, value);
}

void Node::Set(const std::string& attributeName, const std::string& text) {
    const Attribute* a = GetAttribute(attributeName);
    if (!a || !a->IsValid())
        return;
    Set(a, text);
}

void Node::SetSet(const std::string& n, const std::string& items) { Set(n, Value::Create(AttributeType::kSet, items)); }

void Node::SetDictionary(const std::string& n, const std::string& text) {
    Set(n, Value::Create(AttributeType::kDictionary, text));
}

void Node::SetTime(const std::string& n, const STime& time) { Set(n, Value::ForDate(time)); }

void Node::SetDouble(const std::string& n, double d) { Set(n, Value::ForDouble(d)); }

void Node::SetColor(const std::string& n, const PColor& color) { Set(n, Value::ForColor(color)); }

void Node::SetColor(const std::string& n, const std::string& color) { Set(n, Value::ForColor(color)); }

void Node::SetLong(const std::string& n, long l) { Set(n, Value::ForInt(static_cast<int>(l))); }

void Node::SetUnsigned(const std::string& n, unsigned long u) {
    Set(n, Value::ForUnsigned(static_cast<unsigned>(u)));
}

void Node::SetBoolean(const std::string& n, bool b) { Set(n, Value::ForBoolean(b)); }

void Node::ToggleBoolean(const std::string& n) { SetBoolean(n, !GetBoolean(n)); }

void Node::SetFile(const std::string& n, const std::string& path) { SetFileValue(GetAttribute(n), path); }

void Node::SetFileValue(const Attribute* attribute, const std::string& path) {
    if (!attribute || !attribute->IsValid())
        return;
    Set(attribute, Value::ForFile(path));
}

void Node::DoSet(const Attribute* attribute, const Value* value) {
    // The note takes the value, or it is released here.
    if (beingDeleted || !attribute || !attribute->IsValid()) {
        ConstValuePtr dropped(value);
        return;
    }
    bool changed = true;
    {
        StObjectLock guard(lock);
        const Value* old = properties.Get(attribute);
        if (old == value) {
            // Writing a shared value the note already holds hands over one
            // more reference to it, which the note does not keep.
            if (value && value->IsShared())
                value->Delete();
            return;
        }
        if (old)
            changed = old->compare(value) != 0;
        Value* replaced = properties.Put(attribute, const_cast<Value*>(value));
        if (replaced)
            DeleteValue(replaced);
    }
    if (changed)
        Changed(attribute);
}

void Node::Remove(const Attribute* attribute) {
    if (attribute)
        const_cast<Attribute*>(attribute)->Remove(this);
}

void Node::Remove(const std::string& attributeName) {
    const Attribute* a = GetAttribute(attributeName);
    if (a && a->IsValid())
        Remove(a);
}

void Node::DoRemove(const Attribute* attribute) {
    Value* old = nullptr;
    {
        StObjectLock guard(lock);
        old = properties.Take(attribute);
    }
    if (old) {
        DeleteValue(old);
        Changed(attribute);
    }
}

void Node::DeleteValue(const Value* value) const {
    if (!value)
        return;
    if (hypertext)
        hypertext->DeleteValue(value);
    else
        value->Delete();
}

// ------------------------------------------------------------------ reads

const Value* Node::Get(const std::string& attributeName) const {
    const Attribute* a = GetAttribute(attributeName);
    if (!a || !a->IsValid())
        return nullptr;
    return Get(a);
}

namespace {
const Value* EmptyStringValue() {
    static const Value* empty = Value::Create("");
    return empty;
}
} // namespace

const Value* Node::Get(const Attribute* attribute) const {
    if (beingDeleted)
        return EmptyStringValue();
    if (!attribute)
        return nullptr;
    return attribute->ValueFor(this);
}

// The order of the locks a read takes, so that no two threads wait on each
// other: first the note's lock, then the attribute's clone queue, then only
// locks that are taken last (the computed-value slot's queue, the link
// store's). No other note's lock is ever taken under them. An attribute that
// reads other notes (ReadsOtherNotes: Path, Container, Aliases, Prototype
// ...) is therefore computed after the note's lock is released and without
// its clone queue, and each note it reads takes its own lock alone.
Value* Node::CreateClonedValue(const Attribute* attribute) const {
    {
        StObjectLock guard(lock);
        if (beingDeleted || !hypertext || !attribute)
            return Value::Create("");
        if (!attribute->ReadsOtherNotes())
            return attribute->ClonedValueFor(this);
    }
    return attribute->ClonedValueFor(this);
}

Value* Node::CreateClonedValue(const std::string& attributeName) const {
    const Attribute* a = GetAttribute(attributeName);
    if (!a)
        return Value::Create("");
    return CreateClonedValue(a);
}

namespace {
// Converts the value a read answers as CreateClonedValue would give it, under
// the same locks; most values are converted in place, without a copy made
// and destroyed for every read.
// The locks are taken in the order given above CreateClonedValue.
template <typename F>
auto WithClone(const Node* node, const Attribute* attribute, F convert) {
    ValuePtr clone;
    bool readsOtherNotes = false;
    {
        StObjectLock guard(node->Lock());
        if (node->IsBeingDeleted() || !node->GetHypertext() || !attribute) {
            clone.reset(Value::Create(""));
        } else if (attribute->ReadsOtherNotes()) {
            readsOtherNotes = true;
        } else {
            if (auto converted = attribute->ReadInPlace(node, convert))
                return *converted;
            clone.reset(attribute->ClonedValueFor(node));
        }
    }
    if (readsOtherNotes)
        clone.reset(attribute->ClonedValueFor(node));
    // Other values (dates that may still compute their expression, among
    // them) are converted outside the locks, as clones.
    return convert(clone.get());
}
} // namespace

std::string Node::GetString(const std::string& attributeName) const {
    const Attribute* a = GetAttribute(attributeName);
    return GetString(a);
}

namespace {
// Whether the note may be read at all; taken under its lock.
bool Readable(const Node* node) {
    StObjectLock guard(node->Lock());
    return !node->IsBeingDeleted() && node->GetHypertext();
}

// The text of an attribute that reads other notes, as the value made from
// it reads (ClonedValueFor): only text with a legacy tag ("Long[ 5 ]")
// reads otherwise, so only such text is made into a value.
std::string ComputedText(const Node* node, const Attribute* attribute) {
    if (!Readable(node))
        return "";
    std::string text = attribute->ComputeText(node);
    if (text.find('[') == std::string::npos)
        return text;
    ValuePtr value(Value::Create(text));
    return value ? value->AsString() : std::string();
}
} // namespace

namespace {
// The text of a value, written into `out`.
void TextOf(const Value* v, std::string& out) {
    if (!v)
        out.clear();
    else if (const std::string* text = v->TextInPlace())
        out.assign(*text);
    else
        out = v->AsString();
}

// The text of a stored value (see Attribute::ReadsStoredValuesOnly), as
// WithClone reads it, under the note's lock alone. Besides values that read
// as their clones, a colour's text is read in place too: its text is the
// text it was made from, and its clone is made from that same text.
void StoredText(const Node* node, const Attribute* attribute, std::string& out) {
    ValuePtr clone;
    {
        StObjectLock guard(node->Lock());
        if (node->IsBeingDeleted() || !node->GetHypertext()) {
            out.clear();
            return;
        }
        const Value* v = attribute->ValueFor(node);
        if (!v || v->ReadsAsItsClone() || v->TextInPlace()) {
            TextOf(v, out);
            return;
        }
        clone.reset(v->Clone());
    }
    TextOf(clone.get(), out);
}
} // namespace

std::string Node::GetString(const Attribute* attribute) const {
    if (!attribute)
        return "";
    // Text computed from other notes is taken as computed, with no value
    // made for it (see the order of the locks above CreateClonedValue).
    if (attribute->ReadsOtherNotes())
        return ComputedText(this, attribute);
    if (attribute->ReadsStoredValuesOnly()) {
        std::string text;
        StoredText(this, attribute, text);
        return text;
    }
    return WithClone(this, attribute, [](const Value* v) { return v ? v->AsString() : std::string(); });
}

void Node::GetStringInto(const Attribute* attribute, std::string& out) const {
    if (!attribute) {
        out.clear();
        return;
    }
    if (attribute->ReadsOtherNotes()) {
        out = ComputedText(this, attribute);
        return;
    }
    if (attribute->ReadsStoredValuesOnly()) {
        StoredText(this, attribute, out);
        return;
    }
    WithClone(this, attribute, [&out](const Value* v) {
        TextOf(v, out);
        return true;
    });
}

std::string Node::GetFormattedString(const std::string& n, const std::string& format) const {
    return WithClone(this, GetAttribute(n), [&](const Value* v) { return v ? v->AsFormattedString(format) : ""; });
}

std::string Node::GetShortString(const std::string& n) const {
    return WithClone(this, GetAttribute(n), [](const Value* v) { return v ? v->AsShortString() : std::string(); });
}

std::string Node::GetExportString(const std::string& n, const std::string& format) const {
    return WithClone(this, GetAttribute(n),
                     [&](const Value* v) { return v ? v->AsExportString(format, hypertext) : std::string(); });
}

double Node::GetDouble(const std::string& n) const { return GetDouble(GetAttribute(n)); }

double Node::GetDouble(const Attribute* attribute) const {
    return WithClone(this, attribute, [](const Value* v) { return v ? v->AsDouble() : 0.0; });
}

long Node::GetLong(const std::string& n) const { return GetLong(GetAttribute(n)); }

long Node::GetLong(const Attribute* attribute) const {
    return WithClone(this, attribute, [](const Value* v) { return v ? static_cast<long>(v->AsLong()) : 0L; });
}

unsigned long Node::GetUnsignedLong(const std::string& n) const {
    return WithClone(this, GetAttribute(n),
                     [](const Value* v) { return v ? static_cast<unsigned long>(v->AsUnsignedLong()) : 0UL; });
}

bool Node::GetBoolean(const std::string& n) const { return GetBoolean(GetAttribute(n)); }

bool Node::GetBoolean(const Attribute* attribute) const {
    if (!attribute)
        return false;
    return WithClone(this, attribute, [](const Value* v) { return v && v->AsBoolean(); });
}

STime Node::GetDate(const std::string& n) const {
    return WithClone(this, GetAttribute(n), [](const Value* v) { return v ? v->AsTime() : STime::Never(); });
}

SharedDictionary Node::GetDictionary(const std::string& n) const {
    return WithClone(this, GetAttribute(n), [](const Value* v) { return v ? v->AsDictionary() : SharedDictionary(); });
}

PColor Node::GetColor(const std::string& n) const {
    std::string text = GetString(n);
    if (text.empty())
        return PColor();
    if (text == "automatic") {
        if (Node* prototype = GetPrototype())
            return prototype->GetColor(n);
        const Attribute* a = GetAttribute(n);
        return HypertextFacade(hypertext).TranslateColor(a ? a->GetDefaultValueAsString() : std::string());
    }
    return HypertextFacade(hypertext).TranslateColor(text);
}

// The note's lock guards writes (DoSet) and the cloning reads that other
// threads use (CreateClonedValue); a borrowed read is made on the thread that
// owns the tree and takes no lock.
const Value* Node::DoGetImmediate(const Attribute* attribute) const { return properties.Get(attribute); }

const Value* Node::DoGet(const Attribute* attribute) const {
    if (const Value* own = DoGetImmediate(attribute))
        return own;
    return InheritedValue(attribute);
}


const Value* Node::InheritedValue(const Attribute* attribute) const {
    // An invalid attribute is never stored, so the walk would find nothing.
    if (!attribute || !attribute->CanInheritFast())
        return nullptr;
    const Node* current = this;
    const Node* p = readsPrototypeThroughOriginal ? GetPrototype() : prototypeNode;
    // In a loop every note of the loop is visited before the first repeat,
    // so the answer is the same whether a repeat is caught at once or later:
    // short chains walk without bookkeeping, long ones keep a set.
    constexpr int kUnguardedSteps = 32;
    int steps = 0;
    std::unique_ptr<std::unordered_set<const Node*>> seen;
    const uint64_t bit = attribute->SummaryBit();
    while (p && p != current) {
        if (++steps > kUnguardedSteps) {
            if (!seen)
                seen = std::make_unique<std::unordered_set<const Node*>>();
            if (!seen->insert(p).second)
                return nullptr;
        }
        if (const Value* v = p->properties.Get(attribute, bit))
            return v;
        current = p;
        p = p->prototypeNode;
    }
    return nullptr;
}

void Node::CloneValue(const std::string& n, const Node* source) {
    if (!source)
        return;
    const Attribute* a = GetAttribute(n);
    if (!a)
        return;
    Set(a, source->CreateClonedValue(a));
}

// ------------------------------------------------------------- prototypes

PrototypeCache* Node::GetPrototypeCache() const {
    if (PrototypeCache* cache = KnownPrototypeCache())
        return cache;
    Rare& extra = MutableRare();
    StObjectLock guard(lock);
    PrototypeCache* cache = extra.prototypeCache.load(std::memory_order_relaxed);
    if (!cache) {
        cache = new PrototypeCache();
        cache->Mirror(&prototypeNode);
        extra.prototypeCache.store(cache, std::memory_order_release);
    }
    return cache;
}

Node* Node::GetPrototype() const { return CachedPrototypeNode(); }

Node* Node::CachedPrototypeNode() const {
    return prototypeNode;
}

void Node::SetPrototype(Node* prototype, bool cloneChildren) {
    NodeInheritance(this).SetPrototype(prototype, cloneChildren);
}

void Node::WillHavePrototype(const Link* link) { GetPrototypeCache()->Set(link); }

void Node::RequestPrototype(const std::string& n) { GetPrototypeCache()->RequestPrototype(n); }

std::string Node::GetPrototypeRequest() const {
    PrototypeCache* cache = KnownPrototypeCache();
    return cache ? cache->GetPrototypeRequest() : std::string();
}

const Attribute* Node::SortAttribute() const {
    std::string n = GetString("Sort");
    if (n.empty())
        return nullptr;
    return GetAttribute(n);
}

// ----------------------------------------------------------------- aliases

NodeAliases* Node::GetNodeAliases() const {
    if (NodeAliases* aliases = KnownAliases())
        return aliases;
    Rare& extra = MutableRare();
    StObjectLock guard(lock);
    NodeAliases* aliases = extra.aliases.load(std::memory_order_relaxed);
    if (!aliases) {
        aliases = new NodeAliases();
        extra.aliases.store(aliases, std::memory_order_release);
    }
    return aliases;
}

void Node::AddAlias(Node* alias) { GetNodeAliases()->Add(alias); }

void Node::HidingAlias(Node* alias, bool hiding) {
    if (NodeAliases* aliases = KnownAliases())
        aliases->Hiding(alias, hiding);
}

void Node::DeletingAlias(Node* alias) {
    if (NodeAliases* aliases = KnownAliases())
        aliases->Deleting(alias);
}

NodeVector Node::Aliases() const {
    NodeAliases* aliases = KnownAliases();
    return aliases ? aliases->Aliases() : NodeVector();
}

Node::Rare& Node::MutableRare() const {
    // Export output may be set from a worker thread while the note moves.
    StObjectLock guard(lock);
    Rare* extra = rare.load(std::memory_order_relaxed);
    if (!extra) {
        extra = new Rare();
        rare.store(extra, std::memory_order_release);
    }
    return *extra;
}

Node::Rare::~Rare() {
    delete aliases.load(std::memory_order_relaxed);
    delete prototypeCache.load(std::memory_order_relaxed);
}

const NodeVector* Node::OldAdornments() const {
    Rare* extra = KnownRare();
    return extra ? extra->oldAdornments.get() : nullptr;
}

void Node::SetOldAdornments(const NodeVector& v) { MutableRare().oldAdornments = std::make_unique<NodeVector>(v); }

std::string Node::CompositeData() const {
    StObjectLock guard(lock);
    Rare* extra = KnownRare();
    return extra && extra->compositeData ? *extra->compositeData : std::string();
}

void Node::SetCompositeData(std::string xml) {
    StObjectLock guard(lock);
    if (xml.empty() && !KnownRare())
        return;
    Rare& extra = MutableRare();
    if (xml.empty())
        extra.compositeData.reset();
    else
        extra.compositeData = std::make_unique<std::string>(std::move(xml));
}

std::string Node::OutputWorkingString() const {
    StObjectLock guard(lock);
    Rare* extra = KnownRare();
    return extra && extra->outputWorkingString ? *extra->outputWorkingString : std::string();
}

void Node::SetOutputWorkingString(const std::string& s) {
    StObjectLock guard(lock);
    Rare& extra = MutableRare();
    if (!extra.outputWorkingString)
        extra.outputWorkingString = std::make_unique<std::string>();
    *extra.outputWorkingString = s;
}

NotANode* NotANode::Get() {
    static NotANode* none = new NotANode();
    return none;
}
