#pragma once
// A document: the tree of notes under one root, the attribute table, the
// indexes and the managers that act on them.
#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <memory>
#include <set>
#include <unordered_set>
#include <string>
#include <vector>

#include "PColor.h"

#include "RylSerial.h"

class Attribute;
class Change;
class Colors;
class Link;
class LinkManager;
class LinkTypes;
class Node;
class NodeIndex;
class Prefs;
class Props;
class Value;
class ValueRecyclingPool;

// A part of a document that a layer above the core makes and the document
// owns (the pool of retired compiled actions, later the agent and rule
// managers). Parts are destroyed when the document ends, after its notes,
// whose values may still hand things to them while they go.
class DocumentPart {
public:
    virtual ~DocumentPart() = default;
};

class Hypertext {
public:
    // A new document with the whole system attribute table and a root note.
    Hypertext();
    // With `skipProperties` true the attribute table is left for the caller to build.
    explicit Hypertext(bool skipProperties);
    virtual ~Hypertext();
    Hypertext(const Hypertext&) = delete;
    Hypertext& operator=(const Hypertext&) = delete;

    // The shared document that stands for "no document".
    static Hypertext* NoHypertext();

    virtual bool IsValid() const { return !closing && root != nullptr; }
    virtual Change* Changes() const { return changes.get(); }
    // A count that grows with every change to the notes: a value set or
    // removed, a note made, moved, renamed, hidden or deleted, a link added,
    // removed or reordered. Two equal readings mean that nothing any note
    // holds changed in between. Safe from any thread.
    uint64_t ChangeCount() const { return changeCount.load(std::memory_order_acquire); }
    void CountChange() { changeCount.fetch_add(1, std::memory_order_acq_rel); }
    virtual Props* AttributeStorage() const { return attributeStorage.get(); }
    virtual NodeIndex* GetIndex() const { return index.get(); }
    virtual const Prefs* GetPreferences() const { return preferences.get(); }
    virtual Prefs* GetPreferences() { return preferences.get(); }
    virtual void WillWrite() { ++writing; }
    virtual void DidWrite() {
        if (writing > 0)
            --writing;
    }
    virtual bool IsWriting() const { return writing > 0; }
    virtual void InhibitActions(bool inhibit) { actionsInhibited = inhibit; }
    bool ActionsInhibited() const { return actionsInhibited; }
    static const char* ScrapType() { return "com.morvent.rylvane.scrap"; }
    virtual bool CanEdit() const { return true; }
    virtual void SetModified(bool modified);
    virtual bool IsModified() const;
    virtual void NewlyCreated(Node* node);
    virtual void AddNode(Node* node);
    // Every note made for this document, placed in the tree or not. Notes
    // that are still out of the tree when the document ends (a copy never
    // placed, a note shown again but not put back) are destroyed with it.
    void Adopt(Node* node);
    void Disown(Node* node);
    virtual void Renamed(Node* node);
    virtual void RemoveNode(Node* node);
    virtual std::vector<Node*> GetAllNodes() const;
    virtual void IsBeingHidden(Node* node, bool hiding);
    virtual void AboutToDelete(Node* node) {}
    virtual void DidDelete(Node* node);
    virtual void UpdateOutlineOrder();
    virtual void UpdateSiblingOrder(Node* node);
    virtual Node* FirstNode() const;
    virtual Node* Root() const { return root; }
    virtual void WillClose();
    virtual bool IsClosing() const { return closing; }
    virtual bool NeedsSort() const { return needsSort; }
    virtual void NeedsSort(bool n) { needsSort = n; }
    virtual void DidUpdateAgents();
    virtual const std::string& GetDefaultPathname() const { return defaultPathname; }
    virtual void SetDefaultPathname(const std::string& p) { defaultPathname = p; }
    // Hands a value over for deletion at the next clean-up.
    virtual void DeleteValue(const Value* value);
    virtual void CleanupDeletedValues();
    virtual bool IsBeingRead() const { return isBeingRead; }
    virtual void IsBeingRead(bool r) { isBeingRead = r; }
    virtual bool DontRename() const { return dontRename; }
    virtual void DontRename(bool d) { dontRename = d; }
    virtual const Attribute* NameAttribute() const;
    // The ID and Creator attributes, which every note sets when made.
    const Attribute* IDAttribute() const { return Cached(idAttribute, "ID"); }
    const Attribute* CreatorAttribute() const { return Cached(creatorAttribute, "Creator"); }
    virtual void InitializeProperties();
    // Notes deleted for the user but kept alive for undo.
    const std::set<Node*>& HiddenNodes() const { return hiddenNodes; }

