#include "MarkupValue.h"

#include "AAType.h"
#include "Action.h"
#include "ExportActionQueue.h"
#include "ExportTemplate.h"
#include "Hypertext.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeExport.h"
#include "NodeFacade.h"
#include "STime.h"

// ---------------------------------------------------------------------------

std::string MarkupTitle::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    Node* target = GetNode(node, exportTemplate, false);
    if (!target)
        return std::string();
    std::string title = target->Name();
    if (EncodeEntities(target) && UsingEntities(exportTemplate))
        title = ExportTemplate::EncodeEntityText(title, false, false);
    return EntityFilter(title, target, exportTemplate);
}

bool MarkupTitle::Eval(Node* node, ExportTemplate* exportTemplate) {
    Node* target = GetNode(node, exportTemplate, false);
    return target && !target->Name().empty();
}

// ---------------------------------------------------------------------------

MarkupValue::MarkupValue(std::string name, std::string arguments)
    : MarkupExportElement(std::move(name), std::move(arguments)) {
    try {
        expression = Action::ParseExpression(this->arguments, true);
    } catch (...) {
        expression.reset();
    }
}

ActionResult MarkupValue::Compute(Node* node, ExportTemplate* exportTemplate) {
    if (!expression || !node)
        return ActionResult(std::string());
    MatchList scratch;
    MatchList& matches = exportTemplate ? GetMatchList(exportTemplate) : scratch;
    Node* savedThat = matches.CurrentThat();
    matches.CurrentThat(node);
    ActionResult result{std::string()};
    try {
        result = AAValue::ComputeValue(expression.get(), node, matches);
    } catch (const ActionDeletedException&) {
        result = ActionResult(std::string());
    }
    matches.CurrentThat(savedThat);
    return result;
}

std::string MarkupValue::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    return Compute(node, exportTemplate).AsString();
}

bool MarkupValue::Eval(Node* node, ExportTemplate* exportTemplate) { return Compute(node, exportTemplate).IsTrue(); }

std::string MarkupAction::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    if (!node)
        return std::string();
    MatchList scratch;
    MatchList& matches = exportTemplate ? GetMatchList(exportTemplate) : scratch;
    ExportActionQueue::Defer(node, matches, arguments);
    return std::string();
}

std::string MarkupDo::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    // Runs the named macro with the arguments through the action language's
    // do(), whose answer may hold further elements.
    if (!node || ArgCount() == 0)
        return std::string();
    std::string call = "do(";
    for (size_t i = 0; i < ArgCount(); ++i) {
        std::string item = TrimQuotes(Arg(i));
        std::string quoted = "\"";
        for (char c : item)
            quoted += c == '"' ? std::string("\\\"") : std::string(1, c);
        call += (i ? "," : "") + quoted + "\"";
    }
    call += ")";
    MatchList scratch;
    MatchList& matches = exportTemplate ? GetMatchList(exportTemplate) : scratch;
    std::string result = Action::Evaluate(node, call, matches, true);
    return EvaluateArgument(result, node, exportTemplate);
}

std::string MarkupDocumentTitle::ExportValue(Node* node, ExportTemplate*) {
    Hypertext* document = node ? node->GetHypertext() : nullptr;
    return document ? HypertextFacade(document).DocumentName() : std::string();
}

// ---------------------------------------------------------------------------

MarkupGetAttribute::MarkupGetAttribute(std::string name, std::string arguments, bool withNote)
    : MarkupExportElement(std::move(name), std::move(arguments)), withNote(withNote) {}

Node* MarkupGetAttribute::Target(Node* node, ExportTemplate* exportTemplate) {
    if (!withNote)
        return node;
    return GetNodeNamed(node, Arg(0), exportTemplate, true);
}

std::string MarkupGetAttribute::Attribute(Node* node, ExportTemplate* exportTemplate) const {
    if (withNote)
        return AttributeName(EvaluatedArg(1, node, exportTemplate));
    // With one argument the whole text is the name.
    if (ArgCount() < 2)
        return AttributeName(EvaluateArgument(TrimQuotes(arguments), node, exportTemplate));
    return AttributeName(EvaluatedArg(0, node, exportTemplate));
}

std::string MarkupGetAttribute::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    Node* target = Target(node, exportTemplate);
    if (!target)
        return std::string();
    size_t formatAt = withNote ? 2 : 1;
    std::string format = ArgCount() > formatAt ? EvaluatedArg(formatAt, node, exportTemplate) : "d M y t";
    std::string value = target->GetExportString(Attribute(node, exportTemplate), format);
    return EntityFilter(value, target, exportTemplate);
}

double MarkupGetAttribute::AsNumber(Node* node, ExportTemplate* exportTemplate) {
    Node* target = Target(node, exportTemplate);
    if (!target)
        return 0.0;
    STime date = target->GetDate(Attribute(node, exportTemplate));
    return date.IsNever() ? 0.0 : date.SecondsSince1970();
}

