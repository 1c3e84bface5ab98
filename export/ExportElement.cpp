#include "ExportElement.h"

#include <cctype>
#include <ostream>

#include "AAValue.h"
#include "Action.h"
#include "Attribute.h"
#include "ActionResult.h"
#include "ExportTemplate.h"
#include "HTPath.h"
#include "MarkupExportElement.h"
#include "MatchList.h"
#include "Node.h"

std::atomic<long> ExportElement::sLive{0};

ExportElement::ExportElement() { ++sLive; }
ExportElement::~ExportElement() { --sLive; }

std::atomic<int>& ExportElement::EvaluationNesting() {
    static std::atomic<int> nesting{0};
    return nesting;
}

void ExportElement::Apply(const std::function<void(ExportElement*)>& block) const {
    for (const auto& child : children)
        block(child.get());
}

void ExportElement::Add(ExportElement* child) {
    if (child)
        children.emplace_back(child);
}

bool ExportElement::HasElse() const { return !children.empty() && children.back()->IsElse(); }

bool ExportElement::Eval(Node* node, ExportTemplate* exportTemplate) {
    return children.empty() ? true : children.front()->Eval(node, exportTemplate);
}

int ExportElement::Export(std::ostream& stream, Node* node, ExportTemplate* exportTemplate, ExportView* view) {
    for (const auto& child : children)
        if (int code = child->Export(stream, node, exportTemplate, view))
            return code;
    return 0;
}

std::string ExportElement::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    std::string result;
    for (const auto& child : children)
        result += child->ExportValue(node, exportTemplate);
    return result;
}

std::string ExportElement::NSExportValue(Node* node, ExportTemplate* exportTemplate) {
    return Trim(ExportValue(node, exportTemplate));
}

double ExportElement::AsNumber(Node* node, ExportTemplate* exportTemplate) {
    for (const auto& child : children)
        if (double n = child->AsNumber(node, exportTemplate); n != 0.0)
            return n;
    return 0.0;
}

void ExportElement::AddTrueClause(ExportElement* clause) { Add(clause); }
void ExportElement::AddFalseClause(ExportElement* clause) { Add(clause); }

MatchList& ExportElement::GetMatchList(ExportTemplate* exportTemplate) {
    MatchList& matches = exportTemplate->Matches();
    matches.CurrentExport(exportTemplate->ExportingNode());
    return matches;
}

std::string ExportElement::Trim(const std::string& text) {
    size_t start = 0, end = text.size();
    while (start < end && std::isspace(static_cast<unsigned char>(text[start])))
        ++start;
    while (end > start && std::isspace(static_cast<unsigned char>(text[end - 1])))
        --end;
    return text.substr(start, end - start);
}

std::string ExportElement::AttributeName(const std::string& text) {
    std::string name = Trim(text);
    if (!name.empty() && name[0] == '$')
        name.erase(0, 1);
    return name;
}

namespace {

// Template text parsed while parsing other template text (the arguments of
// ^if^ and of predicates): bounded, so that arguments nested without end
// cannot exhaust the stack.
thread_local int tParseNesting = 0;
constexpr int kMaxParseNesting = 100;

}  // namespace

std::unique_ptr<ExportElement> ExportElement::FromString(const std::string& text) {
    auto root = std::make_unique<ExportElement>();
    if (tParseNesting >= kMaxParseNesting) {
        root->Add(new LiteralElement(text));
        return root;
    }
    ++tParseNesting;
    TemplateReader reader(text);
    reader.ReadInto(root.get(), false, 0);
    --tParseNesting;
    return root;
}

// ---------------------------------------------------------------------------
// LiteralElement

