#pragma once
// The change collector. Notes report what changed about them as facet masks
// (see ChangeFacet); the collector merges the masks per note until the
// outermost StChanges ends, then hands the batch to its listeners (views
// decide from the bits whether to lay out, redraw or update text).
#include <atomic>
#include <functional>
#include <mutex>
#include <unordered_map>
#include <vector>

class Node;

// Bits of a change mask, handed to Node::Changed: one for each kind of
// change. Masks combine them with "|".
enum ChangeFacet : unsigned long {
    kChangeNode = 1,
    kChangeChildren = 2,
    kChangeContent = 4,
    kChangePreferences = 8,
    kChangeSelection = 16,
    kChangeLink = 32,
    kChangeDeleted = 64,
    kChangeValue = 256,
    kChangeShape = 512,
    kChangeMoved = 2048,
    kChangeInspectable = 4096,
    kChangeTime = 8192,
};


class Change {
public:
    using Batch = std::vector<std::pair<Node*, unsigned long>>;
    using Listener = std::function<void(const Batch&)>;

    void Changed(Node* node, unsigned long mask);
    void Forget(Node* node);
    void Hold();
    void Release();
    // Delivers what is pending now.
    void Flush();
    void Stop();
    void SetModified(bool m) { modified = m; }
    bool IsModified() const { return modified; }
    void AddListener(Listener listener);
    // The mask merged for a note since the last delivery.
    unsigned long Pending(const Node* node) const;

private:
    mutable std::recursive_mutex mutex;
    std::unordered_map<Node*, unsigned long> pending;
    std::vector<Node*> order;
    std::vector<Listener> listeners;
    // Nothing is collected until someone listens.
    std::atomic<bool> hasListeners{false};
    int holds = 0;
    bool stopped = false;
    bool modified = false;
};