    OperationQueue& IndexQueue();
    OperationQueue& NetworkQueue();
    OperationQueue& TagQueue();
    OperationQueue& CompositeQueue();
    OperationQueue& ImportQueue();

    // The selected notes.
    std::set<Node*>& Selection() { return selection; }
    // Named colours of the document, by name.

    // The name written into new notes' `Creator`.
    std::string CreatorName() const;

    // Links: the store of all links, the list of link types, and the
    // events of links coming and going.
    virtual LinkManager* Links() const { return links.get(); }
    virtual LinkTypes* GetLinkTypes() const { return linkTypes.get(); }
    virtual void AddLink(Link* link);
    virtual void RemoveLink(Link* link);
    virtual void ExchangeLinks(Link* a, Link* b);
    virtual void ReorderLinks(Link* link, Link* before);
    virtual long LinkCount() const;
    virtual bool HasLink(const Link* link) const;
    virtual void LinkAdded(Link* link);
    virtual void LinkRemoved(Link* link);
    // The table of named colours.
    virtual Colors* GetColorTable() const { return colors.get(); }

    // What a document file carries besides notes: the document's UUID, its
    // preview picture, and sections kept as read and written back unchanged
    // (by element name: "windows", "macros", "searches" and the like).
    const std::string& UUID() const { return uuid; }
    void SetUUID(const std::string& u) { uuid = u; }
    const std::string& Preview() const { return preview; }
    void SetPreview(std::string bytes) { preview = std::move(bytes); }
    const std::string* CarriedSection(const std::string& name) const;
    void SetCarriedSection(const std::string& name, std::string raw);
    const std::map<std::string, std::string>& CarriedSections() const { return carried; }

    // The part made under `key`, made by `make` on first use. Safe from any
    // thread; the part lives as long as the document.
    DocumentPart* Part(const std::string& key, const std::function<std::unique_ptr<DocumentPart>()>& make);
    // The part made under `key`, or null.
    DocumentPart* FindPart(const std::string& key) const;

private:
    void Construct(bool skipProperties);

    std::shared_ptr<NodeIndex> index;
    std::shared_ptr<Change> changes;
    std::shared_ptr<Prefs> preferences;
    std::shared_ptr<Props> attributeStorage;
    std::unique_ptr<ValueRecyclingPool> valuePool;
    Node* root = nullptr;
    std::set<Node*> hiddenNodes;
    Node* ownedNodes = nullptr;
    std::set<Node*> selection;
    bool needsSort = false;
    std::string defaultPathname;
    std::unique_ptr<OperationQueue> networkQueue, indexQueue, tagQueue, compositeQueue, importQueue;
    std::mutex queueMutex;
    bool dontRename = false;
    bool isBeingRead = false;
    bool closing = false;
    bool actionsInhibited = false;
    int writing = 0;
    mutable const Attribute* nameAttribute = nullptr;
    // The attribute of that name, looked up once it exists.
    const Attribute* Cached(const Attribute*& slot, const char* name) const;
    mutable const Attribute* idAttribute = nullptr;
    mutable const Attribute* creatorAttribute = nullptr;
    std::shared_ptr<LinkManager> links;
    std::shared_ptr<LinkTypes> linkTypes;
    std::shared_ptr<Colors> colors;
    std::string uuid;
    std::string preview;
    std::map<std::string, std::string> carried;
    mutable std::mutex partsMutex;
    std::map<std::string, std::unique_ptr<DocumentPart>> parts;
    std::atomic<uint64_t> changeCount{1};
};
