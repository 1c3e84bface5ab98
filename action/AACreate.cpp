#include "AACreate.h"

#include "AAArguments.h"
#include "Action.h"
#include "AttributeType.h"
#include "CommandTrust.h"
#include "HTPath.h"
#include "Hooks.h"
#include "KindNode.h"
#include "Log.h"
#include "MatchList.h"
#include "NamedCodeList.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "Parser.h"

using Type = AttributeType;

namespace {

thread_local int gNesting = 0;

// The note the first argument of a two-argument form names; with one
// argument the note itself. `rest` is the argument that follows it.
Node* TargetAndRest(const AAValue* first, Node* note, MatchList& matches, const AAValue*& rest) {
    if (first && first->GetNextArgument()) {
        rest = first->GetNextArgument();
        std::string designator = Parser::TrimQuotes(first->Token());
        return designator.empty() ? note : HTPath::Get(note, designator, matches);
    }
    rest = first;
    return note;
}

// The text of a path argument, with the name behind it when one is given.
std::string PathAndName(const AAValue* first, Node* note, MatchList& matches) {
    std::string path = Parser::TrimQuotes(ArgumentText(first, note, matches));
    if (const AAValue* name = NthArgument(first, 1))
        path += "/" + Parser::TrimQuotes(ArgumentText(name, note, matches));
    return path;
}

// Finds or makes each step of a "/"-separated path, from the root for an
// absolute path and from the note otherwise. With `asAgent` a last step
// that has to be made is made as an agent.
Node* CreatePath(Node* note, const std::string& path, bool asAgent = false) {
    if (!note || path.empty())
        return nullptr;
    Node* at = path[0] == '/' ? nullptr : note;
    NodeMaker maker(note);
    size_t start = path[0] == '/' ? 1 : 0;
    Node* made = nullptr;
    while (start <= path.size()) {
        size_t end = path.find('/', start);
        std::string step = path.substr(start, end == std::string::npos ? std::string::npos : end - start);
        start = end == std::string::npos ? path.size() + 1 : end + 1;
        if (step.empty())
            continue;
        Node* parent = at ? at : note->Root();
        Node* found = nullptr;
        for (Node* child = parent->Son(); child; child = child->Brother())
            if (!child->IsHidden() && child->Name() == step) {
                found = child;
                break;
            }
        if (!found && asAgent && start > path.size()) {
            found = KindNode::CreateForReading(KindNode::Kind::kAgent, parent, nullptr);
            if (found) {
                found->SetName(step);
                found->Initialize();
            }
        }
        if (!found)
            found = maker.Make(step, at, nullptr);
        at = made = found;
    }
    return made;
}

}  // namespace

StNestedCode::StNestedCode() { ++gNesting; }
StNestedCode::~StNestedCode() { --gNesting; }

bool StNestedCode::TooDeep() const {
    if (gNesting <= kMaxNesting)
        return false;
    // One line for the whole runaway: only the call that crosses the limit
    // reports it.
    if (gNesting == kMaxNesting + 1)
        LogLine("action code nested too deeply (eval, action or do calling itself); stopped");
    return true;
}

// ---------------------------------------------------------------------------
// Running code

ActionResult AAEval::ActionValue(Node* note, MatchList& matches) const {
    StNestedCode nesting;
    if (nesting.TooDeep())
        return ActionResult(std::string());
    const AAValue* expression = nullptr;
    Node* target = TargetAndRest(operand.get(), note, matches, expression);
    if (!target || !expression)
        return ActionResult(std::string());
    std::string code = ArgumentText(expression, target, matches);
    AAValuePtr tree = Action::ParseExpression(code, true);
    if (!tree)
        return ActionResult(std::string());
    return ComputeValue(tree.get(), target, matches);
}

int AAEval::ResultType(Node*, MatchList&) const { return Type::kNone; }

ActionResult AAAction::ActionValue(Node* note, MatchList& matches) const {
    StNestedCode nesting;
    if (nesting.TooDeep())
        return ActionResult(std::string());
    const AAValue* code = nullptr;
    Node* target = TargetAndRest(operand.get(), note, matches, code);
    if (!target)
        return kFalseResult();
    Action::Do(target, matches, ArgumentText(code, target, matches));
    return kTrueResult();
}

int AAAction::ResultType(Node*, MatchList&) const { return Type::kBoolean; }

ActionResult AAShellValue::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* command = operand.get();
    std::string text = ArgumentText(command, note, matches);
    if (text.empty())
        return kFalseResult();
    std::string input = ArgumentText(NthArgument(command, 1), note, matches);
    const AAValue* directory = NthArgument(command, 2);
    std::string folder = directory ? ArgumentText(directory, note, matches) : std::string("~");
    return ActionResult(CommandTrust::Run(note, text, input, folder));
}

int AAShellValue::ResultType(Node*, MatchList&) const { return Type::kString; }

// ---------------------------------------------------------------------------
// Making notes

ActionResult AACreate::ActionValue(Node* note, MatchList& matches) const {
    Node* made = CreatePath(note, PathAndName(operand.get(), note, matches));
    return made ? ActionResult(NodeVector{made}) : ActionResult(std::string());
}

