#include "LinkCluster.h"

#include <algorithm>

#include "CodeGenerator.h"
#include "HTMLMarkup.h"
#include "Link.h"
#include "Node.h"

bool LinkCluster::IsWebLink() const { return !links.empty() && links.front()->IsWebLink(); }

std::string LinkCluster::URL(const HTMLMarkup& markup) const {
    if (links.empty())
        return std::string();
    const Link* link = links.front();
    if (link->IsWebLink())
        return link->URL();
    if (!link->DestNode() || !markup.GetHost())
        return std::string();
    return markup.GetHost()->LinkURLFor(link->DestNode(), markup.GetExportedNode());
}

std::string LinkCluster::Attributes() const {
    if (links.empty())
        return std::string();
    const Link* link = links.front();
    std::string parts;
    if (!link->Class().empty())
        parts += " class=\"" + link->Class() + "\" ";
    if (!link->Title().empty())
        parts += " title=\"" + link->Title() + "\"";
    if (!link->Target().empty())
        parts += " target=\"" + link->Target() + "\"";
    return parts;
}

std::string LinkCluster::ToHTML(const HTMLMarkup& markup) const {
    std::string url = URL(markup);
    if (url.empty())
        return std::string();
    return "<a href=\"" + url + "\"" + Attributes() + ">";
}

void LinkClusters::FormFrom(const LinkBundle& bundle, const Node* note, int length) {
    clear();
    const Node* original = note ? note->GetOriginal() : nullptr;
    std::vector<const Link*> anchored;
    for (const Link* link : bundle) {
        if (!link || !link->IsTextLink())
            continue;
        const Node* source = link->SourceNode();
        if (source != note && (!source || source->GetOriginal() != original))
            continue;
        const TextSpan& span = link->SourceSpan();
        if (span.Start() < 0 || span.Start() >= length)
            continue;
        anchored.push_back(link);
    }
    // Text order; links on one span keep the bundle's order.
    std::stable_sort(anchored.begin(), anchored.end(), [](const Link* a, const Link* b) {
        if (a->SourceSpan().Start() != b->SourceSpan().Start())
            return a->SourceSpan().Start() < b->SourceSpan().Start();
        return a->SourceSpan().Length() < b->SourceSpan().Length();
    });
    for (const Link* link : anchored) {
        int start = link->SourceSpan().Start();
        int end = static_cast<int>(std::min<long long>(static_cast<long long>(start) + link->SourceSpan().Length(), length));
        if (!empty() && back().Start() == start && back().End() == end) {
            back().AddLink(link);
            continue;
        }
        if (!empty() && start < back().End())
            continue;
        emplace_back(start, end);
        back().AddLink(link);
    }
}

void LinkClusters::DoMarkup(HTMLMarkup& markup, CodeGenerator& generator) const {
    for (const LinkCluster& cluster : *this) {
        if (cluster.IsWebLink())
            generator.WebLink(markup, cluster.Start(), cluster.End(), cluster.URL(markup), &cluster);
        else
            generator.Link(markup, cluster);
    }
}
