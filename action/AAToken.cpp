#include "AAToken.h"

#include "AACreate.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "AttributeToken.h"
#include "Action.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeFacade.h"
#include "Parser.h"

AAToken::~AAToken() { dead.store(true, std::memory_order_relaxed); }

// ---------------------------------------------------------------------------
// Bare expressions

void AAExpressionToken::Apply(Node* note, MatchList& matches) const {
    // The expression's side effects are the point of the statement; a
    // result that names one of the document's stamps applies that stamp.
    std::string result = AAValue::ComputeValue(expression.get(), note, matches).AsString();
    if (!result.empty() && note && !note->IsHidden())
        ApplyStamp(note, result);
}

bool AAExpressionToken::IsValid(const Node* note) const { return expression && expression->IsValid(note); }

// ---------------------------------------------------------------------------
// Assignments

bool AAAssign::IsValid(const Node* note) const { return right && right->IsValid(note); }

void AAAssign::Apply(Node* note, MatchList& matches) const {
    std::string leftText = left;
    if (increment) {
        leftText = Parser::Trim(left);
        leftText.pop_back();
    }
    AttributeToken token(leftText, note, matches);
    if (token.Name() == "attribute") {
        if (right)
            right->DoAssign(note, note, token, matches);
        return;
    }
    for (Node* target : token.TargetsFor(note, matches))
        ApplyTo(target, note, token, matches);
}

void AAAssign::ApplyTo(Node* target, Node* source, const AttributeToken& token, MatchList& matches) const {
    if (!right || !target)
        return;
    // A sum is computed where the value it adds to lives.
    const AAValue* value = increment ? increment.get() : right.get();
    if (increment)
        source = target;
    const std::string& name = token.Name();
    AttributeInfo info(target);
    if (info.HasAttribute(name) && info.AttributeIsReadOnly(name) && !matches.HasBinding(name) &&
        left.find("compositeFor") == std::string::npos && left.find("my") == std::string::npos &&
        left.find("compositeWithName") == std::string::npos)
        return;
    value->DoAssign(target, source, token, matches);
    if (IsDead())
        throw ActionDeletedException();
}

void AAOrAssign::ApplyTo(Node* target, Node* source, const AttributeToken& token, MatchList& matches) const {
    if (target && !NodeFacade(target).GetBoolean(token.Name()))
        AAAssign::ApplyTo(target, source, token, matches);
}

void AAAndAssign::ApplyTo(Node* target, Node* source, const AttributeToken& token, MatchList& matches) const {
    if (target && NodeFacade(target).GetBoolean(token.Name()))
        AAAssign::ApplyTo(target, source, token, matches);
}

// ---------------------------------------------------------------------------
// var

void AAVars::Apply(Node* note, MatchList& matches) const {
    for (const auto& [name, expression] : variables) {
        if (!expression) {
            matches.Bind(name, "", AttributeType::kNone);
            continue;
        }
        int type = expression->ResultType(note, matches);
        matches.Bind(name, AAValue::ComputeValue(expression.get(), note, matches).AsString(), type);
    }
}

// ---------------------------------------------------------------------------
// if and .each

bool AAIf::IsValid(const Node* note) const {
    return condition && condition->IsValid(note) && thenBranch && thenBranch->IsValid(note);
}

void AAIf::Apply(Node* note, MatchList& matches) const {
    if (AAValue::ComputeValue(condition.get(), note, matches).IsFalse()) {
        if (elseBranch)
            elseBranch->Apply(note, matches);
    } else if (thenBranch) {
        thenBranch->Apply(note, matches);
    }
}

bool AAEach::IsValid(const Node* note) const { return receiver && receiver->IsValid(note) && body; }

void AAEach::Apply(Node* note, MatchList& matches) const {
    ArgList items(AAValue::ComputeValue(receiver.get(), note, matches).AsString(), ';', false);
    MatchList saved = matches;
    for (const std::string& item : items.GetList()) {
        matches.Bind(variable, item, -1);
        body->Apply(note, matches);
        matches.RestoreClosure(saved);
        if (IsDead())
            return;
    }
}
