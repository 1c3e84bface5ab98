#include "Prototypes.h"

#include "Link.h"

#include <algorithm>
#include <unordered_set>

#include "Attribute.h"
#include "Content.h"
#include "Hypertext.h"
#include "NodeHelpers.h"
#include "Props.h"
#include "Value.h"

// ------------------------------------------------------------ PrototypeCache

void PrototypeCache::Set(const Link* l) {
    link = l;
    node = l ? l->DestNode() : nullptr;
    Reflect();
}

// ------------------------------------------------------- relation handlers

namespace {

void CreateRelationDirectly(Node* note, Node* prototype) { note->GetPrototypeCache()->SetNode(prototype); }

void RemoveRelationDirectly(Node* note, Node*) { note->GetPrototypeCache()->Clear(); }

NodeInheritance::RelationMaker createRelation = CreateRelationDirectly;
NodeInheritance::RelationMaker removeRelation = RemoveRelationDirectly;

} // namespace

void NodeInheritance::SetRelationHandlers(RelationMaker create, RelationMaker remove) {
    createRelation = create ? create : CreateRelationDirectly;
    removeRelation = remove ? remove : RemoveRelationDirectly;
}

// ----------------------------------------------------------- PrototypeChains

namespace {

// Marks in PrototypeChains::further: a note on the walk under way, and a
// note whose chain has a loop.
Node* const kOnWalk = reinterpret_cast<Node*>(alignof(Node));
Node* const kInLoop = reinterpret_cast<Node*>(2 * alignof(Node));

} // namespace

Node* PrototypeChains::End(Node* note) {
    std::vector<Node*> walked;
    Node* p = note;
    Node* end = nullptr;
    for (;;) {
        auto known = further.find(p);
        Node* next = known != further.end() ? known->second : p->GetPrototype();
        if (next == kOnWalk || next == kInLoop) {
            end = kInLoop;
            break;
        }
        if (!next || next == p) {
            end = p;
            break;
        }
        walked.push_back(p);
        further[p] = kOnWalk;
        p = next;
    }
    for (Node* n : walked)
        further[n] = end;
    if (end != kInLoop)
        further[end] = end;
    return end == kInLoop ? nullptr : end;
}

bool PrototypeChains::CanBePrototype(Node* note, Node* candidate) {
    if (!candidate)
        return true;
    if (!note || candidate == note || candidate->GetOriginal() == note->GetOriginal())
        return false;
    Node* self = note->GetOriginal();
    // A note that has a prototype already is not the end of its chain, and
    // the remembered ends do not cover it.
    if (self->GetPrototype())
        return NodeInheritance(note).CanBePrototype(candidate);
    Node* end = End(candidate);
    return end && end != self && end != note;
}

void PrototypeChains::Linked(Node* note, Node* prototype) {
    Node* self = note ? note->GetOriginal() : nullptr;
    auto known = self ? further.find(self) : further.end();
    // Only a note that was the end of its chain may simply point on.
    if (self && prototype && self->GetPrototype() == prototype && (known == further.end() || known->second == self))
        further[self] = prototype;
    else
        further.clear();
}

// ----------------------------------------------------------- NodeInheritance

bool NodeInheritance::CanBePrototype() const { return node && node->GetBoolean("IsPrototype"); }

long NodeInheritance::InstanceCount() const {
    if (!node)
        return 0;
    return HypertextFacade(node->GetHypertext()).Count([&](Node* n) { return n->GetPrototype() == node; });
}

bool NodeInheritance::CanBePrototype(Node* candidate) const {
    if (!candidate)
        return true;
    if (!node || candidate == node || candidate->GetOriginal() == node->GetOriginal())
        return false;
    std::unordered_set<const Node*> seen;
    for (Node* p = candidate; p; p = p->GetPrototype()) {
        if (p == node || p->GetOriginal() == node->GetOriginal())
            return false;
        if (!seen.insert(p).second)
            break;
    }
    // Two walkers, one twice as fast: they meet only on a chain with a loop.
    Node* slow = candidate;
    Node* fast = candidate;
    while (fast && fast->GetPrototype()) {
        slow = slow->GetPrototype();
        fast = fast->GetPrototype()->GetPrototype();
        if (slow && slow == fast)
            return false;
    }
    return true;
}

