#include "MarkupIf.h"

#include <cctype>
#include <cmath>
#include <initializer_list>

#include <boost/regex.hpp>

#include "Attribute.h"
#include "DateTranslator.h"
#include "ExportTemplate.h"
#include "Node.h"
#include "NodeLinks.h"
#include "LinkBundle.h"
#include "STime.h"

MarkupIf::MarkupIf(std::string name, std::string arguments)
    : MarkupExportElement(std::move(name), std::move(arguments)) {
    // The condition: leading white space skipped, then literal runs and
    // elements as in any template.
    std::string condition = this->arguments;
    size_t start = 0;
    while (start < condition.size() && std::isspace(static_cast<unsigned char>(condition[start])))
        ++start;
    std::unique_ptr<ExportElement> tree = FromString(condition.substr(start));
    for (auto& child : tree->TakeChildren())
        Add(child.release());
}

bool MarkupIf::Eval(Node* node, ExportTemplate* exportTemplate) {
    return children.empty() ? true : children.front()->Eval(node, exportTemplate);
}

std::string MarkupIf::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    ExportElement* chosen = Eval(node, exportTemplate) ? trueClause.get() : falseClause.get();
    return chosen ? chosen->ExportValue(node, exportTemplate) : std::string();
}

bool MarkupNot::Eval(Node* node, ExportTemplate* exportTemplate) { return !ExportElement::Eval(node, exportTemplate); }

bool MarkupExists::Eval(Node* node, ExportTemplate* exportTemplate) {
    if (!node)
        return false;
    std::string what = TrimQuotes(arguments);
    std::string lower;
    for (char c : what)
        lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (lower == "childlinks")
        return node->Son() != nullptr;
    if (lower == "basiclinks")
        return !NodeLinks(node).OutboundBasicLinks().OmitPrototypes().empty();
    if (lower == "inboundlinks")
        return !NodeLinks(node).InboundBasicLinks().OmitPrototypes().empty();
    if (what.empty())
        return false;
    if (GetNodeNamed(node, what, exportTemplate, true))
        return true;
    std::string attribute = what[0] == '$' ? what.substr(1) : what;
    if (const Attribute* known = node->GetAttribute(attribute); known && known->IsValid())
        return node->GetBoolean(attribute);
    return false;
}

std::string MarkupExists::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    return Eval(node, exportTemplate) ? "true" : std::string();
}

MarkupCompare::MarkupCompare(std::string name, std::string arguments, Kind kind)
    : MarkupWithArgumentList(std::move(name), std::move(arguments)), kind(kind) {}

bool MarkupCompare::Eval(Node* node, ExportTemplate* exportTemplate) {
    if (Count() < 2)
        return false;
    std::string a = TrimQuotes(Value(0, node, exportTemplate));
    std::string b = TrimQuotes(Value(1, node, exportTemplate));
    switch (kind) {
    case kEqual: return a == b;
    case kContains:
        try {
            return boost::regex_search(a, boost::regex(b));
        } catch (const std::exception&) {
            return false;  // a pattern the regex library refuses matches nothing
        }
    case kBeginsWith: return a.rfind(b, 0) == 0;
    case kEndsWith: {
        size_t at = a.rfind(b);
        return at != std::string::npos && at + b.size() == a.size();
    }
    case kDays: {
        STime date = DateTranslator::For(a);
        if (date.IsNever())
            return false;
        double days = std::floor(STime::Now().SecondsSince(date) / 86400.0);
        return days < std::atof(b.c_str());
    }
    }
    return false;
}

bool MarkupIsInside::Eval(Node* node, ExportTemplate* exportTemplate) {
    Node* container = GetNodeNamed(node, Arg(0), exportTemplate, true);
    if (!node || !container)
        return false;
    const Node* original = node->GetOriginal();
    for (Node* child = container->Son(); child; child = child->Brother())
        if (child->GetOriginal() == original)
            return true;
    return false;
}

std::string MarkupIsInside::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    return Eval(node, exportTemplate) ? " true " : " false ";
}

bool MarkupIsDescendedFrom::Eval(Node* node, ExportTemplate* exportTemplate) {
    Node* ancestor = GetNodeNamed(node, Arg(0), exportTemplate, true);
    if (!node || !ancestor)
        return false;
    const Node* ancestorOriginal = ancestor->GetOriginal();
    for (const Node* at : std::initializer_list<const Node*>{node, node->GetOriginal()})
        if (at->IsDescendedFrom(ancestor) || at->IsDescendedFrom(ancestorOriginal))
            return true;
    return false;
}

std::string MarkupIsDescendedFrom::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    return Eval(node, exportTemplate) ? " true " : " false ";
}
