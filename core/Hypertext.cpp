#include "Hypertext.h"

#include "Colors.h"
#include "Link.h"
#include "LinkManager.h"
#include "LinkType.h"

#include "Attribute.h"
#include "Change.h"
#include "CoreHooks.h"
#include "Node.h"
#include "NodeIndex.h"
#include "Prefs.h"
#include "Props.h"
#include "SystemAttributes.h"
#include "Value.h"
#include "ValueRecyclingPool.h"

Hypertext::Hypertext() { Construct(false); }

Hypertext::Hypertext(bool skipProperties) { Construct(skipProperties); }

void Hypertext::Construct(bool skipProperties) {
    InstallCoreHooks();
    index = std::make_shared<NodeIndex>();
    changes = std::make_shared<Change>();
    preferences = std::make_shared<Prefs>(Prefs::Defaults());
    attributeStorage = std::make_shared<Props>();
    valuePool = std::make_unique<ValueRecyclingPool>();
    links = std::make_shared<LinkManager>(this);
    linkTypes = std::make_shared<LinkTypes>();
    colors = std::make_shared<Colors>();
    if (!skipProperties)
        InitializeProperties();
    root = Node::Create(this);
    // The root is a note like the others: it has an id and is found by it.
    root->SetID(root->GetID());
    AddNode(root);
}

Hypertext::~Hypertext() {
    WillClose();
    for (auto* q : {&networkQueue, &indexQueue, &tagQueue, &compositeQueue, &importQueue})
        if (*q)
            (*q)->CancelAllOperations();
    networkQueue.reset();
    indexQueue.reset();
    tagQueue.reset();
    compositeQueue.reset();
    importQueue.reset();
    index->Cancel();
    // All links go at once, rather than note by note as the tree falls.
    links->Clear();
    Node* r = root;
    root = nullptr;
    delete r;
    // Notes hidden for undo are destroyed with the document.
    while (!hiddenNodes.empty()) {
        Node* n = *hiddenNodes.begin();
        hiddenNodes.erase(hiddenNodes.begin());
        if (!n->Father() || !n->Father()->IsHidden())
            delete n;
    }
    // What is left was never put (back) into the tree: destroy each loose
    // subtree from its top, which takes its descendants along.
    while (ownedNodes) {
        Node* n = ownedNodes;
        while (n->Father())
            n = n->Father();
        delete n;
    }
    CleanupDeletedValues();
    // Parts go last: the values of the notes destroyed above hand their
    // compiled actions to the action pool.
    std::map<std::string, std::unique_ptr<DocumentPart>> ending;
    {
        std::lock_guard<std::mutex> guard(partsMutex);
        ending.swap(parts);
    }
    ending.clear();
}

void Hypertext::Adopt(Node* node) {
    if (!node || node->ownedPrevious || node == ownedNodes)
        return;
    node->ownedNext = ownedNodes;
    if (ownedNodes)
        ownedNodes->ownedPrevious = node;
    ownedNodes = node;
}

void Hypertext::Disown(Node* node) {
    if (!node || (!node->ownedPrevious && node != ownedNodes))
        return;
    if (node->ownedPrevious)
        node->ownedPrevious->ownedNext = node->ownedNext;
    else
        ownedNodes = node->ownedNext;
    if (node->ownedNext)
        node->ownedNext->ownedPrevious = node->ownedPrevious;
    node->ownedPrevious = node->ownedNext = nullptr;
}

Hypertext* Hypertext::NoHypertext() {
    static Hypertext* none = new Hypertext(true);
    return none;
}

void Hypertext::InitializeProperties() { BuildSystemAttributes(attributeStorage.get(), this); }

void Hypertext::SetModified(bool modified) { changes->SetModified(modified); }

bool Hypertext::IsModified() const { return changes->IsModified(); }

void Hypertext::NewlyCreated(Node* node) {
    if (!node || node->IsAlias())
        return;
    attributeStorage->NewlyCreated(node);
}

void Hypertext::AddNode(Node* node) {
    CountChange();
    index->Add(node);
}

void Hypertext::Renamed(Node* node) {
    CountChange();
    index->Renamed(node);
}

void Hypertext::RemoveNode(Node* node) {
    CountChange();
    AboutToDelete(node);
    index->Remove(node);
    changes->Forget(node);
}

std::vector<Node*> Hypertext::GetAllNodes() const {
    std::vector<Node*> all;
    for (Node* n = root; n && !closing; n = n->Next())
        all.push_back(n);
    return all;
}

void Hypertext::IsBeingHidden(Node* node, bool hiding) {
    CountChange();
    if (hiding)
        hiddenNodes.insert(node);
    else
        hiddenNodes.erase(node);
}

void Hypertext::DidDelete(Node* node) {
    CountChange();
    changes->Forget(node);
    hiddenNodes.erase(node);
    if (links && !closing)
        links->RemoveLinks(links->ListLinks(node, true));
}

void Hypertext::AddLink(Link* link) {
    CountChange();
    if (links)
        links->Add(link);
}

void Hypertext::RemoveLink(Link* link) {
    CountChange();
    if (links && !closing)
        links->Remove(link);
}

