#pragma once
// Prototypes and aliases. A note may name another note as its prototype and
// then inherits every inheritable attribute it does not set itself. An alias
// is a second appearance of a note elsewhere in the tree: it shares its
// original's text and inheritable attributes and keeps its own intrinsic ones
// (position, size, name cache).
#include <string>
#include <unordered_map>
#include <vector>

#include "NodeFacade.h"
#include "RylSerial.h"

class Link;

// Caches a note's prototype. The relation itself is a prototype link; the
// cache saves looking it up. A name requested while a file is read waits here
// until the prototype can be resolved.
class PrototypeCache {
public:
    void Set(const Link* link);
    // Records the prototype note the current link leads to.
    void SetNode(Node* prototype) {
        node = prototype;
        Reflect();
    }
    void Clear() {
        link = nullptr;
        node = nullptr;
        Reflect();
    }
    // Keeps `*copy` equal to the cached prototype from now on: the note
    // holds the pointer itself so that inherited reads walk the chain with
    // one load per step.
    void Mirror(Node** copy) {
        mirror = copy;
        Reflect();
    }
    const Link* Get() const { return link; }
    Node* GetNode() const { return node; }
    void RequestPrototype(const std::string& name) { request = name; }
    const std::string& GetPrototypeRequest() const { return request; }

private:
    void Reflect() {
        if (mirror)
            *mirror = node;
    }
    const Link* link = nullptr;
    Node* node = nullptr;
    Node** mirror = nullptr;
    std::string request;
};

class NodeInheritance : public NodeFacade {
public:
    using NodeFacade::NodeFacade;
    // Whether the note is marked as a prototype.
    virtual bool CanBePrototype() const;
    virtual long InstanceCount() const;
    // Whether `candidate` may become this note's prototype: not the note
    // itself, not a note whose chain leads back here, not a chain with a loop.
    virtual bool CanBePrototype(Node* candidate) const;
    virtual void ClonePrototypeChildren(const Node* prototype) const;
    virtual void CloneDescendants(const Node* source, Node* target) const;
    virtual void SetPrototype(Node* prototype, bool cloneChildren) const;
    virtual bool HasChangedSize() const;
    virtual void InheritTextFromPrototype(const Node* prototype, const Node* oldPrototype) const;
    virtual void RemovePrototype() const;
    // The first local value along the prototype chain, or null.
    virtual const Value* InheritFromPrototype(const Attribute* attribute) const;
    virtual const Value* InheritFromPrototype(const std::string& name) const;

    // Where prototype relations are made and dropped. The link layer replaces
    // these so that the relation is kept as a prototype link.
    using RelationMaker = void (*)(Node* note, Node* prototype);
    static void SetRelationHandlers(RelationMaker create, RelationMaker remove);
};

// Answers NodeInheritance::CanBePrototype for many prototypes given in a
// row, as reading a document gives them, in time near linear in their
// number: asking each note would walk a candidate's whole chain every time,
// and a chain of N notes costs N*N steps. Each note remembers a note further
// along its chain (its end, once known), so a walk is short after the first.
// That stays true while prototypes are only given to notes that had none:
// tell each one made through Linked.
class PrototypeChains {
public:
    bool CanBePrototype(Node* note, Node* candidate);
    // `note` now has `prototype` as its prototype.
    void Linked(Node* note, Node* prototype);

private:
    // The last note of `note`'s chain; null for a chain with a loop.
    Node* End(Node* note);

    std::unordered_map<Node*, Node*> further;
};

// Notes in the order they were added, with adding, finding and removing in
// constant time: a note may have tens of thousands of aliases, and a vector
// searched for each would make them cost the square of their number.
class OrderedNodeSet {
public:
    // False when the note is in the set already.
    bool Insert(Node* node);
    bool Erase(Node* node);
    std::vector<Node*> Items() const;
    template <typename F>
    void ForEach(F f) const {
        for (Node* n : slots)
            if (n)
                f(n);
    }

private:
    void Compact();
    // Removed notes leave a null until the slots are compacted.
    std::vector<Node*> slots;
    std::unordered_map<const Node*, size_t> where;
};

// A note's aliases, and those hidden with it.
class NodeAliases {
public:
    NodeAliases() = default;
    NodeAliases(const NodeAliases&) = delete;
    NodeAliases& operator=(const NodeAliases&) = delete;
    // The original goes away: its aliases from now on answer for themselves.
    ~NodeAliases();
    void Add(Node* alias);
    void HideTheAliases(bool hide);
    void RemoveAlias(Node* alias);
    void ShowTheHiddenAliases();
    void Hiding(Node* alias, bool hiding);
    void Deleting(Node* alias);
    bool CanForward() const { return canForward; }
    void CanForward(bool c);
    NodeVector Aliases() const;
    NodeVector HiddenAliases() const;

private:
    mutable RylSerial queue{"com.morvent.rylvane.nodeAliases"};
    OrderedNodeSet aliases;
    OrderedNodeSet hidden;
    bool canForward = true;
};

class AliasNode : public Node {
public:
    // Answers null when the original is hidden, cannot be aliased, or is the root.
    static AliasNode* CreateFor(Node* original, Node* parent, Node* after, double x, double y, bool initialize);
    // An alias beside its original: its next sibling, half a unit to the right.
    static AliasNode* CreateFor(Node* original);
    ~AliasNode() override;

    Node* Clone(unsigned char withLinks) const override;
    Content* GetContent() override;
    const Content* GetContent() const override;
    void Hide(bool hide) override;
    const Value* DoGet(const Attribute* attribute) const override;
    void DoSet(const Attribute* attribute, const Value* value) override;
    Node* GetPrototype() const override;
    void SetPrototype(Node* prototype, bool cloneChildren) override;
    bool IsAlias() const override { return true; }
    bool IsAliasFor(const Node* n) const override { return n && n->GetOriginal() == original; }
    bool CanForward() const override { return canForward; }
    void CanForward(bool c) override { canForward = c; }
    bool CanBeAliased() const override { return false; }
    uint32_t GetAliasID() const override { return original ? original->GetID().GetID() : 0; }
    Node* GetOriginal() override { return original; }
    const Node* GetOriginal() const override { return original; }
    bool AcceptsDrop() const override { return original && original->AcceptsDrop(); }
    bool CanReceiveChildren() const override { return false; }
    bool IsContainer() const override { return original && original->Son() != nullptr; }

    // The original goes away before its alias: the alias then answers for itself.
    void OriginalDeleted() { original = this; }

private:
    AliasNode(Node* original, Node* parent, Node* after, double x, double y);

    Node* original;
    Node* savedFather = nullptr;
    Node* savedElder = nullptr;
    double savedX = 0;
    double savedY = 0;
    bool canForward = false;
};
