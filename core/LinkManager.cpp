#include "LinkManager.h"

#include <algorithm>
#include <unordered_set>

#include "Hypertext.h"
#include "Link.h"
#include "Node.h"
#include "NodeLinks.h"
#include "Prototypes.h"
#include "SpecialAttributes.h"

namespace {

// A note's prototype is a prototype link from the note to it.
void CreatePrototypeRelation(Node* note, Node* prototype) { NodeLinks(note).CreatePrototypeLink(prototype); }

void RemovePrototypeRelation(Node* note, Node*) { NodeLinks(note).RemovePrototypeLinks(); }

const bool relationsInstalled =
    (NodeInheritance::SetRelationHandlers(CreatePrototypeRelation, RemovePrototypeRelation), true);


} // namespace

// ---------------------------------------------------------------- LinkIndex

void LinkIndex::Add(Link* link) {
    if (Node* s = link->SourceNode())
        from[s].push_back(link);
    if (Node* d = link->DestNode())
        to[d].push_back(link);
}

void LinkIndex::Remove(const Link* link) {
    auto drop = [link](std::unordered_map<const Node*, std::vector<Link*>>& map, const Node* node) {
        auto it = map.find(node);
        if (it == map.end())
            return;
        std::erase(it->second, link);
        if (it->second.empty())
            map.erase(it);
    };
    if (link->SourceNode())
        drop(from, link->SourceNode());
    if (link->DestNode())
        drop(to, link->DestNode());
}

void LinkIndex::Clear() {
    from.clear();
    to.clear();
}

const std::vector<Link*>* LinkIndex::From(const Node* node) const {
    auto it = from.find(node);
    return it == from.end() ? nullptr : &it->second;
}

const std::vector<Link*>* LinkIndex::To(const Node* node) const {
    auto it = to.find(node);
    return it == to.end() ? nullptr : &it->second;
}

void LinkIndex::Reorder(const Node* node, const std::function<size_t(const Link*)>& rank) {
    auto byRank = [&rank](const Link* a, const Link* b) { return rank(a) < rank(b); };
    if (auto it = from.find(node); it != from.end())
        std::stable_sort(it->second.begin(), it->second.end(), byRank);
    if (auto it = to.find(node); it != to.end())
        std::stable_sort(it->second.begin(), it->second.end(), byRank);
}

// ---------------------------------------------------------------- LinkManager

LinkManager::LinkManager(Hypertext* h) : hypertext(h) {}

LinkManager::~LinkManager() { Clear(); }

void LinkManager::Queue(const std::function<void()>& block) { gate.Sync(block); }

void LinkManager::Wait() { gate.Sync([] {}); }

void LinkManager::Clear() {
    std::vector<Link*> doomed;
    gate.Sync([&] {
        for (Link* link : links)
            if (link)
                doomed.push_back(link);
        links.clear();
        places.clear();
        holes = 0;
        index.Clear();
    });
    for (Link* link : doomed)
        link->Delete();
}

void LinkManager::Compact() const {
    if (holes == 0 && placesValid)
        return;
    if (holes > 0) {
        std::erase(links, nullptr);
        holes = 0;
    }
    places.clear();
    for (size_t i = 0; i < links.size(); ++i)
        places[links[i]] = i;
    placesValid = true;
}

size_t LinkManager::Rank(const Link* link) const {
    auto it = places.find(link);
    return it == places.end() ? links.size() : it->second;
}

void LinkManager::ReindexEnds(const Link* link) {
    auto rank = [this](const Link* l) { return Rank(l); };
    if (link->SourceNode())
        index.Reorder(link->SourceNode(), rank);
    if (link->DestNode())
        index.Reorder(link->DestNode(), rank);
}

void LinkManager::AddLocked(Link* link, size_t position) {
    Compact();
    position = std::min(position, links.size());
    if (position == links.size()) {
        places[link] = links.size();
        links.push_back(link);
        index.Add(link);
        return;
    }
    links.insert(links.begin() + static_cast<long>(position), link);
    placesValid = false;
    Compact();
    index.Add(link);
    ReindexEnds(link);
}

void LinkManager::Add(Link* link) {
    bool added = false;
    Queue([&] {
        if (!link || places.count(link))
            return;
        // Places with holes keep their order, so a new link can go last at once.
        places[link] = links.size();
        links.push_back(link);
        index.Add(link);
        added = true;
    });
    if (added && hypertext)
        hypertext->LinkAdded(link);
}

void LinkManager::Insert(Link* link, unsigned position) {
    bool added = false;
    Queue([&] {
        if (!link || places.count(link))
            return;
        AddLocked(link, position);
        added = true;
    });
    if (added && hypertext)
        hypertext->LinkAdded(link);
}

void LinkManager::InsertBefore(Link* link, Link* before) {
    long place = before ? PriorityOf(before) : -1;
    Insert(link, place < 0 ? static_cast<unsigned>(size()) : static_cast<unsigned>(place));
}

void LinkManager::Insert(const LinkBundle& bundle, unsigned position) {
    for (Link* link : bundle)
        Insert(link, position++);
}

void LinkManager::Insert(const LinkBundle& bundle) {
    for (Link* link : bundle)
        Add(link);
}

