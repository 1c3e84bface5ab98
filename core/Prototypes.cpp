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

NodeAliases::~NodeAliases() {
    for (auto* list : {&aliases, &hidden})
        for (Node* a : *list)
            if (a->IsAlias())
                static_cast<AliasNode*>(a)->OriginalDeleted();
}

void NodeAliases::Add(Node* alias) {
    queue.Sync([&] {
        if (std::find(aliases.begin(), aliases.end(), alias) == aliases.end())
            aliases.push_back(alias);
    });
}

void NodeAliases::HideTheAliases(bool hide) {
    std::vector<Node*> copy = queue.Sync([&] { return aliases; });
    for (Node* a : copy)
        a->Hide(hide);
}

void NodeAliases::RemoveAlias(Node* alias) {
    queue.Sync([&] {
        aliases.erase(std::remove(aliases.begin(), aliases.end(), alias), aliases.end());
        hidden.erase(std::remove(hidden.begin(), hidden.end(), alias), hidden.end());
    });
}

void NodeAliases::ShowTheHiddenAliases() {
    std::vector<Node*> copy = queue.Sync([&] { return hidden; });
    for (Node* a : copy)
        a->Hide(false);
}

void NodeAliases::Hiding(Node* alias, bool hiding) {
    queue.Sync([&] {
        auto& from = hiding ? aliases : hidden;
        auto& to = hiding ? hidden : aliases;
        from.erase(std::remove(from.begin(), from.end(), alias), from.end());
        if (std::find(to.begin(), to.end(), alias) == to.end())
            to.push_back(alias);
    });
}

void NodeAliases::Deleting(Node* alias) { RemoveAlias(alias); }

void NodeAliases::CanForward(bool c) {
    canForward = c;
    std::vector<Node*> copy = queue.Sync([&] { return aliases; });
    for (Node* a : copy)
        a->CanForward(c);
}

NodeVector NodeAliases::Aliases() const {
    NodeVector v;
    queue.Sync([&] {
        for (Node* a : aliases)
            v.push_back(a);
    });
    return v;
}

NodeVector NodeAliases::HiddenAliases() const {
    NodeVector v;
    queue.Sync([&] {
        for (Node* a : hidden)
            v.push_back(a);
    });
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
