#pragma once
// A note: one element of a document's tree. A note holds no text, colour,
// position or date of its own: everything it knows is an attribute, stored in
// its PropertyList when it differs from what the note would otherwise get.
#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "Dictionary.h"
#include "NodeID.h"
#include "NodeVector.h"
#include "PColor.h"
#include "PropertyList.h"
#include "RylSerial.h"
#include "STime.h"
#include "Tree.h"

class Attribute;
class Content;
class Hypertext;
class NodeAliases;
class Prefs;
class PrototypeCache;
class Value;
class Link;
class XMLWriter;

class Node : public TTree<Node*> {
public:
    // A bare note of a document (the root, or a note placed later).
    explicit Node(Hypertext* hypertext);
    // A note named `name` linked under `parent` after `after` (null: first).
    Node(const std::string& name, Node* parent, Node* after, double x, double y);
    // A copy of `source` in the same document; with `withLinks` its outbound
    // links are recreated from the copy.
    Node(const Node& source, unsigned char withLinks);
    ~Node() override;

    // Factories: these also run Initialize.
    static Node* Create(Hypertext* hypertext);
    static Node* Create(const std::string& name, Node* parent, Node* after, double x, double y, bool initialize);
    static Node* Create(const Node& source, unsigned char withLinks);
    // A note placed under `parent` after `after` with nothing but its id and
    // creator: a reader gives it every other value from the file, so the
    // creation date and position a new note starts with would only be
    // replaced or removed again. With `fileID` the note takes that id, and
    // `fileCreator` or else the creator of a fresh id. `expectedValues` is
    // how many local values the note will likely hold, its id and creator
    // included, so that they are stored without growing the list.
    static Node* CreateForReading(Node* parent, Node* after, const uint32_t* fileID = nullptr,
                                  const std::string* fileCreator = nullptr, size_t expectedValues = 0);

    virtual Node* Clone(unsigned char withLinks) const;
    virtual bool IsValid() const { return true; }
    bool Invalid() const { return !IsValid() || beingDeleted; }
    // Not virtual: every read asks it, and no kind of note answers other
    // than its own field (the null note's is always null).
    Hypertext* GetHypertext() const { return hypertext; }
    virtual void SetHypertext(Hypertext* h);
    virtual void WillClose() {}
    virtual const Prefs* GetPreferences() const;
    virtual Node* Root() const;
    virtual const char* XMLKind() const { return "item"; }
    virtual void SetID(uint32_t id, const std::string& creator) { SetID(NodeID(id, creator)); }
    virtual void SetID(const NodeID& newID);
    virtual std::string Creator() const { return id.GetCreator(); }
    virtual const NodeID& GetID() const { return id; }

    // The text store, made on first write; a note without one reads as
    // having empty text.
    virtual Content* GetContent();
    virtual const Content* GetContent() const;

    virtual bool IsHidden() const { return hidden; }
    virtual void Hide(bool hide);
    virtual void Hide();
    virtual void Show();
    virtual std::string Name() const;
    virtual std::string DisplayName() const;
    virtual std::string DefaultName() const;
    virtual void SetName(const std::string& newName);
    virtual void HasBeenModified();
    virtual void Changed(unsigned long mask);
    virtual void AddChange(unsigned long mask);
    virtual void Changed(const Attribute* attribute);
    virtual void ChangedAttribute(const std::string& attributeName);
    virtual bool CanEdit() const;
    virtual bool ReadOnly() const;
    virtual bool NewlyCreated() const { return newlyCreated; }
    virtual void NewlyCreated(bool n) { newlyCreated = n; }

    // Writes. The attribute takes ownership of the value.
    virtual void Set(const Attribute* attribute, const Value* value);
    virtual void Set(const Attribute* attribute, const std::string& text);
    virtual void Set(const std::string& name, const Value* value);
    virtual void Set(const std::string& name, const std::string& text);
    void Set(const char* name, const std::string& text) { Set(std::string(name), text); }
    void Set(const char* name, const Value* value) { Set(std::string(name), value); }
    virtual void SetSet(const std::string& name, const std::string& items);
    virtual void SetDictionary(const std::string& name, const std::string& text);
    virtual void SetTime(const std::string& name, const STime& time);
    virtual void SetDouble(const std::string& name, double d);
    virtual void SetColor(const std::string& name, const PColor& color);
    virtual void SetColor(const std::string& name, const std::string& color);
    virtual void SetLong(const std::string& name, long l);
    virtual void SetUnsigned(const std::string& name, unsigned long u);
    virtual void SetBoolean(const std::string& name, bool b);
    virtual void ToggleBoolean(const std::string& name);
    virtual void SetFile(const std::string& name, const std::string& path);
    virtual void SetFileValue(const Attribute* attribute, const std::string& path);

