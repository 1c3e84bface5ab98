#include "LinkBundle.h"

#include <algorithm>
#include <set>

#include "Hypertext.h"
#include "Link.h"
#include "LinkManager.h"
#include "LinkType.h"
#include "Node.h"

namespace {

// The ";"-separated type names of a path; empty when any type will do.
std::set<std::string> PathTypes(const std::string& types) {
    std::set<std::string> names;
    size_t start = 0;
    while (start <= types.size()) {
        size_t end = types.find(';', start);
        if (end == std::string::npos)
            end = types.size();
        std::string name = types.substr(start, end - start);
        size_t a = name.find_first_not_of(" \t\"'");
        size_t b = name.find_last_not_of(" \t\"'");
        name = a == std::string::npos ? std::string() : name.substr(a, b - a + 1);
        if (name == "*")
            return {};
        if (!name.empty())
            names.insert(name);
        start = end + 1;
    }
    return names;
}

} // namespace

LinkBundle LinkBundle::Collect(const std::function<bool(const Link*)>& accept) const {
    LinkBundle result;
    for (Link* link : *this)
        if (accept(link))
            result.push_back(link);
    return result;
}

LinkBundle LinkBundle::OmitHidden() const {
    return Collect([](const Link* l) { return !l->IsHidden(); });
}

LinkBundle LinkBundle::OmitPrototypes() const {
    return Collect([](const Link* l) { return !l->IsPrototype(); });
}

LinkBundle LinkBundle::OmitInvisible() const {
    return Collect([](const Link* l) {
        Node* s = l->SourceNode();
        Hypertext* h = s ? s->GetHypertext() : nullptr;
        const LinkTypes* types = h ? h->GetLinkTypes() : nullptr;
        const LinkType* type = types ? types->Find(l->Name()) : nullptr;
        return !type || type->Visible();
    });
}

LinkBundle LinkBundle::OmitWebLinks() const {
    return Collect([](const Link* l) { return !l->IsWebLink(); });
}

LinkBundle LinkBundle::WithGuardFieldSatisfied(const std::string& value) const {
    return Collect([&value](const Link* l) { return l->GuardSatisfied(value); });
}

LinkBundle LinkBundle::WithUniqueSources() const {
    std::set<const Node*> seen;
    return Collect([&seen](const Link* l) { return seen.insert(l->SourceNode()).second; });
}

LinkBundle LinkBundle::OnPath(const std::string& types) const {
    std::set<std::string> names = PathTypes(types);
    if (names.empty())
        return *this;
    return Collect([&names](const Link* l) { return names.count(l->Name()) > 0; });
}

LinkBundle LinkBundle::NotOnPath(const std::string& types) const {
    std::set<std::string> names = PathTypes(types);
    if (names.empty())
        return {};
    return Collect([&names](const Link* l) { return names.count(l->Name()) == 0; });
}

LinkBundle LinkBundle::ListLinks(const Node* end) const {
    return Collect([end](const Link* l) { return end && (l->SourceNode() == end || l->DestNode() == end); });
}

LinkBundle LinkBundle::ListLinksFrom(const Node* end) const {
    return Collect([end](const Link* l) { return end && l->SourceNode() == end; });
}

LinkBundle LinkBundle::ListLinksTo(const Node* end) const {
    return Collect([end](const Link* l) { return end && l->DestNode() == end; });
}

LinkBundle LinkBundle::ListBasicLinksFrom(const Node* end) const {
    return ListLinksFrom(end).Collect([](const Link* l) { return !l->IsTextLink() && !l->IsWebLink(); });
}

LinkBundle LinkBundle::ListBasicLinksTo(const Node* end) const {
    return ListLinksTo(end).Collect([](const Link* l) { return !l->IsTextLink() && !l->IsWebLink(); });
}

LinkBundle LinkBundle::ListWebLinksFrom(const Node* end) const {
    return ListLinksFrom(end).Collect([](const Link* l) { return l->IsWebLink(); });
}

LinkBundle LinkBundle::ListTextLinksFrom(const Node* end) const {
    return ListLinksFrom(end).Collect([](const Link* l) { return l->IsTextLink(); });
}

LinkBundle LinkBundle::ListTextLinksTo(const Node* end) const {
    return ListLinksTo(end).Collect([](const Link* l) { return l->IsTextLink(); });
}

void LinkBundle::Apply(const std::function<void(Link*)>& block) const {
    for (Link* link : *this)
        block(link);
}

bool LinkBundle::Every(const std::function<bool(const Link*)>& test) const {
    return std::all_of(begin(), end(), test);
}

bool LinkBundle::Any(const std::function<bool(const Link*)>& test) const {
    return std::any_of(begin(), end(), test);
}

Link* LinkBundle::First(const std::function<bool(const Link*)>& test) const {
    auto it = std::find_if(begin(), end(), test);
    return it == end() ? nullptr : *it;
}

long LinkBundle::IndexOf(const Link* link) const {
    auto it = std::find(begin(), end(), link);
    return it == end() ? -1 : static_cast<long>(it - begin());
}

void LinkBundle::Insert(Link* link, size_t position) {
    insert(begin() + static_cast<long>(std::min(position, size())), link);
}

void LinkBundle::Remove(const Link* link) {
    auto it = std::find(begin(), end(), link);
    if (it != end())
        erase(it);
}

void LinkBundle::Add(Link* link) {
    if (IndexOf(link) < 0)
        push_back(link);
}

void LinkBundle::DeleteLinks() const {
    for (Link* link : *this) {
        Node* s = link->SourceNode();
        Hypertext* h = s ? s->GetHypertext() : nullptr;
        if (!h && link->DestNode())
            h = link->DestNode()->GetHypertext();
        LinkManager* manager = h ? h->Links() : nullptr;
        if (manager && manager->Has(link))
            manager->Remove(link);
    }
}

void LinkBundle::CloneLinksFrom(const Node* source, Node* copy, bool withPrototypes) {
    Hypertext* h = source ? source->GetHypertext() : nullptr;
    if (!h || !copy || !h->Links())
        return;
    for (Link* link : h->Links()->ListLinksFrom(source, true)) {
        if (link->IsPrototype() && !withPrototypes)
            continue;
        LinkRecord record(link);
        record.sourceNode = copy;
        record.CreateLink();
    }
}

std::string LinkBundle::ToString(const TextSpan& span) const {
    std::string out;
    for (const Link* link : *this) {
        if (!link->IsTextLink() || !link->SourceSpan().Overlaps(span))
            continue;
        if (!out.empty())
            out += ";";
        out += link->DestNode() ? link->DestNode()->Name() : link->URL();
    }
    return out;
}