bool MarkupGetAttribute::Eval(Node* node, ExportTemplate* exportTemplate) {
    Node* target = Target(node, exportTemplate);
    return target && target->GetBoolean(Attribute(node, exportTemplate));
}

std::string MarkupVersion::ExportValue(Node*, ExportTemplate*) {
    std::string version = AAVersion::ProgramVersion();
    std::string part = TrimQuotes(arguments);
    size_t dot = version.find('.');
    if (part == "major")
        return version.substr(0, dot);
    if (part == "minor") {
        size_t next = version.find('.', dot + 1);
        return version.substr(dot + 1, next == std::string::npos ? std::string::npos : next - dot - 1);
    }
    return version;
}

// ---------------------------------------------------------------------------

MarkupDate::MarkupDate(std::string name, std::string arguments, std::string attribute)
    : MarkupExportElement(std::move(name), std::move(arguments)), attribute(std::move(attribute)) {}

STime MarkupDate::Date(Node* node, ExportTemplate* exportTemplate, std::string& format) {
    format = "l";
    if (attribute.empty()) {
        if (ArgCount() > 0 && !Trim(Arg(0)).empty())
            format = EvaluatedArg(0, node, exportTemplate);
        return STime::Now();
    }
    Node* target = node;
    if (ArgCount() >= 2) {
        target = GetNodeNamed(node, Arg(0), exportTemplate, true);
        if (!Trim(Arg(1)).empty())
            format = EvaluatedArg(1, node, exportTemplate);
    } else if (ArgCount() == 1 && !Trim(Arg(0)).empty()) {
        // One argument: a note when it names one, else the format.
        if (Node* named = GetNodeNamed(node, Arg(0), exportTemplate, true); named && named != node)
            target = named;
        else
            format = EvaluatedArg(0, node, exportTemplate);
    }
    if (!target)
        return STime::Never();
    return target->GetDate(attribute);
}

std::string MarkupDate::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    std::string format;
    STime date = Date(node, exportTemplate, format);
    if (date.IsNever() && !attribute.empty())
        return std::string();
    return date.AsExportString(format);
}

double MarkupDate::AsNumber(Node* node, ExportTemplate* exportTemplate) {
    std::string format;
    STime date = Date(node, exportTemplate, format);
    return date.IsNever() ? 0.0 : date.SecondsSince1970();
}

// ---------------------------------------------------------------------------

MarkupNoteInfo::MarkupNoteInfo(std::string name, std::string arguments, Kind kind)
    : MarkupNodeRelative(std::move(name), std::move(arguments)), kind(kind) {}

std::string MarkupNoteInfo::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    Node* target = GetNode(node, exportTemplate, true);
    if (!target || !exportTemplate)
        return kind == kCreator && target ? target->Creator() : std::string();
    switch (kind) {
    case kCreator: return target->Creator();
    case kFile: return exportTemplate->NameOfFile(target);
    case kPath: return exportTemplate->LinkURLFor(target);
    case kDirectory: {
        std::string file = exportTemplate->FileNameFor(target);
        size_t slash = file.rfind('/');
        return slash == std::string::npos ? std::string() : file.substr(0, slash + 1);
    }
    case kHost: return exportTemplate->HostFor(target);
    }
    return std::string();
}

std::string MarkupURL::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    Node* target = GetNode(node, exportTemplate, true);
    if (!target || !exportTemplate)
        return std::string();
    return exportTemplate->LinkURLFor(target, GetCurrentNode(exportTemplate) ? GetCurrentNode(exportTemplate) : node);
}

std::string MarkupRoot::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    if (exportTemplate && !exportTemplate->RootPath().empty())
        return exportTemplate->RootPath();
    Node* target = GetNode(node, exportTemplate, false);
    std::string up;
    for (Node* at = target ? target->Father() : nullptr; at && !at->IsRoot(); at = at->Father())
        up += "../";
    return up;
}

std::string MarkupSetRoot::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    if (exportTemplate)
        exportTemplate->RootPath(EvaluateArgument(TrimQuotes(arguments), node, exportTemplate));
    return std::string();
}

std::string MarkupSectionNumber::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    return NodeExport(GetNode(node, exportTemplate, false)).GetSectionNumber();
}

std::string MarkupIndent::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    std::string unit = ArgCount() > 0 && !Trim(Arg(0)).empty() ? EvaluatedArg(0, node, exportTemplate) : "\t";
    std::string expression = ArgCount() > 1 && !Trim(Arg(1)).empty() ? Trim(Arg(1)) : "$OutlineDepth-1";
    if (!node)
        return std::string();
    MatchList scratch;
    MatchList& matches = exportTemplate ? GetMatchList(exportTemplate) : scratch;
    matches.CurrentThat(node);
    double count = Action::EvaluateAction(node, expression, matches, true).AsDouble();
    if (count < 0 || count > 100)
        count = 0;
    std::string out;
    for (int i = 0; i < static_cast<int>(count); ++i)
        out += unit;
    return out;
}

std::string MarkupComment::ExportValue(Node*, ExportTemplate*) { return "<!-- " + arguments + " -->"; }