void Hypertext::ExchangeLinks(Link* a, Link* b) {
    CountChange();
    if (links && !closing)
        links->Exchange(a, b);
}

void Hypertext::ReorderLinks(Link* link, Link* before) {
    CountChange();
    if (links && !closing)
        links->Reorder(link, before);
}

long Hypertext::LinkCount() const { return links ? static_cast<long>(links->size()) : 0; }

bool Hypertext::HasLink(const Link* link) const { return links && links->Has(link); }

void Hypertext::LinkAdded(Link* link) {
    CountChange();
    if (link && link->IsPrototype() && link->SourceNode())
        link->SourceNode()->WillHavePrototype(link);
}

void Hypertext::LinkRemoved(Link* link) {
    CountChange();
    if (link && link->IsPrototype() && link->SourceNode() && !link->SourceNode()->IsBeingDeleted())
        link->SourceNode()->WillHavePrototype(nullptr);
}

const std::string* Hypertext::CarriedSection(const std::string& name) const {
    auto it = carried.find(name);
    return it == carried.end() ? nullptr : &it->second;
}

void Hypertext::SetCarriedSection(const std::string& name, std::string raw) { carried[name] = std::move(raw); }

void Hypertext::UpdateOutlineOrder() {
    long n = 0;
    for (Node* node = root; node && !closing; node = node->Next())
        node->SetOutlineOrder(n++);
    UpdateSiblingOrder(root);
}

void Hypertext::UpdateSiblingOrder(Node* node) {
    if (!node)
        return;
    long rank = 0;
    for (Node* child = node->Son(); child; child = child->Brother()) {
        child->SetSiblingOrder(rank++);
        if (child->Son())
            UpdateSiblingOrder(child);
    }
}

Node* Hypertext::FirstNode() const { return root ? root->Son() : nullptr; }

void Hypertext::WillClose() {
    if (closing)
        return;
    changes->Stop();
    for (Node* n = root; n; n = n->Next())
        n->WillClose();
    closing = true;
}

void Hypertext::DidUpdateAgents() {
    CleanupDeletedValues();
    if (index->NeedsUpdate()) {
        std::weak_ptr<NodeIndex> weak = index;
        IndexQueue().AddOperation(
            [weak] {
                if (auto i = weak.lock())
                    i->UpdateIfNeeded();
            },
            4);
    }
}

void Hypertext::DeleteValue(const Value* value) {
    if (value)
        valuePool->Add(const_cast<Value*>(value));
}

void Hypertext::CleanupDeletedValues() { valuePool->Drain(); }

const Attribute* Hypertext::Cached(const Attribute*& slot, const char* name) const {
    if (slot)
        return slot;
    const Attribute* found = attributeStorage->GetAttribute(name);
    if (found && found->IsValid())
        slot = found;
    return found;
}

const Attribute* Hypertext::NameAttribute() const {
    if (!nameAttribute)
        nameAttribute = attributeStorage->GetAttribute("Name");
    return nameAttribute;
}

OperationQueue& Hypertext::IndexQueue() {
    std::lock_guard<std::mutex> guard(queueMutex);
    if (!indexQueue)
        indexQueue = std::make_unique<OperationQueue>("indexQueue", 3);
    return *indexQueue;
}

OperationQueue& Hypertext::NetworkQueue() {
    std::lock_guard<std::mutex> guard(queueMutex);
    if (!networkQueue)
        networkQueue = std::make_unique<OperationQueue>("networkQueue", 5);
    return *networkQueue;
}

OperationQueue& Hypertext::TagQueue() {
    std::lock_guard<std::mutex> guard(queueMutex);
    if (!tagQueue)
        tagQueue = std::make_unique<OperationQueue>("tagQueue", 1);
    return *tagQueue;
}

OperationQueue& Hypertext::CompositeQueue() {
    std::lock_guard<std::mutex> guard(queueMutex);
    if (!compositeQueue)
        compositeQueue = std::make_unique<OperationQueue>("compositeQueue", 1);
    return *compositeQueue;
}

OperationQueue& Hypertext::ImportQueue() {
    std::lock_guard<std::mutex> guard(queueMutex);
    if (!importQueue)
        importQueue = std::make_unique<OperationQueue>("importQueue", 1);
    return *importQueue;
}

std::string Hypertext::CreatorName() const { return preferences ? preferences->Creator() : std::string("system"); }

DocumentPart* Hypertext::Part(const std::string& key, const std::function<std::unique_ptr<DocumentPart>()>& make) {
    std::lock_guard<std::mutex> guard(partsMutex);
    auto it = parts.find(key);
    if (it != parts.end())
        return it->second.get();
    std::unique_ptr<DocumentPart> made = make ? make() : nullptr;
    DocumentPart* part = made.get();
    if (made)
        parts.emplace(key, std::move(made));
    return part;
}

DocumentPart* Hypertext::FindPart(const std::string& key) const {
    std::lock_guard<std::mutex> guard(partsMutex);
    auto it = parts.find(key);
    return it == parts.end() ? nullptr : it->second.get();
}
