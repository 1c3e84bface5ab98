#pragma once
// Statement nodes of compiled action code: assignments, `var`, `if`,
// `.each` and bare expressions. Each holds its parsed parts; running them is
// the evaluator's work.
#include <atomic>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "AAValue.h"

class Action;
class AttributeToken;
class MatchList;
class Node;

class AAToken {
public:
    AAToken() = default;
    virtual ~AAToken();
    AAToken(const AAToken&) = delete;
    AAToken& operator=(const AAToken&) = delete;

    virtual const char* ClassName() const = 0;

    virtual void Apply(Node* note, MatchList& matches) const = 0;
    virtual bool IsValid(const Node* note) const = 0;

    // Set when the statement is destroyed; an assignment that finds it set
    // after assigning throws ActionDeletedException.
    bool IsDead() const { return dead.load(std::memory_order_relaxed); }

private:
    std::atomic<bool> dead{false};
};

using AATokenPtr = std::unique_ptr<AAToken>;

// An expression standing alone as a statement, such as a function call.
class AAExpressionToken : public AAToken {
public:
    explicit AAExpressionToken(AAValuePtr value) : expression(std::move(value)) {}
    const char* ClassName() const override { return "AAExpressionToken"; }
    AAValue* Expression() const { return expression.get(); }
    // Computes the expression; when the document has a stamp of the
    // result's name, applies that stamp to the note.
    void Apply(Node* note, MatchList& matches) const override;
    bool IsValid(const Node* note) const override;

private:
    AAValuePtr expression;
};

// `left = right`. The left side stays text (`$Name(parent)[2].year`, or
// `$Count+` for `+=`); the right side is parsed.
class AAAssign : public AAToken {
public:
    AAAssign(std::string leftText, AAValuePtr rightValue) : left(std::move(leftText)), right(std::move(rightValue)) {}
    const char* ClassName() const override { return "AAAssign"; }
    const std::string& Left() const { return left; }
    AAValue* Right() const { return right.get(); }

    void Apply(Node* note, MatchList& matches) const override;
    bool IsValid(const Node* note) const override;

    // `$Count+=1`: the left text ends in "+". Such an assignment adds the
    // right side to the value each target holds (the sum, the list or set
    // with the item, the later date) by the rules of `+`.
    void SetIncrement(AAValuePtr sum) { increment = std::move(sum); }

protected:
    // Assigns to one target note; `source` is the note the action runs on.
    virtual void ApplyTo(Node* target, Node* source, const AttributeToken& token, MatchList& matches) const;

private:
    std::string left;
    AAValuePtr right;
    // For "+=": the attribute plus the right side, computed on each target.
    AAValuePtr increment;
};

// `left |= right`: assigns only to a false attribute.
class AAOrAssign : public AAAssign {
public:
    using AAAssign::AAAssign;
    const char* ClassName() const override { return "AAOrAssign"; }

protected:
    void ApplyTo(Node* target, Node* source, const AttributeToken& token, MatchList& matches) const override;
};

// `left &= right`: assigns only to a true attribute.
class AAAndAssign : public AAAssign {
public:
    using AAAssign::AAAssign;
    const char* ClassName() const override { return "AAAndAssign"; }

protected:
    void ApplyTo(Node* target, Node* source, const AttributeToken& token, MatchList& matches) const override;
};

// `var a, b(3)` or `var a = expr`: names with optional initial expressions.
class AAVars : public AAToken {
public:
    using Variable = std::pair<std::string, AAValuePtr>;

    explicit AAVars(std::vector<Variable> declared) : variables(std::move(declared)) {}
    const char* ClassName() const override { return "AAVars"; }
    const std::vector<Variable>& Variables() const { return variables; }
    void Apply(Node* note, MatchList& matches) const override;
    bool IsValid(const Node* note) const override { return true; }

private:
    std::vector<Variable> variables;
};

// `if(condition){then}else{else}`; the branches are actions of their own.
class AAIf : public AAToken {
public:
    AAIf(AAValuePtr conditionValue, std::unique_ptr<Action> thenAction, std::unique_ptr<Action> elseAction);
    ~AAIf() override;
    const char* ClassName() const override { return "AAIf"; }
    AAValue* Condition() const { return condition.get(); }
    const Action& Then() const { return *thenBranch; }
    const Action& Else() const { return *elseBranch; }
    void Apply(Node* note, MatchList& matches) const override;
    bool IsValid(const Node* note) const override;

private:
    AAValuePtr condition;
    std::unique_ptr<Action> thenBranch;
    std::unique_ptr<Action> elseBranch;
};

// `receiver.each(variable){body}`.
class AAEach : public AAToken {
public:
    AAEach(AAValuePtr receiverValue, std::string variableName, std::unique_ptr<Action> bodyAction);
    ~AAEach() override;
    const char* ClassName() const override { return "AAEach"; }
    AAValue* Receiver() const { return receiver.get(); }
    const std::string& Variable() const { return variable; }
    const Action& Body() const { return *body; }
    void Apply(Node* note, MatchList& matches) const override;
    bool IsValid(const Node* note) const override;

private:
    AAValuePtr receiver;
    std::string variable;
    std::unique_ptr<Action> body;
};