bool LiteralElement::Eval(Node* node, ExportTemplate* exportTemplate) {
    if (const Attribute* attribute = node ? node->GetAttribute(text) : nullptr; attribute && attribute->IsValid())
        return node->GetBoolean(text);
    if (text.empty())
        return false;
    if (HTPath().IsDesignator(text)) {
        MatchList scratch;
        MatchList& matches = exportTemplate ? GetMatchList(exportTemplate) : scratch;
        return HTPath::Get(node, text, matches) != nullptr;
    }
    if (node) {
        try {
            if (AAValuePtr tree = Action::ParseExpression(text, true)) {
                MatchList scratch;
                MatchList& matches = exportTemplate ? GetMatchList(exportTemplate) : scratch;
                matches.CurrentThat(node);
                return ActionResult(AAValue::ComputeValue(tree.get(), node, matches).AsString()).IsTrue();
            }
        } catch (const ActionDeletedException&) {
            throw;
        } catch (...) {
            // A condition that is no code goes on to the last rule.
        }
    }
    for (char c : text)
        if (!std::isspace(static_cast<unsigned char>(c)))
            return true;
    return false;
}

std::string LiteralElement::ExportValue(Node*, ExportTemplate*) { return text; }

int LiteralElement::Export(std::ostream& stream, Node* node, ExportTemplate* exportTemplate, ExportView* view) {
    if (view)
        view->Exported(this, text);
    stream << text;
    return 0;
}

// ---------------------------------------------------------------------------
// TemplateReader

namespace {

bool IsBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }
bool IsNameChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

}  // namespace

std::string TemplateReader::ReadLiteral() {
    std::string run;
    while (at < text.size()) {
        char c = text[at];
        if (c != '^') {
            run += c;
            ++at;
            continue;
        }
        if (at + 1 < text.size() && text[at + 1] == '^') {
            // "^^" stands for one caret and goes on with the run.
            run += '^';
            at += 2;
            continue;
        }
        if (at + 1 < text.size() && IsBlank(text[at + 1])) {
            // A caret before a blank vanishes with the blank.
            at += 2;
            continue;
        }
        break;
    }
    return run;
}

bool TemplateReader::ReadParenthesised(std::string& arguments) {
    arguments.clear();
    int depth = 1;
    char quote = 0;
    while (at < text.size()) {
        char c = text[at++];
        if (c == '\\') {
            arguments += c;
            if (at < text.size())
                arguments += text[at++];
            continue;
        }
        if (quote) {
            if (c == quote)
                quote = 0;
            arguments += c;
            continue;
        }
        if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '(') {
            ++depth;
        } else if (c == ')') {
            if (--depth == 0)
                return true;
        }
        arguments += c;
    }
    error = "unclosed parenthesis";
    arguments.clear();
    return false;
}

ExportElement* TemplateReader::ReadElement(int depth) {
    // The caret itself has been consumed.
    while (at < text.size() && IsBlank(text[at]))
        ++at;
    std::string name;
    while (at < text.size() && IsNameChar(text[at]))
        name += static_cast<char>(std::tolower(static_cast<unsigned char>(text[at++])));
    if (at < text.size() && text[at] == '^')
        ++at;
    std::string arguments;
    bool hasArguments = false;
    if (at < text.size() && text[at] == '(' && name != "else") {
        ++at;
        hasArguments = ReadParenthesised(arguments) && !arguments.empty();
        if (at < text.size() && text[at] == '^')
            ++at;
    }
    return MarkupExportElement::Create(name, arguments, hasArguments, *this, depth);
}

ExportElement* TemplateReader::ReadInto(ExportElement* parent, bool inBlock, int depth) {
    while (at < text.size()) {
        std::string run = ReadLiteral();
        if (!run.empty())
            parent->Add(new LiteralElement(run));
        if (at >= text.size())
            break;
        ++at;  // the caret of an element
        ExportElement* element = ReadElement(depth);
        parent->Add(element);
        if (inBlock && element && (element->IsElse() || element->IsEndif()))
            return element;
    }
    return nullptr;
}

void TemplateReader::ReadIf(ExportElement* ifElement, int depth) {
    auto trueClause = std::make_unique<ExportElement>();
    ExportElement* end = ReadInto(trueClause.get(), true, depth + 1);
    ifElement->AddTrueClause(trueClause.release());
    if (end && end->IsElse()) {
        auto falseClause = std::make_unique<ExportElement>();
        ReadInto(falseClause.get(), true, depth + 1);
        ifElement->AddFalseClause(falseClause.release());
    }
}