bool NodeInheritance::HasChangedSize() const {
    if (!node)
        return false;
    NodeDefaults defaults(node);
    return node->GetDouble("Width") != defaults.GetDefaultAsDouble("Width") ||
           node->GetDouble("Height") != defaults.GetDefaultAsDouble("Height");
}

void NodeInheritance::RemovePrototype() const {
    if (!node)
        return;
    Node* original = node->GetOriginal();
    removeRelation(original, original->GetPrototype());
}

void NodeInheritance::SetPrototype(Node* prototype, bool cloneChildren) const {
    if (!node)
        return;
    Node* note = node->GetOriginal();
    Node* oldPrototype = note->GetPrototype();
    if (prototype == oldPrototype || !NodeInheritance(note).CanBePrototype(prototype))
        return;
    NodeInheritance(note).RemovePrototype();
    if (prototype)
        createRelation(note, prototype);
    if (cloneChildren && prototype)
        NodeInheritance(note).ClonePrototypeChildren(prototype);
    NodeInheritance(note).InheritTextFromPrototype(prototype, oldPrototype);
    if (prototype && !NodeInheritance(note).HasChangedSize()) {
        note->CloneValue("Width", prototype);
        note->CloneValue("Height", prototype);
    }
    if (const Attribute* a = note->GetAttribute("Prototype"))
        note->Changed(a);
}

void NodeInheritance::InheritTextFromPrototype(const Node* prototype, const Node* oldPrototype) const {
    if (!node || !prototype)
        return;
    NodeText text(node);
    if (oldPrototype) {
        if (text.GetText() != NodeText(oldPrototype).GetText())
            return;
    } else if (text.HasText()) {
        return;
    }
    text.CopyContentFrom(prototype);
}

void NodeInheritance::ClonePrototypeChildren(const Node* prototype) const {
    if (!node || !prototype || !prototype->Son())
        return;
    if (!prototype->GetBoolean("PrototypeBequeathsChildren"))
        return;
    if (node->Son())
        return;
    if (node->IsDescendedFrom(prototype) || node->IsDescendedFrom(prototype->GetOriginal()))
        return;
    Hypertext* h = node->GetHypertext();
    bool was = h && h->DontRename();
    if (h)
        h->DontRename(true);
    CloneDescendants(prototype, node);
    if (h)
        h->DontRename(was);
}

namespace {

void CloneChildren(const NodeInheritance& facade, const Node* source, Node* target, long& budget) {
    for (Node* child = source->Son(); child && budget > 0; child = child->Brother()) {
        if (target->IsAgent() && !child->IsAdornment())
            continue;
        --budget;
        Node* copy = child->Clone(0);
        if (!copy)
            continue;
        if (Node* p = child->GetPrototype())
            NodeInheritance(copy).SetPrototype(p, false);
        copy->SetBoolean("IsPrototype", false);
        copy->CloneValue("RuleDisabled", facade.GetNode());
        copy->CloneValue("DisplayExpressionDisabled", facade.GetNode());
        copy->Set("Name", child->Name());
        NodePosition(copy).DoMoveTo(target, target->YoungestSon());
        copy->CloneValue("Xpos", child);
        copy->CloneValue("Ypos", child);
        CloneChildren(facade, child, copy, budget);
    }
}

} // namespace

void NodeInheritance::CloneDescendants(const Node* source, Node* target) const {
    if (!source || !target)
        return;
    long budget = 500;
    CloneChildren(*this, source, target, budget);
}

