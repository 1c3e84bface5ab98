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

    // The number of AgentAction objects alive.
    static long Count() { return sCount.load(); }

protected:
    virtual void Parse();

private:
    std::string text;
    AATokenList tokens;
    bool deleted = false;
    static std::atomic<long> sCount;
};

// The action of empty text: does nothing.
class NoAction : public Action {
public:
    NoAction() = default;
    const char* ClassName() const override { return "NoAction"; }
};
