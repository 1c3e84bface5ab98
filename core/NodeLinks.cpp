#include "NodeLinks.h"

#include "Hypertext.h"
#include "Link.h"
#include "LinkManager.h"
#include "LinkType.h"


LinkManager* NodeLinks::Links() const {
    Hypertext* h = node ? node->GetHypertext() : nullptr;
    return h ? h->Links() : nullptr;
}

LinkBundle NodeLinks::All() const {
    LinkManager* m = Links();
    return m ? m->All() : LinkBundle();
}

void NodeLinks::WaitForLinks() const {
    if (LinkManager* m = Links())
        m->Wait();
}

Link* NodeLinks::Get(unsigned position) const {
    LinkManager* m = Links();
    return m ? m->Get(position) : nullptr;
}

long NodeLinks::LinkCount() const {
    LinkManager* m = Links();
    return m ? static_cast<long>(m->size()) : 0;
}

bool NodeLinks::Has(const Link* link) const {
    LinkManager* m = Links();
    return m && m->Has(link);
}

long NodeLinks::PriorityOf(const Link* link) const {
    LinkManager* m = Links();
    return m ? m->PriorityOf(link) : -1;
}

void NodeLinks::Insert(Link* link, unsigned position) const {
    if (LinkManager* m = Links())
        m->Insert(link, position);
}

LinkBundle NodeLinks::OutboundLinks() const {
    LinkManager* m = Links();
    return m ? m->ListLinksFrom(node, false) : LinkBundle();
}

LinkBundle NodeLinks::InboundLinks() const {
    LinkManager* m = Links();
    return m ? m->ListLinksTo(node, false) : LinkBundle();
}

LinkBundle NodeLinks::OutboundBasicLinks() const {
    LinkManager* m = Links();
    return m ? m->ListBasicLinksFrom(node, false) : LinkBundle();
}

LinkBundle NodeLinks::InboundBasicLinks() const {
    LinkManager* m = Links();
    return m ? m->ListBasicLinksTo(node, false) : LinkBundle();
}

LinkBundle NodeLinks::OutboundTextLinks() const {
    LinkManager* m = Links();
    return m ? m->ListTextLinksFrom(node, false) : LinkBundle();
}

LinkBundle NodeLinks::InboundTextLinks() const {
    LinkManager* m = Links();
    return m ? m->ListTextLinksTo(node, false) : LinkBundle();
}

LinkBundle NodeLinks::WebLinks() const {
    LinkManager* m = Links();
    return m ? m->ListWebLinksFrom(node, false) : LinkBundle();
}

LinkBundle NodeLinks::OutboundLinksIncludeHidden() const {
    LinkManager* m = Links();
    return m ? m->ListLinksFrom(node, true) : LinkBundle();
}

LinkBundle NodeLinks::AllLinksIncludeHidden() const {
    LinkManager* m = Links();
    return m ? m->ListLinks(node, true) : LinkBundle();
}

LinkBundle NodeLinks::LinksOnPath(const std::string& types) const { return OutboundLinks().OnPath(types); }

LinkBundle NodeLinks::OutboundStubLinks() const {
    return OutboundLinksIncludeHidden().Collect(
        [](const Link* l) { return !l->IsWebLink() && (!l->DestNode() || l->DestNode()->IsHidden()); });
}

LinkBundle NodeLinks::InboundStubLinks() const {
    LinkManager* m = Links();
    if (!m)
        return {};
    return m->ListLinksTo(node, true).Collect([](const Link* l) {
        return !l->SourceNode() || l->SourceNode()->IsHidden();
    });
}

bool NodeLinks::HasTextLinks() const { return !OutboundTextLinks().empty(); }

bool NodeLinks::HasLinks() const {
    LinkManager* m = Links();
    return m && !m->ListLinks(node, false).empty();
}

bool NodeLinks::HasInboundLinks() const { return !InboundLinks().empty(); }

bool NodeLinks::HasInboundLinksOmitPrototypes() const { return !InboundLinks().OmitPrototypes().empty(); }

Link* NodeLinks::CreateLink(const LinkRecord& record) const {
    LinkRecord r = record;
    if (!r.sourceNode)
        r.sourceNode = node;
    Link* link = r.CreateLink();
    if (link)
        CreateLinkType(link->Name());
    return link;
}

Link* NodeLinks::CreateLink(Node* dest, const std::string& type) const {
    if (!node || !dest)
        return nullptr;
    return CreateLink(LinkRecord(node, dest, type.empty() ? std::string(LinkType::kUntitled) : type));
}

Link* NodeLinks::CreatePrototypeLink(Node* prototype) const {
    if (!node || !prototype)
        return nullptr;
    LinkRecord record(node, prototype, LinkType::kPrototype);
    return record.CreateLink();
}

void NodeLinks::RemovePrototypeLinks() const {
    OutboundLinksIncludeHidden().Collect([](const Link* l) { return l->IsPrototype(); }).DeleteLinks();
}

LinkTypes* NodeLinks::GetLinkTypes() const {
    Hypertext* h = node ? node->GetHypertext() : nullptr;
    return h ? h->GetLinkTypes() : nullptr;
}

LinkStyle NodeLinks::LinkStyleFor(const std::string& type) const {
    LinkTypes* types = GetLinkTypes();
    const LinkType* t = types ? types->Find(type) : nullptr;
    return t ? t->Style() : LinkStyle();
}

bool NodeLinks::LinkTypeIsVisible(const std::string& type) const {
    LinkTypes* types = GetLinkTypes();
    const LinkType* t = types ? types->Find(type) : nullptr;
    return !t || t->Visible();
}

bool NodeLinks::HasLinkType(const std::string& type) const {
    LinkTypes* types = GetLinkTypes();
    return types && types->Has(type);
}

void NodeLinks::CreateLinkType(const std::string& type) const {
    LinkTypes* types = GetLinkTypes();
    if (types && !type.empty() && !types->Has(type))
        types->Add(LinkType(type));
}

void NodeLinks::UpdateLinkTypes() const {
    for (Link* link : All())
        CreateLinkType(link->Name());
}

std::vector<std::string> NodeLinks::LinkTypeNames() const {
    LinkTypes* types = GetLinkTypes();
    return types ? types->Names() : std::vector<std::string>();
}

bool NodeLinks::UsesLinkType(const std::string& type) const {
    LinkManager* m = Links();
    return m && m->UsesLinkType(type);
}

bool NodeLinks::RoadmapHasPrototypeLinks() const {
    return OutboundLinks().Any([](const Link* l) { return l->IsPrototype(); });
}

Link* NodeLinks::ChooseDefaultLink() const {
    return OutboundLinks().OmitPrototypes().First([](const Link*) { return true; });
}

void NodeLinks::ExchangeLinks(Link* a, Link* b) const {
    Hypertext* h = node ? node->GetHypertext() : nullptr;
    if (h)
        h->ExchangeLinks(a, b);
}

void NodeLinks::Reorder(Link* link, Link* before) const {
    Hypertext* h = node ? node->GetHypertext() : nullptr;
    if (h)
        h->ReorderLinks(link, before);
}
