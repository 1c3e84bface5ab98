#include "Action.h"

#include <algorithm>

#include "AgentActionExpressionParser.h"
#include "AgentActionParser.h"
#include "ActionList.h"
#include "ArgList.h"
#include "Log.h"
#include "Node.h"
#include "NodeFacade.h"
#include "Parser.h"

// ---------------------------------------------------------------------------
// Statements

AAIf::AAIf(AAValuePtr conditionValue, std::unique_ptr<Action> thenAction, std::unique_ptr<Action> elseAction)
    : condition(std::move(conditionValue)), thenBranch(std::move(thenAction)), elseBranch(std::move(elseAction)) {}

AAIf::~AAIf() = default;

AAEach::AAEach(AAValuePtr receiverValue, std::string variableName, std::unique_ptr<Action> bodyAction)
    : receiver(std::move(receiverValue)), variable(std::move(variableName)), body(std::move(bodyAction)) {}

AAEach::~AAEach() = default;

void AATokenList::Parse(const std::string& text) {
    ActionList statements(text, ';', false);
    for (const std::string& statement : statements.GetList()) {
        if (AATokenPtr token = AgentActionParser::Parse(statement))
            tokens.push_back(std::move(token));
    }
}

bool AATokenList::IsValid(const Node* note) const {
    if (tokens.empty())
        return false;
    for (const AATokenPtr& token : tokens)
        if (!token->IsValid(note))
            return false;
    return true;
}

void AATokenList::Apply(Node* note, MatchList& matches, const std::atomic<bool>& deleted) const {
    StChanges changes(note ? note->GetHypertext() : nullptr);
    // A statement may delete the note the action runs on (`delete(this)`, or
    // a container of it): the rest of the action is then not run on it.
    bool wasHidden = note && note->IsHidden();
    for (const AATokenPtr& token : tokens) {
        try {
            token->Apply(note, matches);
        } catch (const ActionDeletedException&) {
            return;
        }
        if (deleted.load(std::memory_order_relaxed))
            return;
        if (note && !wasHidden && note->IsHidden())
            return;
    }
}

// ---------------------------------------------------------------------------
// Actions

const char* const Action::kTrue = "true";
const char* const Action::kFalse = "";

std::atomic<long> AgentAction::sCount{0};

Action::~Action() = default;

AgentAction::AgentAction(const std::string& source) : text(source) {
    ++sCount;
    Parse();
}

AgentAction::~AgentAction() {
    deleted = true;
    tokens.DeleteTokens();
    --sCount;
}

void AgentAction::Apply(Node* note, MatchList& matches) const {
    struct StRunning {
        std::atomic<int>& count;
        explicit StRunning(std::atomic<int>& c) : count(c) { count.fetch_add(1, std::memory_order_acq_rel); }
        ~StRunning() { count.fetch_sub(1, std::memory_order_acq_rel); }
    } runningNow(running);
    tokens.Apply(note, matches, deleted);
}

void AgentAction::Parse() {
    // Bodies of `if` and `.each` are actions of their own; a limit on the
    // nesting keeps hostile text from exhausting the stack.
    StParseNesting nesting(text.size());
    if (nesting.TooDeep()) {
        LogFormat("Action code nested too deeply (more than %d levels or %zu bytes)",
                  AgentActionExpressionParser::kMaxNesting, StParseNesting::kMaxNestedText);
        return;
    }
    tokens.Parse(text);
}

std::unique_ptr<Action> Action::Create(const std::string& text) {
    if (text.empty())
        return std::make_unique<NoAction>();
    return std::make_unique<AgentAction>(text);
}

void Action::Do(Node* note, MatchList& matches, const std::string& text) {
    std::unique_ptr<Action> action = Create(text);
    action->Apply(note, matches);
}

void Action::Do(Node* note, const std::string& text) {
    MatchList matches;
    Do(note, matches, text);
}

ActionResult Action::EvaluateAction(Node* note, const std::string& text, MatchList& matches, bool caseSensitive) {
    AAValuePtr tree = ParseExpression(text, caseSensitive);
    if (!tree)
        return ActionResult("syntax error: " + text);
    return AAValue::ComputeValue(tree.get(), note, matches);
}

