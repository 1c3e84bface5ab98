#include "MarkupLinkList.h"

#include <cstdlib>

#include "ExportTemplate.h"
#include "Link.h"
#include "Node.h"
#include "NodeExport.h"
#include "NodeIndexing.h"
#include "NodeLinks.h"

namespace {

std::string Anchor(const std::string& url) { return "<a href=\"" + url + "\">"; }

}  // namespace

std::string MarkupLinkTo::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    if (ArgCount() == 0 || !exportTemplate)
        return std::string();
    Node* target = GetNodeNamed(node, Arg(0), exportTemplate, true);
    if (!target)
        return std::string();
    std::string text = ArgCount() > 1 ? EvaluatedArg(1, node, exportTemplate) : std::string();
    if (text.empty())
        text = target->Name();
    std::string linkClass = ArgCount() > 2 ? EvaluatedArg(2, node, exportTemplate) : std::string();
    std::string url = exportTemplate->LinkURLFor(target, GetCurrentNode(exportTemplate) ? GetCurrentNode(exportTemplate) : node);
    std::string out = "<a href=\"" + url + "\"";
    if (!linkClass.empty())
        out += " class=\"" + linkClass + "\"";
    return out + ">" + EntityFilter(text, target, exportTemplate) + "</a>";
}

// ---------------------------------------------------------------------------

std::string MarkupAncestors::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    Node* target = GetNode(node, exportTemplate, false);
    if (!target)
        return std::string();
    NodeVector line;
    for (Node* at = target->Father(); at && !at->IsRoot(); at = at->Father())
        line.insert(line.begin(), at);
    std::string out = Part(0, target);
    for (Node* at : line)
        if (CanBeExported(at))
            out += Part(1, target) + Anchor(URLFor(at, exportTemplate)) + EntityFilter(at->Name(), at, exportTemplate) +
                   "</a>" + Part(2, target);
    return out + Part(3, target);
}

bool MarkupAncestors::Eval(Node* node, ExportTemplate* exportTemplate) {
    Node* target = GetNode(node, exportTemplate, false);
    if (!target || !CanBeExported(target))
        return false;
    Node* father = target->Father();
    return father && !father->IsRoot() && father->Father() && !father->Father()->IsRoot();
}

std::string MarkupSiblings::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    Node* target = GetNode(node, exportTemplate, false);
    if (!target || !target->Father())
        return std::string();
    std::string out = EvaluateArgument(Part(0, target), target, exportTemplate);
    std::string itemStart = EvaluateArgument(Part(1, target), target, exportTemplate);
    std::string itemEnd = EvaluateArgument(Part(2, target), target, exportTemplate);
    for (Node* at = target->Father()->Son(); at; at = at->Brother()) {
        if (!CanBeExported(at))
            continue;
        if (at->GetOriginal() == target->GetOriginal())
            out += itemStart + EntityFilter(at->Name(), at, exportTemplate) + itemEnd;
        else
            out += itemStart + Anchor(URLFor(at, exportTemplate)) + EntityFilter(at->Name(), at, exportTemplate) +
                   "</a>" + itemEnd;
    }
    return out + EvaluateArgument(Part(3, target), target, exportTemplate);
}

bool MarkupSiblings::Eval(Node* node, ExportTemplate* exportTemplate) {
    Node* target = GetNode(node, exportTemplate, false);
    return target && CanBeExported(target) && target->Father() && target->Father()->ChildCount() > 1;
}

NodeVector MarkupChildLinks::Children(Node* node) const {
    NodeVector result;
    bool originals = !node->GetBoolean("HTMLExportChildren");
    for (Node* child = node->Son(); child; child = child->Brother()) {
        Node* listed = originals ? child->GetOriginal() : child;
        if (CanBeExported(listed))
            result.push_back(listed);
    }
    return result;
}

std::string MarkupChildLinks::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    Node* target = GetNode(node, exportTemplate, false);
    if (!target || (exportTemplate && !exportTemplate->HasChildLinks()))
        return std::string();
    std::string out = Part(0, target);
    for (Node* child : Children(target))
        out += Part(1, target) + Anchor(URLFor(child, exportTemplate)) +
               EntityFilter(child->Name(), child, exportTemplate) + "</a>" + Part(2, target);
    return out + Part(3, target);
}

bool MarkupChildLinks::Eval(Node* node, ExportTemplate* exportTemplate) {
    Node* target = GetNode(node, exportTemplate, false);
    return target && !Children(target).empty();
}

