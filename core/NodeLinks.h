#pragma once
// The links of one note, through its document's LinkManager.
#include <string>
#include <vector>

#include "LinkBundle.h"
#include "NodeFacade.h"

class Link;
class LinkManager;
class LinkRecord;
class LinkType;
class LinkTypes;

class NodeLinks : public NodeFacade {
public:
    using NodeFacade::NodeFacade;

    LinkManager* Links() const;
    // Every link of the document.
    LinkBundle All() const;
    void WaitForLinks() const;
    Link* Get(unsigned position) const;
    long LinkCount() const;
    bool Has(const Link* link) const;
    long PriorityOf(const Link* link) const;
    void Insert(Link* link, unsigned position) const;

    // Visible links (neither end hidden) of the note.
    LinkBundle OutboundLinks() const;
    LinkBundle InboundLinks() const;
    LinkBundle OutboundBasicLinks() const;
    LinkBundle InboundBasicLinks() const;
    LinkBundle OutboundTextLinks() const;
    LinkBundle InboundTextLinks() const;
    LinkBundle WebLinks() const;
    LinkBundle OutboundLinksIncludeHidden() const;
    LinkBundle AllLinksIncludeHidden() const;
    LinkBundle LinksOnPath(const std::string& types) const;
    // Outbound and inbound links that lead nowhere visible.
    LinkBundle OutboundStubLinks() const;
    LinkBundle InboundStubLinks() const;
    bool HasTextLinks() const;
    bool HasLinks() const;
    bool HasInboundLinks() const;
    bool HasInboundLinksOmitPrototypes() const;

    Link* CreateLink(const LinkRecord& record) const;
    // A link from this note to `dest`, of `type` ("*untitled" when empty).
    Link* CreateLink(Node* dest, const std::string& type = std::string()) const;
    Link* CreatePrototypeLink(Node* prototype) const;
    // Removes the note's outbound prototype links.
    void RemovePrototypeLinks() const;

    LinkStyle LinkStyleFor(const std::string& type) const;
    bool LinkTypeIsVisible(const std::string& type) const;
    LinkTypes* GetLinkTypes() const;
    bool HasLinkType(const std::string& type) const;
    void CreateLinkType(const std::string& type) const;
    // Adds a type for every link type name in use that the list lacks.
    void UpdateLinkTypes() const;
    std::vector<std::string> LinkTypeNames() const;
    bool UsesLinkType(const std::string& type) const;
    bool RoadmapHasPrototypeLinks() const;
    // The link a click on the note follows: its first visible outbound
    // link that is no prototype link.
    Link* ChooseDefaultLink() const;
    void ExchangeLinks(Link* a, Link* b) const;
    void Reorder(Link* link, Link* before) const;
};