    // Reads. Get answers a borrowed value (null for an unknown name).
    virtual const Value* Get(const std::string& name) const;
    virtual const Value* Get(const Attribute* attribute) const;
    // A new value that the caller owns; safe from any thread.
    virtual Value* CreateClonedValue(const Attribute* attribute) const;
    virtual Value* CreateClonedValue(const std::string& name) const;
    virtual std::string GetString(const std::string& name) const;
    virtual std::string GetString(const Attribute* attribute) const;
    // GetString written into `out`, whose storage is reused: a stored text
    // is copied straight from where it lies.
    void GetStringInto(const Attribute* attribute, std::string& out) const;
    virtual std::string GetFormattedString(const std::string& name, const std::string& format) const;
    virtual std::string GetShortString(const std::string& name) const;
    virtual std::string GetExportString(const std::string& name, const std::string& format) const;
    virtual double GetDouble(const std::string& name) const;
    double GetDouble(const Attribute* attribute) const;
    virtual PColor GetColor(const std::string& name) const;
    virtual long GetLong(const std::string& name) const;
    long GetLong(const Attribute* attribute) const;
    virtual unsigned long GetUnsignedLong(const std::string& name) const;
    virtual bool GetBoolean(const std::string& name) const;
    virtual bool GetBoolean(const Attribute* attribute) const;
    virtual STime GetDate(const std::string& name) const;
    // The value's pairs; null when the value is no dictionary.
    virtual SharedDictionary GetDictionary(const std::string& name) const;

    // The store itself: local value, then the prototype chain.
    virtual const Value* DoGet(const Attribute* attribute) const;
    // Only the note's own value.
    const Value* DoGetImmediate(const Attribute* attribute) const;
    // The first own value along the prototype chain, or null; a loop in the
    // chain ends the walk.
    const Value* InheritedValue(const Attribute* attribute) const;
    virtual void DoSet(const Attribute* attribute, const Value* value);
    virtual void Remove(const Attribute* attribute);
    virtual void Remove(const std::string& name);
    virtual void DoRemove(const Attribute* attribute);
    virtual void DeleteValue(const Value* value) const;

    virtual Node* GetPrototype() const;
    virtual void SetPrototype(Node* prototype, bool cloneChildren);
    virtual bool IsSticky() const { return false; }
    virtual bool IsLocked() const;
    virtual void Loaded() {}
    virtual bool IsReady() const { return true; }
    virtual bool HasBeenDone() const { return false; }
    virtual bool IsAdornment() const { return false; }
    virtual bool CanLink() const { return true; }
    virtual bool IsAlias() const { return false; }
    // Whether an alias ever stood among this note's children (never
    // cleared): a note without can be found by name through the index.
    bool MayHoldAliases() const { return holdsAliases.load(std::memory_order_relaxed); }
    virtual bool IsAliasFor(const Node* original) const { return false; }
    virtual bool CanForward() const { return true; }
    virtual void CanForward(bool) {}
    virtual void AddAlias(Node* alias);
    virtual void HidingAlias(Node* alias, bool hiding);
    virtual void DeletingAlias(Node* alias);
    virtual NodeVector Aliases() const;
    virtual bool CanBeAliased() const { return true; }
    virtual uint32_t GetAliasID() const { return id.GetID(); }
    virtual Node* GetOriginal() { return this; }
    virtual const Node* GetOriginal() const { return this; }
    virtual bool AcceptsDrop() const { return true; }
    virtual bool IsAgent() const { return false; }
    virtual bool IsContainer() const;
    virtual bool IsActiveAgent() const { return false; }
    virtual bool CanReceiveChildren() const { return true; }
    virtual void Initialize();
    virtual void SetOutlineOrder(long n) { outlineOrder.Set(n); }
    virtual long GetOutlineOrder() const { return outlineOrder.Get(); }
    virtual void SetSiblingOrder(long n) { siblingOrder.Set(n); }
    virtual long GetSiblingOrder() const { return siblingOrder.Get(); }
    virtual bool NeedsGeographicUpdate() const { return needsGeographicUpdate; }
    virtual void NeedsGeographicUpdate(bool n) { needsGeographicUpdate = n; }
    // A prototype link was added (or removed, with null) from this note.
    virtual void WillHavePrototype(const Link* link);
    virtual Node* CachedPrototypeNode() const;
    virtual void RequestPrototype(const std::string& name);
    virtual std::string GetPrototypeRequest() const;
    virtual const Attribute* SortAttribute() const;
    virtual const Attribute* GetAttribute(const std::string& name) const;
    virtual const NodeVector* OldAdornments() const;
    virtual void SetOldAdornments(const NodeVector& v);
    // The note's composites as the file gave them (its "composites"
    // element, whole), carried through unchanged; "" when it has none.
    virtual std::string CompositeData() const;
    virtual void SetCompositeData(std::string xml);
    virtual bool NeedsToBeIndexed() const { return needsToBeIndexed; }
    virtual void NeedsToBeIndexed(bool n) { needsToBeIndexed = n; }
    virtual bool InhibitSorting() const { return inhibitSorting; }
    virtual void InhibitSorting(bool i) { inhibitSorting = i; }
    virtual PropertyList& Properties() { return properties; }
    virtual const PropertyList& Properties() const { return properties; }
    virtual const Attribute* NameAttribute() const;
    virtual void DoHideSelf();
    virtual void DoShowSelf();
    virtual void DoShow();
    virtual void DoHide();
    // Clones `source`'s value of `name` into this note.
    virtual void CloneValue(const std::string& name, const Node* source);