ActionResult AACreateAgent::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* first = operand.get();
    std::string path = Parser::TrimQuotes(ArgumentText(first, note, matches));
    const AAValue* query = NthArgument(first, 1);
    Node* made = CreatePath(note, path, true);
    if (!made)
        return ActionResult(std::string());
    if (query)
        made->Set("AgentQuery", ArgumentText(query, note, matches));
    return ActionResult(NodeVector{made});
}

ActionResult AADelete::ActionValue(Node* note, MatchList& matches) const {
    std::string path = PathAndName(operand.get(), note, matches);
    if (!note || path.empty())
        return kFalseResult();
    // Notes are deleted as the user deletes them: out of the tree and the
    // index, kept alive until the document ends. Code that is running on a
    // deleted note (its own rule, an agent's action, the statements after
    // this call) thus never meets freed memory; the statement loop ends when
    // its note goes (see AATokenList::Apply).
    bool deleted = false;
    for (Node* target : HTPath::All(note, path, matches)) {
        if (!target || target == target->Root() || target->IsHidden() || target->Invalid())
            continue;
        NodeDeleter(target).Hide(true);
        deleted = deleted || target->IsHidden();
    }
    return deleted ? kTrueResult() : kFalseResult();
}

bool ApplyStamp(Node* note, const std::string& name) {
    if (!note || note->IsHidden())
        return false;
    // Most documents have no stamps: every bare statement asks, so that
    // answer comes without making the list.
    Hypertext* document = note->GetHypertext();
    if (!document || (!document->CarriedSection("stamps") && !document->CarriedSection("menu")))
        return false;
    NamedCodeList* stamps = NamedCodeList::Stamps(document);
    std::optional<std::string> code = stamps ? stamps->Find(name) : std::nullopt;
    if (!code)
        return false;
    // A stamp may name itself, or another stamp that names it.
    StNestedCode nesting;
    if (nesting.TooDeep())
        return false;
    Action::Do(note, *code);
    return true;
}

ActionResult AAStamp::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* first = operand.get();
    const AAValue* nameArgument = first ? first->GetNextArgument() : nullptr;
    NodeVector targets;
    if (nameArgument) {
        std::string designator = Parser::TrimQuotes(ArgumentText(first, note, matches));
        targets = HTPath::All(note, designator, matches);
    } else {
        nameArgument = first;
        targets.push_back(note);
    }
    std::string name = Parser::TrimQuotes(ArgumentText(nameArgument, note, matches));
    if (name.empty())
        return kFalseResult();
    bool applied = false;
    for (Node* target : targets)
        applied = ApplyStamp(target, name) || applied;
    return applied ? kTrueResult() : kFalseResult();
}

ActionResult AAMacro::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* first = operand.get();
    std::string name = Parser::TrimQuotes(ArgumentText(first, note, matches));
    std::vector<std::string> arguments;
    for (const AAValue* argument = first ? first->GetNextArgument() : nullptr; argument;
         argument = argument->GetNextArgument())
        arguments.push_back(ArgumentText(argument, note, matches));
    NamedCodeList* macros = note ? NamedCodeList::Macros(note->GetHypertext()) : nullptr;
    std::optional<std::string> code = macros ? macros->Find(name) : std::nullopt;
    if (!code)
        return ActionResult(std::string());
    StNestedCode nesting;
    if (nesting.TooDeep())
        return ActionResult(std::string());
    std::string text = NamedCodeList::Substitute(*code, arguments);
    // A macro of one expression answers its value; one of statements is run
    // on the note and answers true.
    AgentAction action(text);
    const auto& tokens = action.Tokens().Tokens();
    if (tokens.size() == 1 && dynamic_cast<const AAExpressionToken*>(tokens.front().get())) {
        // Read as an expression, as eval reads its text.
        AAValuePtr expression = Action::ParseExpression(text, true);
        return expression ? ComputeValue(expression.get(), note, matches) : ActionResult(std::string());
    }
    if (tokens.empty())
        return ActionResult(std::string());
    action.Apply(note, matches);
    return kTrueResult();
}

ActionResult AAExport::ActionValue(Node* note, MatchList& matches) const {
    // exportedString(designator, template): the export layer expands the
    // note; an expansion that calls exportedString again counts as nested
    // code, so a template exporting itself ends.
    StNestedCode nesting;
    if (nesting.TooDeep())
        return ActionResult(std::string());
    const AAValue* rest = nullptr;
    Node* target = TargetAndRest(operand.get(), note, matches, rest);
    std::string templateName = rest ? Parser::TrimQuotes(ArgumentText(rest, note, matches)) : std::string();
    const auto& expand = GetHooks().exportedString;
    if (!target || !expand)
        return ActionResult(std::string());
    return ActionResult(expand(target, templateName));
}

// ---------------------------------------------------------------------------
// Platform services this system does not have

ActionResult AAPlay::ActionValue(Node* note, MatchList& matches) const {
    ArgumentText(operand.get(), note, matches);
    return kFalseResult();
}

ActionResult AANotify::ActionValue(Node* note, MatchList& matches) const {
    for (const AAValue* argument = operand.get(); argument; argument = argument->GetNextArgument())
        ArgumentText(argument, note, matches);
    return kFalseResult();
}

ActionResult AASpeak::ActionValue(Node* note, MatchList& matches) const {
    if (left)
        ComputeValue(left.get(), note, matches);
    for (const AAValue* argument = right.get(); argument; argument = argument->GetNextArgument())
        ArgumentText(argument, note, matches);
    return kFalseResult();
}