// ---------------------------------------------------------------------------

MarkupLinkList::MarkupLinkList(std::string name, std::string arguments, Kind kind)
    : MarkupList(std::move(name), std::move(arguments)), kind(kind) {}

LinkBundle MarkupLinkList::GetLinks(Node* node, ExportTemplate* exportTemplate) {
    if (!node)
        return LinkBundle();
    std::string path = ArgCount() > 4 ? EvaluatedArg(4, node, exportTemplate) : std::string();
    auto onPath = [&](const LinkBundle& links) { return path.empty() ? links : links.OnPath(path); };
    NodeLinks links(node);
    NodeLinks original(node->GetOriginal());
    auto withAliasFallback = [&](LinkBundle found, LinkBundle (NodeLinks::*query)() const, bool omitWeb) {
        if (found.empty() && node->IsAlias()) {
            found = (original.*query)().OmitPrototypes();
            if (omitWeb)
                found = found.OmitWebLinks();
        }
        return found;
    };
    switch (kind) {
    case kBasic:
        return onPath(withAliasFallback(links.OutboundBasicLinks().OmitPrototypes().OmitWebLinks(),
                                        &NodeLinks::OutboundBasicLinks, true));
    case kInbound:
        return onPath(withAliasFallback(links.InboundBasicLinks().OmitPrototypes(), &NodeLinks::InboundBasicLinks,
                                        false));
    case kInboundText: return onPath(links.InboundTextLinks().OmitPrototypes()).WithUniqueSources();
    case kOutboundText: return onPath(original.OutboundTextLinks().OmitPrototypes());
    case kInboundBasic:
        return onPath(withAliasFallback(links.InboundBasicLinks().OmitPrototypes(), &NodeLinks::InboundBasicLinks,
                                        false))
            .WithUniqueSources();
    case kOutboundBasic:
        return onPath(withAliasFallback(links.OutboundBasicLinks().OmitPrototypes(), &NodeLinks::OutboundBasicLinks,
                                        false));
    case kWeb: return onPath(original.WebLinks().OmitPrototypes());
    }
    return LinkBundle();
}

std::string MarkupLinkList::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    Node* target = GetNode(node, exportTemplate, false);
    LinkBundle links = GetLinks(target, exportTemplate);
    if (links.empty())
        return std::string();
    std::string out = Part(0, target);
    for (Link* link : links) {
        Node* end = Inbound() ? link->SourceNode() : link->DestNode();
        std::string url;
        if (kind == kWeb)
            url = link->URL();
        else if (end && exportTemplate)
            url = exportTemplate->LinkURLFor(end, GetCurrentNode(exportTemplate) ? GetCurrentNode(exportTemplate) : node);
        else
            continue;
        if (exportTemplate)
            exportTemplate->ForLink(link);
        std::string text = link->AnchorText();
        if (text.empty())
            text = end ? end->Name() : link->URL();
        out += Part(1, target) + ExportLink(url, link) + EntityFilter(text, end ? end : target, exportTemplate) + "</a>" +
               Part(2, target);
    }
    if (exportTemplate)
        exportTemplate->ForLink(nullptr);
    return out + Part(3, target);
}

bool MarkupLinkList::Eval(Node* node, ExportTemplate* exportTemplate) {
    return !GetLinks(GetNode(node, exportTemplate, false), exportTemplate).empty();
}

// ---------------------------------------------------------------------------

std::string MarkupSimilar::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    Node* target = GetNode(node, exportTemplate, false);
    if (!target)
        return std::string();
    auto argument = [&](size_t i, const char* fallback) {
        return ArgCount() > i && !Trim(Arg(i)).empty() ? TrimQuotes(Arg(i)) : std::string(fallback);
    };
    long count = std::atol(argument(1, "1").c_str());
    if (count < 1)
        count = 1;
    std::string out = EvaluateArgument(argument(2, "<ul>"), target, exportTemplate);
    std::string itemStart = argument(3, "<li>");
    std::string itemEnd = argument(4, "</li>");
    for (const LynxRecord& record : NodeIndexing(target).MostSimilar(static_cast<size_t>(count), true)) {
        if (!record.node || !IsExported(record.node))
            continue;
        out += itemStart + "<a href=\"" + URLFor(record.node, exportTemplate) + "\" >" +
               EntityFilter(record.node->Name(), record.node, exportTemplate) + "</a>" + itemEnd;
    }
    return out + EvaluateArgument(argument(5, "</ul>"), target, exportTemplate);
}