const Value* NodeInheritance::InheritFromPrototype(const Attribute* attribute) const {
    if (!node || !attribute || !attribute->CanInherit())
        return nullptr;
    return node->InheritedValue(attribute);
}

const Value* NodeInheritance::InheritFromPrototype(const std::string& name) const {
    return node ? InheritFromPrototype(node->GetAttribute(name)) : nullptr;
}

// --------------------------------------------------------------- NodeAliases

// ------------------------------------------------------------ OrderedNodeSet

bool OrderedNodeSet::Insert(Node* node) {
    if (!where.emplace(node, slots.size()).second)
        return false;
    slots.push_back(node);
    return true;
}

bool OrderedNodeSet::Erase(Node* node) {
    auto found = where.find(node);
    if (found == where.end())
        return false;
    slots[found->second] = nullptr;
    where.erase(found);
    if (where.empty())
        slots.clear();
    else if (slots.size() > 16 && where.size() < slots.size() / 2)
        Compact();
    return true;
}

std::vector<Node*> OrderedNodeSet::Items() const {
    std::vector<Node*> items;
    items.reserve(where.size());
    ForEach([&](Node* n) { items.push_back(n); });
    return items;
}

void OrderedNodeSet::Compact() {
    std::erase(slots, nullptr);
    for (size_t i = 0; i < slots.size(); ++i)
        where[slots[i]] = i;
}

// --------------------------------------------------------------- NodeAliases

NodeAliases::~NodeAliases() {
    for (auto* list : {&aliases, &hidden})
        list->ForEach([](Node* a) {
            if (a->IsAlias())
                static_cast<AliasNode*>(a)->OriginalDeleted();
        });
}

void NodeAliases::Add(Node* alias) {
    queue.Sync([&] { aliases.Insert(alias); });
}

void NodeAliases::HideTheAliases(bool hide) {
    std::vector<Node*> copy = queue.Sync([&] { return aliases.Items(); });
    for (Node* a : copy)
        a->Hide(hide);
}

void NodeAliases::RemoveAlias(Node* alias) {
    queue.Sync([&] {
        aliases.Erase(alias);
        hidden.Erase(alias);
    });
}

void NodeAliases::ShowTheHiddenAliases() {
    std::vector<Node*> copy = queue.Sync([&] { return hidden.Items(); });
    for (Node* a : copy)
        a->Hide(false);
}

void NodeAliases::Hiding(Node* alias, bool hiding) {
    queue.Sync([&] {
        (hiding ? aliases : hidden).Erase(alias);
        (hiding ? hidden : aliases).Insert(alias);
    });
}

void NodeAliases::Deleting(Node* alias) { RemoveAlias(alias); }

void NodeAliases::CanForward(bool c) {
    canForward = c;
    std::vector<Node*> copy = queue.Sync([&] { return aliases.Items(); });
    for (Node* a : copy)
        a->CanForward(c);
}

NodeVector NodeAliases::Aliases() const {
    NodeVector v;
    queue.Sync([&] { aliases.ForEach([&](Node* a) { v.push_back(a); }); });
    return v;
}

NodeVector NodeAliases::HiddenAliases() const {
    NodeVector v;
    queue.Sync([&] { hidden.ForEach([&](Node* a) { v.push_back(a); }); });
    return v;
}

// ------------------------------------------------------------------ AliasNode

AliasNode::AliasNode(Node* o, Node* parent, Node* after, double x, double y)
    : Node(o->Name(), parent, after, x, y), original(o) {
    readsPrototypeThroughOriginal = true;
    // The alias reads its name from its original; it keeps none of its own.
    Node::DoRemove(GetAttribute("Name"));
    for (const char* intrinsic : {"Width", "Height"})
        if (const Attribute* a = GetAttribute(intrinsic))
            Node::DoSet(a, o->CreateClonedValue(a));
    for (const char* dated : {"Created", "Modified"})
        if (const Attribute* a = GetAttribute(dated))
            Node::DoSet(a, o->CreateClonedValue(a));
    SetUnsigned("Alias", o->GetID().GetID());
    SetID(GetID());
    if (Node* f = Father())
        f->holdsAliases.store(true, std::memory_order_relaxed);
    o->AddAlias(this);
    canForward = true;
}

