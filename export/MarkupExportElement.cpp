#include "MarkupExportElement.h"

#include <ostream>

#include "ExportTemplate.h"
#include "Exporter.h"
#include "HTExportPath.h"
#include "Link.h"
#include "Node.h"
#include "NodeExport.h"
#include "NodeFacade.h"
#include "Parser.h"
#include "Transformer.h"

MarkupExportElement::MarkupExportElement(std::string name, std::string arguments)
    : name(std::move(name)), arguments(std::move(arguments)), args(this->arguments, ',', true) {}

std::string MarkupExportElement::Arg(size_t i) const { return i < args.size() ? args[i] : std::string(); }

std::string MarkupExportElement::EvaluatedArg(size_t i, Node* node, ExportTemplate* exportTemplate) const {
    return EvaluateArgument(TrimQuotes(Arg(i)), node, exportTemplate);
}

int MarkupExportElement::Export(std::ostream& stream, Node* node, ExportTemplate* exportTemplate, ExportView* view) {
    std::string value = ExportValue(node, exportTemplate);
    if (view)
        view->Exported(this, value);
    stream << value;
    return 0;
}

std::string MarkupExportElement::TrimQuotes(const std::string& text) { return Parser::TrimQuotes(Trim(text)); }

std::string MarkupExportElement::EvaluateArgument(const std::string& text, Node* node,
                                                  ExportTemplate* exportTemplate) {
    if (text.find('^') == std::string::npos)
        return text;
    std::atomic<int>& nesting = EvaluationNesting();
    int old = nesting++;
    if (old >= kMaxEvaluationNesting)
        return text;  // the counter stays raised: the limit holds from now on
    std::string result;
    try {
        std::unique_ptr<ExportElement> tree = FromString(text);
        result = tree->ExportValue(node, exportTemplate);
    } catch (...) {
        result.clear();
    }
    --nesting;
    return result;
}

Node* MarkupExportElement::GetCurrentNode(ExportTemplate* exportTemplate) const {
    return exportTemplate ? exportTemplate->ExportingNode() : nullptr;
}

Node* MarkupExportElement::GetNodeNamed(Node* node, const std::string& rawName, ExportTemplate* exportTemplate,
                                        bool strict) {
    if (!node)
        return nullptr;
    std::string name = EvaluateArgument(TrimQuotes(rawName), node, exportTemplate);
    if (name.empty())
        return node;
    if (name == "current")
        return GetCurrentNode(exportTemplate);
    if (exportTemplate && exportTemplate->ForLink()) {
        if (name == "source")
            return exportTemplate->ForLink()->SourceNode();
        if (name == "destination")
            return exportTemplate->ForLink()->DestNode();
    }
    MatchList scratch;
    MatchList& matches = exportTemplate ? GetMatchList(exportTemplate) : scratch;
    Node* found = HTExportPath(name).Get(node, matches);
    if (!found)
        return strict ? nullptr : node;
    return found;
}

Node* MarkupExportElement::GetNodeNamed(Node* node, Node* scope, const std::string& rawName,
                                        ExportTemplate* exportTemplate, bool strict) {
    if (!scope)
        return GetNodeNamed(node, rawName, exportTemplate, strict);
    std::string name = EvaluateArgument(TrimQuotes(rawName), node, exportTemplate);
    Node* found = NodeFacade(scope).First([&](Node* n) { return !n->IsHidden() && n->Name() == name; });
    if (found || strict)
        return found;
    return GetNodeNamed(node, rawName, exportTemplate, strict);
}

bool MarkupExportElement::CanBeExported(Node* node) const { return NodeExport(node).CanBeExported(); }

bool MarkupExportElement::IsExported(Node* node) const {
    if (!CanBeExported(node))
        return false;
    for (Node* up = node->Father(); up && !up->IsRoot(); up = up->Father())
        if (!NodeExport(up).CanExportChildren())
            return false;
    return true;
}

bool MarkupExportElement::AlreadyIncluded(Node* node, ExportTemplate* exportTemplate) const {
    return exportTemplate && exportTemplate->AlreadyIncluded(node);
}

void MarkupExportElement::Including(Node* node, ExportTemplate* exportTemplate) {
    if (exportTemplate)
        exportTemplate->Including(node);
}

Node* MarkupExportElement::Next(Node* node, Node* within) const {
    Node* end = within ? within->Sentinel() : nullptr;
    for (Node* at = node ? node->Next() : nullptr; at && at != end; at = at->Next()) {
        if (within && !at->IsDescendedFrom(within))
            return nullptr;
        if (CanBeExported(at))
            return at;
    }
    return nullptr;
}

Node* MarkupExportElement::Previous(Node* node, Node* within) const {
    for (Node* at = node ? node->Previous() : nullptr; at && at != within; at = at->Previous()) {
        if (within && !at->IsDescendedFrom(within))
            return nullptr;
        if (CanBeExported(at))
            return at;
    }
    return nullptr;
}

Node* MarkupExportElement::NextSibling(Node* node) const {
    for (Node* at = node ? node->Brother() : nullptr; at; at = at->Brother())
        if (CanBeExported(at))
            return at;
    return nullptr;
}

Node* MarkupExportElement::PrevSibling(Node* node) const {
    for (Node* at = node ? node->ElderBrother() : nullptr; at; at = at->ElderBrother())
        if (CanBeExported(at))
            return at;
    return nullptr;
}

bool MarkupExportElement::EncodeEntities(Node* node) const { return node ? node->GetBoolean("HTMLEntities") : true; }

bool MarkupExportElement::UsingEntities(ExportTemplate* exportTemplate) const {
    return exportTemplate && exportTemplate->UseEntities();
}

