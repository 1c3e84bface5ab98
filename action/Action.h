#pragma once
// Compiled action code. An action is a list of statements parsed once, when
// the action is made; `Action::Create` is the entry point for code that
// stands in attributes. The factory functions below build the statement
// nodes that the statement parser picks.
#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "AAToken.h"
#include "AAValue.h"
#include "MatchList.h"

class Node;

// Thrown by an assignment that finds its statement destroyed while it ran
// (a rule that rewrote its own text); the statement loop ends quietly.
// The one exception of ordinary flow.
class ActionDeletedException {};

// The statements of one action text, in order.
class AATokenList {
public:
    // Splits `text` into statements at ";" (not inside quotes, parentheses
    // or braces) and parses each; statements that parse to nothing are
    // left out.
    void Parse(const std::string& text);

    size_t size() const { return tokens.size(); }
    bool empty() const { return tokens.empty(); }
    const AAToken& at(size_t i) const { return *tokens[i]; }
    const std::vector<AATokenPtr>& Tokens() const { return tokens; }
    void DeleteTokens() { tokens.clear(); }

    // False for an empty list, otherwise whether every statement is valid.
    bool IsValid(const Node* note) const;
    // Applies the statements in order as one batch of changes. A statement
    // that finds itself destroyed ends the loop, and so does `deleted`
    // turning true: the rest of the statements no longer exist.
    void Apply(Node* note, MatchList& matches, const std::atomic<bool>& deleted) const;

private:
    std::vector<AATokenPtr> tokens;
};

class Action {
public:
    virtual ~Action();
    Action(const Action&) = delete;
    Action& operator=(const Action&) = delete;

    virtual const char* ClassName() const = 0;

    // `NoAction` for empty text, `AgentAction` otherwise.
    static std::unique_ptr<Action> Create(const std::string& text);

    virtual void Apply(Node* note, MatchList& matches) const = 0;
    virtual bool IsValid(const Node* note) const = 0;

    // Compiles the text, applies it to the note and deletes it.
    static void Do(Node* note, MatchList& matches, const std::string& text);
    static void Do(Node* note, const std::string& text);
    // The expression's result for the note; text that does not parse gives
    // "syntax error: " and the text.
    static ActionResult EvaluateAction(Node* note, const std::string& text, MatchList& matches, bool caseSensitive);
    static ActionResult EvaluateAction(Node* note, const std::string& text);
    static std::string Evaluate(Node* note, const std::string& text, MatchList& matches, bool caseSensitive);
    // With a fresh MatchList whose `that` is the note.
    static std::string Evaluate(Node* note, const std::string& text);
    static bool IsValidAction(const std::string& text, Node* note);

    // "true", and the empty text that stands for false.
    static const char* const kTrue;
    static const char* const kFalse;

    // One expression.
    static AAValuePtr ParseExpression(const std::string& text, bool caseSensitive = true);

    // Statement nodes.
    static AATokenPtr CreateExpressionEvaluator(AAValuePtr expression);
    static AATokenPtr CreateAssign(const std::string& left, const std::string& right);
    static AATokenPtr CreateOrAssign(const std::string& left, const std::string& right);
    static AATokenPtr CreateAndAssign(const std::string& left, const std::string& right);
    // `var a, b(3), c`: names split at ",", a name with "(" carries its
    // initial expression.
    static AATokenPtr CreateVar(const std::string& names);
    // `var a = expr`.
    static AATokenPtr CreateVar(const std::string& name, const std::string& expression);
    static AATokenPtr CreateIf(const std::string& condition, const std::string& thenText,
                               const std::string& elseText);
    static AATokenPtr CreateEach(AAValuePtr receiver, const std::string& variable, std::unique_ptr<Action> body);

    // Completion for editors.
    static std::vector<std::string> OperatorsStartingWith(const std::string& prefix);
    static std::vector<std::string> DotOperatorsStartingWith(const std::string& prefix);
    static bool OperatorTakesDesignator(const std::string& name);

protected:
    Action() = default;
};

// Action code that stands in an attribute: its text and its statements.
class AgentAction : public Action {
public:
    explicit AgentAction(const std::string& text);
    ~AgentAction() override;

    const char* ClassName() const override { return "AgentAction"; }
    const std::string& Text() const { return text; }
    const AATokenList& Tokens() const { return tokens; }
    bool Deleted() const { return deleted; }

    void Apply(Node* note, MatchList& matches) const override;
    bool IsValid(const Node* note) const override { return tokens.IsValid(note); }
    // Whether an Apply is under way (on any thread): a pool that deletes
    // retired actions keeps such an action until it ends.
    bool IsRunning() const { return running.load() > 0; }

    // The number of AgentAction objects alive.
    static long Count() { return sCount.load(); }

protected:
    virtual void Parse();

private:
    std::string text;
    AATokenList tokens;
    std::atomic<bool> deleted{false};
    mutable std::atomic<int> running{0};
    static std::atomic<long> sCount;
};

// The action of empty text: does nothing.
class NoAction : public Action {
public:
    NoAction() = default;
    const char* ClassName() const override { return "NoAction"; }
    void Apply(Node*, MatchList&) const override {}
    bool IsValid(const Node*) const override { return false; }
};
