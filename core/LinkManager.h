#pragma once
// All links of a document, in one list ordered by priority (the position in
// the list), with an index from each note to its links.
//
// Changes are serial: each goes through the manager's gate, a serial queue
// that readers also pass through, so that a reader on another thread sees
// the list before or after a change, never during one.
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "LinkBundle.h"
#include "RylSerial.h"

class Hypertext;
class Link;
class Node;

// From a note to its links, outbound and inbound, each in priority order.
class LinkIndex {
public:
    void Add(Link* link);
    void Remove(const Link* link);
    void Clear();
    const std::vector<Link*>* From(const Node* node) const;
    const std::vector<Link*>* To(const Node* node) const;
    // Puts each list of the given notes back into the order of `rank`.
    void Reorder(const Node* node, const std::function<size_t(const Link*)>& rank);

private:
    std::unordered_map<const Node*, std::vector<Link*>> from;
    std::unordered_map<const Node*, std::vector<Link*>> to;
};

class LinkManager {
public:
    explicit LinkManager(Hypertext* hypertext = nullptr);
    virtual ~LinkManager();
    LinkManager(const LinkManager&) = delete;
    LinkManager& operator=(const LinkManager&) = delete;

    // Runs a block through the gate; Wait returns once everything queued so far ran.
    void Queue(const std::function<void()>& block);
    void Wait();

    // Destroys every link.
    void Clear();
    // Adds the link at the lowest priority (the end); the manager owns it.
    void Add(Link* link);
    // Takes the link out and destroys it.
    void Remove(Link* link) { DoRemove(link); }
    virtual void DoRemove(Link* link);
    // Takes several links out and destroys them.
    void RemoveLinks(const LinkBundle& links);
    // Swaps the places of two links.
    void Exchange(Link* a, Link* b);
    // Moves `link` to the place just before `before` (to the end when null).
    void Reorder(Link* link, Link* before);
    // Inserts a new link at a place (clipped to the list).
    void Insert(Link* link, unsigned position);
    void InsertBefore(Link* link, Link* before);
    void Insert(const LinkBundle& links, unsigned position);
    void Insert(const LinkBundle& links);

    LinkBundle All() const;
    bool IsHidden(const Node* end) const;
    LinkBundle ListLinks(const Node* end, unsigned char includeHidden) const;
    LinkBundle ListLinksFrom(const Node* end, unsigned char includeHidden) const;
    LinkBundle ListLinksTo(const Node* end, unsigned char includeHidden) const;
    LinkBundle ListTextLinksTo(const Node* end, unsigned char includeHidden) const;
    LinkBundle ListTextLinksFrom(const Node* end, unsigned char includeHidden) const;
    LinkBundle ListBasicLinksFrom(const Node* end, unsigned char includeHidden) const;
    LinkBundle ListBasicLinksTo(const Node* end, unsigned char includeHidden) const;
    LinkBundle ListWebLinksFrom(const Node* end, unsigned char includeHidden) const;
    LinkBundle LinksOnPath(const std::string& types) const;
    LinkBundle HiddenLinks() const;

    size_t size() const;
    // The place of the link in the list, or -1.
    long PriorityOf(const Link* link) const;
    // The link at a place, or null.
    Link* Get(unsigned position) const;
    bool Has(const Link* link) const;
    bool UsesLinkType(const std::string& name) const;

private:
    void Compact() const;
    void AddLocked(Link* link, size_t position);
    size_t Rank(const Link* link) const;
    void ReindexEnds(const Link* link);

    Hypertext* hypertext;
    mutable RylSerial gate{"com.morvent.rylvane.linkManager"};
    // The list may hold null places left by removals; Compact closes them.
    mutable std::vector<Link*> links;
    mutable size_t holes = 0;
    mutable std::unordered_map<const Link*, size_t> places;
    mutable bool placesValid = true;
    LinkIndex index;
};
