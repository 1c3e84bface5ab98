#include "NodeFinder.h"

#include "Hypertext.h"
#include "Link.h"
#include "LinkManager.h"
#include "NodeIndex.h"

NodeIndex* NodeFinder::Index() const {
    if (Invalid())
        return nullptr;
    Hypertext* h = node->GetHypertext();
    return h ? h->GetIndex() : nullptr;
}

Node* NodeFinder::FindNodeNamed(const std::string& name) const {
    NodeIndex* index = Index();
    return index ? index->Find(name) : nullptr;
}

Node* NodeFinder::FindPrototypeNamed(const std::string& name) const {
    NodeIndex* index = Index();
    return index ? index->FindPrototype(name) : nullptr;
}

Node* NodeFinder::Find(uint32_t id) const {
    NodeIndex* index = Index();
    return index ? index->Find(id) : nullptr;
}

Node* NodeFinder::Find(uint32_t id, const std::string& creator) const {
    NodeIndex* index = Index();
    return index ? index->Find(id, creator) : nullptr;
}

bool NodeFinder::HasNode(const Node* other) const {
    NodeIndex* index = Index();
    return index && other && !other->Invalid() && index->Has(other);
}

bool NodeFinder::HasLink(const Link* link) const {
    NodeIndex* index = Index();
    if (!index || !link)
        return false;
    LinkManager* links = node->GetHypertext()->Links();
    return links && links->Has(link) && index->Has(link->SourceNode());
}

std::string NodeFinder::DefaultPathname() const {
    NodeIndex* index = Index();
    if (!index || !index->Has(node))
        return "";
    return NodeFacade::HTPath();
}
