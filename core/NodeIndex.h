#pragma once
// Lookup of a document's notes by id and by name. The id map, which holds
// every indexed note once, is kept current on every add and remove; the name map is a cache that add and
// rename invalidate and that is rebuilt as a whole (in the background after
// agent updates, or on demand for prototype lookups).
#include <atomic>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "RylSerial.h"

class Hypertext;
class Node;

class NodeIndex {
public:
    NodeIndex();
    NodeIndex(const NodeIndex&) = delete;
    NodeIndex& operator=(const NodeIndex&) = delete;

    void Add(Node* node);
    void Remove(Node* node);
    void Renamed(Node* node);
    Node* Find(uint32_t id) const;
    Node* Find(uint32_t id, const std::string& creator) const;
    // From the cache when it is valid; otherwise the first note in outline
    // order with that name.
    Node* Find(const std::string& name) const;
    Node* FindPrototype(const std::string& name);
    // Whether a live note is indexed (found under its id).
    bool Has(const Node* node) const;
    std::vector<Node*> Nodes() const;
    long count() const;
    bool NeedsUpdate() const { return !nameValid.load(); }
    void UpdateIfNeeded();
    void Rebuild();
    void Cancel() { cancelled = true; }

private:
    Hypertext* hypertext = nullptr;
    mutable RylSerial mapQueue{"com.morvent.rylvane.rylNodeMap"};
    mutable RylSerial nameQueue{"com.morvent.rylvane.rylNameCache"};
    std::unordered_multimap<uint32_t, Node*> byID;
    std::unordered_map<std::string, Node*> byName;
    std::atomic<bool> nameValid{false};
    std::atomic<bool> cancelled{false};
};