void LinkManager::DoRemove(Link* link) {
    bool removed = false;
    Queue([&] {
        auto it = places.find(link);
        if (it == places.end())
            return;
        links[it->second] = nullptr;
        places.erase(it);
        ++holes;
        index.Remove(link);
        if (holes > 64 && holes > links.size() / 2)
            Compact();
        removed = true;
    });
    if (!removed)
        return;
    if (hypertext)
        hypertext->LinkRemoved(link);
    link->Delete();
}

void LinkManager::RemoveLinks(const LinkBundle& bundle) {
    for (Link* link : bundle)
        DoRemove(link);
}

void LinkManager::Exchange(Link* a, Link* b) {
    Queue([&] {
        auto ia = places.find(a);
        auto ib = places.find(b);
        if (ia == places.end() || ib == places.end() || a == b)
            return;
        std::swap(links[ia->second], links[ib->second]);
        std::swap(ia->second, ib->second);
        ReindexEnds(a);
        ReindexEnds(b);
    });
}

void LinkManager::Reorder(Link* link, Link* before) {
    Queue([&] {
        if (!places.count(link) || link == before)
            return;
        if (before && !places.count(before))
            return;
        Compact();
        links.erase(links.begin() + static_cast<long>(places[link]));
        auto at = before ? std::find(links.begin(), links.end(), before) : links.end();
        links.insert(at, link);
        placesValid = false;
        Compact();
        ReindexEnds(link);
        if (before)
            ReindexEnds(before);
    });
}

LinkBundle LinkManager::All() const {
    LinkBundle all;
    gate.Sync([&] {
        all.reserve(links.size() - holes);
        for (Link* link : links)
            if (link)
                all.push_back(link);
    });
    return all;
}

size_t LinkManager::size() const {
    return gate.Sync([&] { return links.size() - holes; });
}

long LinkManager::PriorityOf(const Link* link) const {
    return gate.Sync([&]() -> long {
        Compact();
        auto it = places.find(link);
        return it == places.end() ? -1 : static_cast<long>(it->second);
    });
}

Link* LinkManager::Get(unsigned position) const {
    return gate.Sync([&]() -> Link* {
        Compact();
        return position < links.size() ? links[position] : nullptr;
    });
}

bool LinkManager::Has(const Link* link) const {
    return gate.Sync([&] { return places.count(link) > 0; });
}

bool LinkManager::UsesLinkType(const std::string& name) const {
    return gate.Sync([&] {
        return std::any_of(links.begin(), links.end(), [&](const Link* l) { return l && l->Name() == name; });
    });
}

bool LinkManager::IsHidden(const Node* end) const { return end && end->IsHidden(); }

LinkBundle LinkManager::ListLinks(const Node* end, unsigned char includeHidden) const {
    if (!end || (!includeHidden && IsHidden(end)))
        return {};
    // Outbound and inbound together, in priority order.
    LinkBundle result;
    gate.Sync([&] {
        const auto* out = index.From(end);
        const auto* in = index.To(end);
        if (out)
            result.insert(result.end(), out->begin(), out->end());
        if (in)
            for (Link* l : *in)
                if (l->SourceNode() != end)
                    result.push_back(l);
        if (out && in) {
            Compact();
            std::stable_sort(result.begin(), result.end(),
                             [this](const Link* a, const Link* b) { return Rank(a) < Rank(b); });
        }
    });
    return includeHidden ? result : result.OmitHidden();
}

LinkBundle LinkManager::ListLinksFrom(const Node* end, unsigned char includeHidden) const {
    if (!end || (!includeHidden && IsHidden(end)))
        return {};
    LinkBundle result;
    gate.Sync([&] {
        if (const auto* out = index.From(end))
            result.assign(out->begin(), out->end());
    });
    return includeHidden ? result : result.OmitHidden();
}

LinkBundle LinkManager::ListLinksTo(const Node* end, unsigned char includeHidden) const {
    if (!end || (!includeHidden && IsHidden(end)))
        return {};
    LinkBundle result;
    gate.Sync([&] {
        if (const auto* in = index.To(end))
            result.assign(in->begin(), in->end());
    });
    return includeHidden ? result : result.OmitHidden();
}

LinkBundle LinkManager::ListTextLinksTo(const Node* end, unsigned char includeHidden) const {
    return ListLinksTo(end, includeHidden).Collect([](const Link* l) { return l->IsTextLink(); });
}

LinkBundle LinkManager::ListTextLinksFrom(const Node* end, unsigned char includeHidden) const {
    return ListLinksFrom(end, includeHidden).Collect([](const Link* l) { return l->IsTextLink(); });
}

LinkBundle LinkManager::ListBasicLinksFrom(const Node* end, unsigned char includeHidden) const {
    return ListLinksFrom(end, includeHidden).Collect([](const Link* l) { return !l->IsTextLink() && !l->IsWebLink(); });
}

LinkBundle LinkManager::ListBasicLinksTo(const Node* end, unsigned char includeHidden) const {
    return ListLinksTo(end, includeHidden).Collect([](const Link* l) { return !l->IsTextLink() && !l->IsWebLink(); });
}

LinkBundle LinkManager::ListWebLinksFrom(const Node* end, unsigned char includeHidden) const {
    return ListLinksFrom(end, includeHidden).Collect([](const Link* l) { return l->IsWebLink(); });
}

LinkBundle LinkManager::LinksOnPath(const std::string& types) const { return All().OnPath(types); }

LinkBundle LinkManager::HiddenLinks() const {
    return All().Collect([](const Link* l) { return l->IsHidden(); });
}