AliasNode* AliasNode::CreateFor(Node* o, Node* parent, Node* after, double x, double y, bool initialize) {
    if (!o || !parent || !parent->GetHypertext())
        return nullptr;
    if (o->IsAlias())
        o = o->GetOriginal();
    if (o->IsHidden() || !o->CanBeAliased() || o == o->Root())
        return nullptr;
    auto* alias = new AliasNode(o, parent, after, x, y);
    if (initialize)
        alias->Initialize();
    if (Node* f = alias->Father())
        f->Changed(kChangeChildren);
    return alias;
}

AliasNode* AliasNode::CreateFor(Node* o) {
    if (!o)
        return nullptr;
    Node* original = o->GetOriginal();
    SPoint p = NodePosition(original).GetPosition();
    Node* parent = original->Father();
    if (!parent)
        return nullptr;
    return CreateFor(original, parent, original, p.x + 0.5, p.y, true);
}

AliasNode::~AliasNode() {
    if (original && original != this)
        original->DeletingAlias(this);
}

Node* AliasNode::Clone(unsigned char) const {
    if (!original || original == this || !Father())
        return nullptr;
    SPoint p = NodePosition(const_cast<AliasNode*>(this)).GetPosition();
    return CreateFor(original, Father(), const_cast<AliasNode*>(this), p.x + 0.5, p.y, false);
}

Content* AliasNode::GetContent() {
    return original && original != this ? original->GetContent() : Node::GetContent();
}

const Content* AliasNode::GetContent() const {
    return original && original != this ? static_cast<const Node*>(original)->GetContent() : Node::GetContent();
}

void AliasNode::Hide(bool hide) {
    if (hide) {
        if (IsHidden())
            return;
        SPoint p = NodePosition(this).GetPosition();
        savedX = p.x;
        savedY = p.y;
        savedFather = Father();
        savedElder = savedFather && !savedFather->IsAgent() ? ElderBrother() : nullptr;
        Node::Hide();
        if (original && original != this)
            original->HidingAlias(this, true);
    } else {
        if (!IsHidden())
            return;
        Node::Show();
        Node* f = savedFather;
        Node* e = savedElder;
        savedFather = nullptr;
        savedElder = nullptr;
        if (f)
            NodePosition(this).DoMoveToInternal(f, e, savedX, savedY);
        if (original && original != this)
            original->HidingAlias(this, false);
    }
}

const Value* AliasNode::DoGet(const Attribute* attribute) const {
    static const Value* empty = Value::Create("");
    if (!original || original == this)
        return Node::DoGet(attribute);
    if (IsHidden() || original->IsHidden())
        return empty;
    const std::string& n = attribute->Name();
    if (n == "Modified" || n == "Created")
        return original->DoGet(attribute);
    if (const Value* own = DoGetImmediate(attribute))
        return own;
    return original->DoGet(attribute);
}

void AliasNode::DoSet(const Attribute* attribute, const Value* value) {
    if (canForward && attribute && attribute->CanInherit() && original && original != this) {
        const Value* mine = DoGetImmediate(attribute);
        bool differs = !mine || !value || mine->compare(value) != 0;
        original->DoSet(attribute, value);
        if (differs)
            Changed(attribute);
        return;
    }
    Node::DoSet(attribute, value);
}

Node* AliasNode::GetPrototype() const {
    return original && original != this ? original->GetPrototype() : Node::GetPrototype();
}

void AliasNode::SetPrototype(Node* prototype, bool cloneChildren) {
    if (original && original != this)
        original->SetPrototype(prototype, cloneChildren);
    else
        Node::SetPrototype(prototype, cloneChildren);
}
