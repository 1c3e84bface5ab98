#include "NodeIndex.h"

#include "Hypertext.h"
#include "Node.h"
#include "NodeFacade.h"

NodeIndex::NodeIndex() = default;

void NodeIndex::Add(Node* node) {
    if (!node)
        return;
    if (!hypertext)
        hypertext = node->GetHypertext();
    if (!node->IsAlias())
        nameQueue.Sync([&] { nameValid = false; });
    mapQueue.Sync([&] {
        auto range = byID.equal_range(node->GetID().GetID());
        for (auto it = range.first; it != range.second; ++it)
            if (it->second == node)
                return;
        byID.emplace(node->GetID().GetID(), node);
    });
}

void NodeIndex::Remove(Node* node) {
    if (!node)
        return;
    nameQueue.Sync([&] {
        auto named = byName.find(node->Name());
        if (named != byName.end() && named->second == node) {
            byName.erase(named);
            return;
        }
        // Not under its present name: it is not in the cache, or was renamed
        // (or lost its values, while being deleted) since the cache was made.
        // Scanning for it would cost the whole cache for every note deleted
        // (a note is removed twice on deletion, and aliases never stand in
        // the cache), so a valid cache is dropped instead and made again
        // when next asked; an invalid one is cleared by that rebuild anyway.
        if (nameValid) {
            byName.clear();
            nameValid = false;
        }
    });
    mapQueue.Sync([&] {
        // A note's id changes only through SetID and SetHypertext, which take
        // it out of the index first, so it stands under its present id.
        auto range = byID.equal_range(node->GetID().GetID());
        for (auto it = range.first; it != range.second; ++it)
            if (it->second == node) {
                byID.erase(it);
                return;
            }
    });
}

void NodeIndex::Renamed(Node* node) {
    if (node && !node->IsAlias())
        nameQueue.Sync([&] { nameValid = false; });
}

Node* NodeIndex::Find(uint32_t id) const {
    return mapQueue.Sync([&]() -> Node* {
        auto range = byID.equal_range(id);
        Node* found = nullptr;
        for (auto it = range.first; it != range.second; ++it)
            if (!found || (found->IsAlias() && !it->second->IsAlias()))
                found = it->second;
        return found;
    });
}

Node* NodeIndex::Find(uint32_t id, const std::string& creator) const {
    return mapQueue.Sync([&]() -> Node* {
        auto range = byID.equal_range(id);
        for (auto it = range.first; it != range.second; ++it)
            if (it->second->GetID().GetCreator() == creator)
                return it->second;
        return nullptr;
    });
}

Node* NodeIndex::Find(const std::string& name) const {
    Node* cached = nullptr;
    bool valid = nameQueue.Sync([&] {
        if (!nameValid)
            return false;
        auto it = byName.find(name);
        cached = it == byName.end() ? nullptr : it->second;
        return true;
    });
    if (valid)
        return cached;
    return HypertextFacade(hypertext).First([&](Node* n) { return n->Name() == name; });
}

Node* NodeIndex::FindPrototype(const std::string& name) {
    UpdateIfNeeded();
    Node* found = nameQueue.Sync([&]() -> Node* {
        auto it = byName.find(name);
        return it == byName.end() ? nullptr : it->second;
    });
    if (!found)
        return nullptr;
    if (found->GetBoolean("IsPrototype"))
        return found;
    return HypertextFacade(hypertext).First(
        [&](Node* n) { return n->GetBoolean("IsPrototype") && n->Name() == name; });
}

bool NodeIndex::Has(const Node* node) const {
    if (!node)
        return false;
    uint32_t id = node->GetID().GetID();
    return mapQueue.Sync([&] {
        auto range = byID.equal_range(id);
        for (auto it = range.first; it != range.second; ++it)
            if (it->second == node)
                return true;
        return false;
    });
}

std::vector<Node*> NodeIndex::Nodes() const {
    return mapQueue.Sync([&] {
        std::vector<Node*> all;
        all.reserve(byID.size());
        for (const auto& entry : byID)
            all.push_back(entry.second);
        return all;
    });
}

long NodeIndex::count() const {
    return mapQueue.Sync([&] { return static_cast<long>(byID.size()); });
}

void NodeIndex::UpdateIfNeeded() {
    if (NeedsUpdate())
        Rebuild();
}

void NodeIndex::Rebuild() {
    if (!hypertext)
        return;
    nameQueue.Sync([&] {
        byName.clear();
        Node* root = hypertext->Root();
        for (Node* n = root; n; n = n->Next()) {
            if (cancelled)
                break;
            if (n->IsAlias() || n->IsHidden() || n == root)
                continue;
            if (NodeFacade(n).IsUntitled())
                continue;
            byName.emplace(n->Name(), n);
        }
        nameValid = true;
    });
}