ActionResult Action::EvaluateAction(Node* note, const std::string& text) {
    MatchList matches;
    return EvaluateAction(note, text, matches, true);
}

std::string Action::Evaluate(Node* note, const std::string& text, MatchList& matches, bool caseSensitive) {
    return EvaluateAction(note, text, matches, caseSensitive).AsString();
}

std::string Action::Evaluate(Node* note, const std::string& text) {
    MatchList matches;
    matches.CurrentThat(note);
    return Evaluate(note, text, matches, true);
}

bool Action::IsValidAction(const std::string& text, Node* note) {
    AgentAction action(text);
    return action.IsValid(note);
}

AAValuePtr Action::ParseExpression(const std::string& text, bool caseSensitive) {
    return AgentActionExpressionParser::Parse(text, caseSensitive);
}

AATokenPtr Action::CreateExpressionEvaluator(AAValuePtr expression) {
    return std::make_unique<AAExpressionToken>(std::move(expression));
}

AATokenPtr Action::CreateAssign(const std::string& left, const std::string& right) {
    auto assign = std::make_unique<AAAssign>(left, ParseExpression(right));
    // "+=": the "+" stays on the left text; the sum of the attribute (the
    // left without "+" and without a designator) and the right side is
    // computed on each target.
    std::string head = Parser::Trim(left);
    if (head.size() > 1 && head.back() == '+') {
        head.pop_back();
        // A bare name reads a variable before an attribute, as on the right.
        std::string name = Parser::Trim(head);
        size_t cut = name.find_first_of("([.:", 1);
        if (cut != std::string::npos)
            name.erase(cut);
        assign->SetIncrement(ParseExpression(name + "+(" + right + ")"));
    }
    return assign;
}

AATokenPtr Action::CreateOrAssign(const std::string& left, const std::string& right) {
    return std::make_unique<AAOrAssign>(left, ParseExpression(right));
}

AATokenPtr Action::CreateAndAssign(const std::string& left, const std::string& right) {
    return std::make_unique<AAAndAssign>(left, ParseExpression(right));
}

AATokenPtr Action::CreateVar(const std::string& names) {
    std::vector<AAVars::Variable> variables;
    ArgList items(names, ',', false);
    for (const std::string& item : items.GetList()) {
        size_t paren = item.find('(');
        if (paren == std::string::npos) {
            variables.emplace_back(item, nullptr);
        } else {
            std::string name = Parser::Trim(item.substr(0, paren));
            variables.emplace_back(name, ParseExpression(Parser::TrimParens(item.substr(paren))));
        }
    }
    return std::make_unique<AAVars>(std::move(variables));
}

AATokenPtr Action::CreateVar(const std::string& name, const std::string& expression) {
    std::vector<AAVars::Variable> variables;
    variables.emplace_back(name, ParseExpression(expression));
    return std::make_unique<AAVars>(std::move(variables));
}

AATokenPtr Action::CreateIf(const std::string& condition, const std::string& thenText, const std::string& elseText) {
    return std::make_unique<AAIf>(ParseExpression(condition), Create(thenText), Create(elseText));
}

AATokenPtr Action::CreateEach(AAValuePtr receiver, const std::string& variable, std::unique_ptr<Action> body) {
    return std::make_unique<AAEach>(std::move(receiver), variable, std::move(body));
}

namespace {

std::vector<std::string> StartingWith(const std::vector<std::string>& names, const std::string& prefix) {
    std::vector<std::string> found;
    for (const std::string& name : names) {
        if (name.compare(0, prefix.size(), prefix) == 0)
            found.push_back(name);
    }
    return found;
}

}  // namespace

std::vector<std::string> Action::OperatorsStartingWith(const std::string& prefix) {
    return StartingWith(AgentActionParser::Operators(), prefix);
}

std::vector<std::string> Action::DotOperatorsStartingWith(const std::string& prefix) {
    return StartingWith(AgentActionParser::DotOperators(), prefix);
}

bool Action::OperatorTakesDesignator(const std::string& name) {
    const std::vector<std::string>& names = AgentActionParser::OperatorsTakingDesignator();
    return std::find(names.begin(), names.end(), name) != names.end();
}
