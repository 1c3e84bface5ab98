#include "MarkupInclude.h"

#include <cstdlib>
#include <sstream>

#include "ExportTemplate.h"
#include "Node.h"
#include "NodeExport.h"
#include "NodeFinder.h"

namespace {

std::string CircularInclude(const std::string& name, const std::string& templateName) {
    return "^include(" + name + "," + templateName + "):: circular include";
}

}  // namespace

MarkupIncludeChildrenHere::MarkupIncludeChildrenHere(std::string name, std::string arguments, bool justChildren)
    : MarkupExportElement(std::move(name), std::move(arguments)), justChildren(justChildren) {
    templateName = TrimQuotes(Arg(0));
    if (ArgCount() > 1 && !Trim(Arg(1)).empty())
        limit = std::atol(TrimQuotes(Arg(1)).c_str());
}

bool MarkupIncludeChildrenHere::Eval(Node* node, ExportTemplate*) {
    return node && node->GetOriginal()->Son() != nullptr;
}

std::string MarkupIncludeChildrenHere::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    if (!node)
        return std::string();
    Node* original = node->GetOriginal();
    if (!original->Son())
        return std::string();
    std::unique_ptr<ExportTemplate> named;
    if (!templateName.empty()) {
        named = LoadExportTemplate(templateName, node, node, exportTemplate);
        if (!named || !named->IsValid())
            return std::string();
    }
    std::string result;
    long count = 0;
    for (Node* at = original->Son(); at;
         at = justChildren ? NextSibling(at) : Next(at, original)) {
        if (AlreadyIncluded(at, exportTemplate) || AlreadyIncluded(at->GetOriginal(), exportTemplate))
            return CircularInclude(at->Name(), named ? named->GetName() : std::string());
        NodeExport facade(at);
        if (!facade.IsExportable() || !facade.CanBeExported())
            continue;
        Including(at, exportTemplate);
        ExportTemplate* use = named.get();
        std::unique_ptr<ExportTemplate> own;
        if (!use) {
            own = LoadExportTemplate(at, exportTemplate);
            use = own.get();
        }
        if (use && use->IsValid()) {
            result += use->GetRoot()->ExportValue(at, use);
            if (++count == limit)
                break;
        }
    }
    return result;
}

MarkupInclude::MarkupInclude(std::string name, std::string arguments)
    : MarkupExportElement(std::move(name), std::move(arguments)) {
    if (ArgCount() < 2) {
        list = Trim(this->arguments);
    } else {
        list = Arg(0);
        templateName = Arg(1);
    }
}

NodeVector MarkupInclude::ChosenNodes(Node* node, ExportTemplate* exportTemplate) {
    NodeVector chosen;
    std::string names = EvaluateArgument(TrimQuotes(list), node, exportTemplate);
    size_t start = 0;
    while (start <= names.size()) {
        size_t end = names.find(';', start);
        std::string item = names.substr(start, end == std::string::npos ? std::string::npos : end - start);
        start = end == std::string::npos ? names.size() + 1 : end + 1;
        if (Trim(item).empty())
            continue;
        Node* found = GetNodeNamed(node, Trim(item), exportTemplate, true);
        if (found && !found->IsHidden())
            chosen.push_back(found);
    }
    return chosen;
}

std::string MarkupInclude::DoExport(Node* note, Node* current, ExportTemplate* exportTemplate) {
    if (!CanBeExported(note))
        return std::string();
    std::string shownTemplate = TrimQuotes(templateName);
    if (AlreadyIncluded(note, exportTemplate))
        return CircularInclude(note->Name(), shownTemplate);
    Including(note, exportTemplate);
    std::unique_ptr<ExportTemplate> loaded = LoadExportTemplate(templateName, note, current, exportTemplate);
    if (!loaded || !loaded->IsValid())
        return "^include(" + TrimQuotes(list) + "," + shownTemplate +
               ")::template not found, or template includes itself";
    std::ostringstream stream;
    loaded->Export(stream, note, exportTemplate ? exportTemplate->ExportingNode() : current);
    return stream.str();
}

std::string MarkupInclude::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    std::string result;
    for (Node* note : ChosenNodes(node, exportTemplate))
        result += DoExport(note, node, exportTemplate);
    return result;
}

std::string MarkupRandomChild::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    std::string name = EvaluateArgument(TrimQuotes(Arg(0)), node, exportTemplate);
    Node* named = NodeFinder(node).FindNodeNamed(name);
    if (!named)
        return std::string();
    Node* chosen = named;
    if (named->Son()) {
        double k = static_cast<double>(named->ChildCount()) * std::rand() / 2147483647.0;
        chosen = named->Son();
        while (k > 1 && chosen->Brother()) {
            chosen = chosen->Brother();
            k -= 1;
        }
    }
    if (ArgCount() < 2)
        return EntityFilter(chosen->Name(), chosen, exportTemplate);
    if (AlreadyIncluded(chosen, exportTemplate))
        return CircularInclude(chosen->Name(), TrimQuotes(Arg(1)));
    Including(chosen, exportTemplate);
    std::unique_ptr<ExportTemplate> loaded = LoadExportTemplate(Arg(1), chosen, node, exportTemplate);
    if (!loaded || !loaded->IsValid())
        return std::string();
    return loaded->GetRoot()->ExportValue(chosen, loaded.get());
}

std::string MarkupStretchtext::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    if (ArgCount() < 2 || Trim(Arg(1)).empty())
        return std::string();
    return EvaluateArgument(TrimQuotes(Arg(0)), node, exportTemplate);
}