std::string MarkupExportElement::EntityFilter(const std::string& text, Node* node, ExportTemplate* exportTemplate) {
    if (!EncodeEntities(node))
        return text;
    if (!exportTemplate)
        return ExportTemplate::EncodeEntityText(text, false, false);
    std::string evaluated = EvaluateArgument(text, node, exportTemplate);
    if (!exportTemplate->UseEntities())
        return evaluated;
    bool quote = node && node->GetBoolean("HTMLQuoteHTML");
    return ExportTemplate::EncodeEntityText(evaluated, false, quote);
}

std::unique_ptr<ExportTemplate> MarkupExportElement::LoadExportTemplate(const std::string& rawName, Node* node,
                                                                        Node* current,
                                                                        ExportTemplate* exportTemplate) {
    if (Trim(rawName).empty())
        return LoadExportTemplate(node, exportTemplate);
    std::string name = EvaluateArgument(TrimQuotes(rawName), node, exportTemplate);
    Exporter* exporter = exportTemplate ? exportTemplate->GetExporter() : nullptr;
    std::unique_ptr<ExportTemplate> loaded = ExportTemplate::Named(name, node, exporter, exportTemplate);
    if (loaded && exportTemplate)
        loaded->SetLinkIndex(exportTemplate->GetLinkIndex());
    return loaded;
}

std::unique_ptr<ExportTemplate> MarkupExportElement::LoadExportTemplate(Node* node, ExportTemplate* exportTemplate) {
    if (!node)
        return nullptr;
    std::string name = node->GetString("HTMLExportTemplate");
    if (name.empty())
        return nullptr;
    return LoadExportTemplate(name, node, node, exportTemplate);
}

std::string MarkupExportElement::URLFor(Node* node, ExportTemplate* exportTemplate) {
    if (!exportTemplate)
        return std::string();
    return exportTemplate->URLFor(node, GetCurrentNode(exportTemplate));
}

// ---------------------------------------------------------------------------
// Intermediate kinds

Node* MarkupNodeRelative::GetNode(Node* node, ExportTemplate* exportTemplate, bool strict) {
    if (ArgCount() == 0)
        return node;
    return GetNodeNamed(node, Arg(0), exportTemplate, strict);
}

bool MarkupNodeRelative::Eval(Node* node, ExportTemplate* exportTemplate) {
    return GetNode(node, exportTemplate, true) != nullptr;
}

MarkupPredicate::MarkupPredicate(std::string name, std::string arguments)
    : MarkupExportElement(std::move(name), std::move(arguments)) {
    std::unique_ptr<ExportElement> tree = FromString(Trim(this->arguments));
    for (auto& child : tree->TakeChildren())
        Add(child.release());
}

std::string MarkupPredicate::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    return Eval(node, exportTemplate) ? " true " : " false ";
}

MarkupWithArgumentList::MarkupWithArgumentList(std::string name, std::string arguments)
    : MarkupExportElement(std::move(name), std::move(arguments)) {
    for (size_t i = 0; i < args.size(); ++i)
        Add(FromString(TrimQuotes(args[i])).release());
}

std::string MarkupWithArgumentList::Value(size_t i, Node* node, ExportTemplate* exportTemplate) {
    return i < children.size() ? children[i]->ExportValue(node, exportTemplate) : std::string();
}

std::string MarkupWithArgumentList::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    return Eval(node, exportTemplate) ? " true " : " false ";
}

MarkupList::MarkupList(std::string name, std::string arguments)
    : MarkupNodeRelative(std::move(name), std::move(arguments)) {
    for (size_t i = 0; i < 4; ++i) {
        parts[i] = i < args.size() ? TrimQuotes(args[i]) : std::string("default");
        if (i < args.size() && Trim(args[i]).empty())
            parts[i] = "default";
    }
}

std::string MarkupList::Part(size_t i, Node* node) const {
    static const char* const kAttributes[4] = {"HTMLListStart", "HTMLListItemStart", "HTMLListItemEnd",
                                               "HTMLListEnd"};
    if (parts[i] == "default")
        return node ? node->GetString(kAttributes[i]) : std::string();
    return parts[i];
}

std::string MarkupList::ExportLink(const std::string& url, const Link* link) const {
    std::string out = "<a href=\"" + url + "\"";
    if (link) {
        if (!link->Class().empty())
            out += " class=\"" + link->Class() + "\" ";
        if (!link->Title().empty())
            out += " title=\"" + link->Title() + "\"";
        if (!link->Target().empty())
            out += " target=\"" + link->Target() + "\"";
    }
    return out + ">";
}

NodeVector MarkupGroup::Choose(Node* node, ExportTemplate* exportTemplate) {
    if (!node)
        return NodeVector();
    MatchList scratch;
    MatchList& matches = exportTemplate ? GetMatchList(exportTemplate) : scratch;
    matches.CurrentThat(node);
    std::string designator = EvaluateArgument(TrimQuotes(Arg(0)), node, exportTemplate);
    return HTExportPath(designator).All(node, matches);
}

MarkupFilter::MarkupFilter(std::string name, std::string arguments, std::unique_ptr<Transformer> transformer)
    : MarkupExportElement(std::move(name), std::move(arguments)), transformer(std::move(transformer)) {}

MarkupFilter::~MarkupFilter() = default;

std::string MarkupFilter::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    std::string value = EvaluateArgument(TrimQuotes(Arg(0)), node, exportTemplate);
    return transformer ? transformer->Transform(value) : value;
}

bool MarkupFilter::Eval(Node* node, ExportTemplate* exportTemplate) {
    return !ExportValue(node, exportTemplate).empty();
}