    PrototypeCache* GetPrototypeCache() const;
    NodeAliases* GetNodeAliases() const;
    bool IsBeingDeleted() const { return beingDeleted; }
    // The note's lock: guards its values and its output accumulator.
    ObjectLock& Lock() const { return lock; }
    std::string OutputWorkingString() const;
    void SetOutputWorkingString(const std::string& s);

protected:
    Node() = default;
    // The part of construction every placed note shares: the document and a
    // fresh id. The flag only tells this constructor apart.
    Node(Node* parent, Node* after, bool);
    // The rest of CreateForReading, for a note just made with the constructor
    // above (of this class or a subclass).
    static Node* FinishForReading(Node* node, Node* parent, Node* after, const uint32_t* fileID,
                                  const std::string* fileCreator, size_t expectedValues);
    friend class NodeMaker;
    friend class NodePosition;
    friend class AliasNode;

    // Marks the note when an alias moves in among its children.
    void Adopted(Tree* child) override;

    // What few notes ever have, made on first use: the prototype relation and
    // its pending request, the note's aliases, the adornments it had before
    // it moved, the text an export accumulates for it, and its composites.
    //
    // Other threads read these without the note's lock, while one thread may
    // make them under it: the part itself and the two members read so are
    // published through atomic pointers (release on making, acquire on
    // reading), and never replaced once made. The rest is read and written
    // under the lock.
    struct Rare {
        ~Rare();
        std::atomic<PrototypeCache*> prototypeCache{nullptr};
        std::atomic<NodeAliases*> aliases{nullptr};
        std::unique_ptr<NodeVector> oldAdornments;
        std::unique_ptr<std::string> outputWorkingString;
        std::unique_ptr<std::string> compositeData;
    };
    Rare& MutableRare() const;
    // The rare part, or null while it has not been made.
    Rare* KnownRare() const { return rare.load(std::memory_order_acquire); }
    PrototypeCache* KnownPrototypeCache() const {
        Rare* extra = KnownRare();
        return extra ? extra->prototypeCache.load(std::memory_order_acquire) : nullptr;
    }
    NodeAliases* KnownAliases() const {
        Rare* extra = KnownRare();
        return extra ? extra->aliases.load(std::memory_order_acquire) : nullptr;
    }

    // What a scan reads of every note comes first, so that it shares as few
    // cache lines as it can: the tree links (in the base), the document, the
    // values, the prototype, the lock, the flags and the rare part.
    Hypertext* hypertext = nullptr;
    PropertyList properties;
    // The cached prototype, kept equal to prototypeCache's by the cache.
    mutable Node* prototypeNode = nullptr;
    mutable ObjectLock lock;
    bool hidden = false;
    bool newlyCreated = false;
    bool beingDeleted = false;
    // Set by AliasNode, whose prototype is its original's: inherited reads of
    // plain notes then skip the virtual lookup.
    bool readsPrototypeThroughOriginal = false;
    bool needsGeographicUpdate = false;
    bool needsToBeIndexed = false;
    bool inhibitSorting = false;
    std::atomic<bool> holdsAliases{false};
    // Owned; deleted with the note.
    mutable std::atomic<Rare*> rare{nullptr};
    // Links in the document's list of every note it made (see
    // Hypertext::Adopt): a list costs no hashing and no extra allocation.
    Node* ownedPrevious = nullptr;
    Node* ownedNext = nullptr;
    friend class Hypertext;
    NodeID id;
    mutable std::unique_ptr<Content> content;
    RylThreadSafeCount outlineOrder;
    RylThreadSafeCount siblingOrder;
};

// The one note that stands for "no note": every query answers safely.
class NotANode : public Node {
public:
    static NotANode* Get();
    bool IsValid() const override { return false; }
    std::string Name() const override { return "not a node"; }
    std::string Creator() const override { return ""; }
    bool IsHidden() const override { return true; }
    void Hide(bool) override {}
    void Hide() override {}
    void Changed(unsigned long) override {}
    void Changed(const Attribute*) override {}

private:
    NotANode() = default;
};
