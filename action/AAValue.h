#pragma once
// Expression nodes of compiled action code. The expression parser builds a
// tree of AAValue objects: literals at the leaves, operators and functions
// above them holding their operands. Arguments of a function form a chain
// through `next` (first argument, then GetNextArgument()).
//
// Ownership: every node owns its operands and its `next` chain through
// unique_ptr. Trees can be very deep (a long run of binary operators is a
// left-deep tree) or very long (a list of a hundred thousand arguments), so a
// node frees its children without recursion (see DestroyChildren).
//
// These classes hold the parsed shape only; computing results lives with the
// evaluator.
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <atomic>
#include <mutex>

#include "ActionResult.h"
#include "AttributeCache.h"
#include "STime.h"

class AAValue;
class AttributeToken;
class MatchList;
class Node;
using AAValuePtr = std::unique_ptr<AAValue>;

// What a tree dump shows of one node besides its class name: a few
// ready-formatted fields on the same line and the operands below it. A null
// operand is shown as an empty slot.
struct AAValueParts {
    std::vector<std::string> fields;
    std::vector<const AAValue*> operands;
};

// Priorities used when the parser composes a tree: the lower the number, the
// looser the operator binds.
enum : int {
    kPriorityOrAnd = 0,
    kPriorityNot = 1,
    kPriorityComparison = 2,
    kPriorityAddition = 3,
    kPriorityMultiplication = 4,
    kPriorityDotOperator = 5,
    kPriorityListFunction = 9997,
    kPriorityValue = 9999,
};

class AAValue {
public:
    AAValue() = default;
    explicit AAValue(std::string tokenText) : token(std::move(tokenText)) {}
    virtual ~AAValue();

    AAValue(const AAValue&) = delete;
    AAValue& operator=(const AAValue&) = delete;

    // The name of the node's class, as shown by tree dumps.
    virtual const char* ClassName() const = 0;

    virtual int Priority() const { return kPriorityValue; }

    // Operand slots. A node that lacks a slot answers null and drops what it
    // is given, so that composing never fails.
    virtual AAValue* Left() const { return nullptr; }
    virtual AAValue* Right() const { return nullptr; }
    virtual void SetLeft(AAValuePtr value) {}
    virtual void SetRight(AAValuePtr value) {}
    // Detaches and answers the right operand (null when there is none).
    virtual AAValuePtr TakeRight() { return nullptr; }

    // The argument chain: a node followed by the next argument of a list.
    void SetNext(AAValuePtr value) { next = std::move(value); }
    AAValue* GetNextArgument() const { return next.get(); }
    // The first argument of a function: its operand.
    AAValue* GetArgument() const { return Right(); }
    // There is a first argument and no second one.
    bool SingleArgument() const;

    // Whether `accept` holds for every node of `tree` (operands and argument
    // chains), visited without recursion; a tree of more than `mostVisited`
    // nodes answers false; an empty one, true. For checks that decide what
    // a tree may do before it runs.
    template <typename Accept>
    static bool EveryNode(const AAValue* tree, size_t mostVisited, Accept accept) {
        std::vector<const AAValue*> pending{tree};
        for (size_t visited = 0; !pending.empty(); ++visited) {
            if (visited >= mostVisited)
                return false;
            const AAValue* value = pending.back();
            pending.pop_back();
            if (!value)
                continue;
            if (!accept(value))
                return false;
            pending.push_back(value->GetNextArgument());
            pending.push_back(value->Right());
            pending.push_back(value->Left());
        }
        return true;
    }

    // The text the node was made from (literals and names).
    const std::string& Token() const { return token; }

    // Fields and operands for a tree dump.
    virtual void Describe(AAValueParts& parts) const;

    // Evaluation. A tree is shared by every thread that evaluates it: these
    // are const, and the few caches nodes keep are idempotent.
    //
    // The result for `note`; by default the empty text.
    virtual ActionResult ActionValue(Node* note, MatchList& matches) const;
    virtual double GetDouble(Node* note, MatchList& matches) const;
    virtual long GetNum(Node* note, MatchList& matches) const;
    virtual STime GetDate(Node* note, MatchList& matches) const;
    // The type code the result has (AttributeType), -1 when it cannot be told.
    virtual int ResultType(Node* note, MatchList& matches) const;
    virtual bool IsValid(const Node* note) const { return true; }
    // What went wrong, for invalid nodes.
    virtual std::string Error() const { return std::string(); }
    // Assigns this expression, computed on `source`, to the attribute the
    // token names on `target`; answers the value assigned.
    virtual ActionResult DoAssign(Node* target, Node* source, const AttributeToken& token, MatchList& matches) const;
    // Assigns to a facet such as `$Date.year`; answers the attribute's new text.
    virtual ActionResult SetFacet(Node* target, const AttributeToken& token, const ActionResult& value) const;

    // Computes `value` for the note: the one way operands are evaluated, so
    // that the depth of nested evaluation is counted in one place. Past
    // kMaxEvaluationDepth (or for a null value) the answer is the empty
    // result. Parsed trees are never that deep; the bound holds for
    // evaluations that nest through actions and designators.
    static ActionResult ComputeValue(const AAValue* value, Node* note, MatchList& matches);
    static constexpr int kMaxEvaluationDepth = 1200;

    // Reads for operators that need only an operand's text or number, made
    // without building a result (queries compare one attribute with one
    // literal on every note). FastText gives what ComputeValue(value)
    // .AsString() would, viewed in place or written into `buffer`;
    // FastNumber what AABinaryOperator::Eval would. Both are counted as one
    // evaluation level, as ComputeValue is. False when the node has no such
    // read, or the evaluation is too deep: nothing was evaluated, and the
    // caller computes the value.
    static bool FastText(const AAValue* value, Node* note, MatchList& matches, std::string& buffer,
                         std::string_view& text);
    static bool FastNumber(const AAValue* value, Node* note, MatchList& matches, double& number);
    // The number Eval reads from a text result: days since the never date
    // for a date text, else the text read as a number.
    static double NumberOfText(const std::string& text);
    // Whether the value for the note is true: ComputeValue(value).IsTrue(),
    // counted the same way; operators answer without building the result.
    static bool ComputeTruth(const AAValue* value, Node* note, MatchList& matches);

    static const char* const kTrue;
    static const char* const kFalse;
    static const ActionResult& kTrueResult();
    static const ActionResult& kFalseResult();

protected:
    // The reads behind FastText and FastNumber; only nodes whose value is a
    // plain text result answer them. By default the number is that of the
    // text.
    virtual bool TextInPlace(Node* note, MatchList& matches, std::string& buffer, std::string_view& text) const {
        return false;
    }
    virtual bool NumberInPlace(Node* note, MatchList& matches, double& number) const;
    // The truth behind ComputeTruth; by default that of the computed value.
    virtual bool Truth(Node* note, MatchList& matches) const { return ActionValue(note, matches).IsTrue(); }

    // Moves every owned child (operands and `next`) into `out`. Subclasses
    // that own children add theirs and call the inherited version.
    virtual void ReleaseChildren(std::vector<AAValuePtr>& out);
    // Destroys the children without recursion: each released child gives up
    // its own children before it is destroyed. A class that overrides
    // ReleaseChildren calls this from its destructor, while its override is
    // still the one that runs.
    void DestroyChildren();

    std::string token;
    AAValuePtr next;
};

// Quotes a text for a dump: double quotes, with backslash escapes for the
// quote, the backslash and control characters.
std::string AAQuoteForDump(const std::string& text);

// ---------------------------------------------------------------------------
// Leaves

// A bare word or a constant text. At run time a bare word may name a
// variable or an attribute; a literal is the word itself.
class AAStringValue : public AAValue {
public:
    explicit AAStringValue(std::string text) : AAValue(std::move(text)) {}
    const char* ClassName() const override { return "AAStringValue"; }
    void Describe(AAValueParts& parts) const override;

    // A bound variable of this name, else the note's attribute of this name,
    // else the word itself.
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    // The attribute's type, else the variable's, else string.
    int ResultType(Node* note, MatchList& matches) const override;
    // The attribute's date, else the text read as a date (once).
    STime GetDate(Node* note, MatchList& matches) const override;

protected:
    // The word, when neither a variable nor an attribute has its name.
    bool TextInPlace(Node* note, MatchList& matches, std::string& buffer, std::string_view& text) const override;
    bool NumberInPlace(Node* note, MatchList& matches, double& number) const override;
    // The text read as a date, kept after the first reading.
    STime LiteralDate() const;
    // NumberOfText of the word; kept unless the word reads as a date (whose
    // number may change with the day, as "today" does).
    double LiteralNumber() const;
    const Attribute* AttributeNamed(const Node* note) const { return attributeCache.Find(note, token); }

    AttributeCache attributeCache;
    mutable std::once_flag dateOnce;
    mutable STime date;
    // 0 while the word was not read yet, 1 once literalNumber holds its
    // number, 2 when it reads as a date. Threads that read it at once each
    // store the same answer.
    mutable std::atomic<int> literalKind{0};
    mutable std::atomic<double> literalNumber{0.0};
};

// Text written in quotes; it is always the literal. Remembers its quote.
class AAQuotedStringValue : public AAStringValue {
public:
    AAQuotedStringValue(std::string text, char quoteChar)
        : AAStringValue(std::move(text)), quote(quoteChar) {}
    const char* ClassName() const override { return "AAQuotedStringValue"; }
    char Quote() const { return quote; }
    void Describe(AAValueParts& parts) const override;
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
    STime GetDate(Node* note, MatchList& matches) const override;

protected:
    bool TextInPlace(Node* note, MatchList& matches, std::string& buffer, std::string_view& text) const override;
    bool NumberInPlace(Node* note, MatchList& matches, double& number) const override;

private:
    char quote;
};

// A number literal: decimal, or hexadecimal behind "#".
class AAInteger : public AAStringValue {
public:
    using AAStringValue::AAStringValue;
    const char* ClassName() const override { return "AAInteger"; }
    int ResultType(Node* note, MatchList& matches) const override;
    // The text as a number, read once.
    long GetNum(Node* note, MatchList& matches) const override;

private:
    mutable std::once_flag numberOnce;
    mutable long number = 0;
};

// "true" or "false".
class AABoolean : public AAStringValue {
public:
    using AAStringValue::AAStringValue;
    const char* ClassName() const override { return "AABoolean"; }
    int ResultType(Node* note, MatchList& matches) const override;
};

// A syntax problem kept in the tree; its text says what went wrong.
class AAInvalid : public AAValue {
public:
    explicit AAInvalid(std::string text) : AAValue(std::move(text)) {}
    const char* ClassName() const override { return "AAInvalid"; }
    void Describe(AAValueParts& parts) const override;
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    bool IsValid(const Node* note) const override { return false; }
    std::string Error() const override { return token; }
};

// The empty expression, as in `$X=;`.
class AADefaultValue : public AAValue {
public:
    const char* ClassName() const override { return "AADefaultValue"; }
    // `$X=;` removes the note's own value, so that it inherits again.
    ActionResult DoAssign(Node* target, Node* source, const AttributeToken& token, MatchList& matches) const override;
};

// `$0`, `$1`, ...: a capture group of the latest regular expression.
class AAMatchValue : public AAValue {
public:
    AAMatchValue(std::string text, int number) : AAValue(std::move(text)), index(number) {}
    const char* ClassName() const override { return "AAMatchValue"; }
    int Index() const { return index; }
    void Describe(AAValueParts& parts) const override;
    ActionResult ActionValue(Node* note, MatchList& matches) const override;

private:
    int index;
};

// `$Name` or `$Name(designator)`.
class AAAttributeValue : public AAValue {
public:
    AAAttributeValue(std::string name, std::string designatorText)
        : AAValue(std::move(name)), designator(std::move(designatorText)), isName(token == "Name"),
          isText(token == "Text") {}
    const char* ClassName() const override { return "AAAttributeValue"; }
    const std::string& Name() const { return token; }
    const std::string& Designator() const { return designator; }
    void Describe(AAValueParts& parts) const override;

    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
    STime GetDate(Node* note, MatchList& matches) const override;
    bool IsValid(const Node* note) const override;
    // The attribute's value on `target` as an expression result.
    ActionResult ValueFor(Node* target, Node* note, MatchList& matches) const;

private:
    // The note the designator names, or `note` without one; null when the
    // designator names nothing.
    Node* Target(Node* note, MatchList& matches) const;
    // The text of an attribute of the note itself, read under the note's
    // lock; dates, dictionaries and the rich text take the full way.
    bool TextInPlace(Node* note, MatchList& matches, std::string& buffer, std::string_view& text) const override;

    std::string designator;
    AttributeCache attributeCache;
    // The name never changes: `$Name` reads the original's, `$Text` may be
    // rich.
    bool isName;
    bool isText;
};

// `^...`: an export template run for the note.
class AATemplateValue : public AAValue {
public:
    explicit AATemplateValue(std::string text) : AAValue(std::move(text)) {}
    const char* ClassName() const override { return "AATemplateValue"; }
    void Describe(AAValueParts& parts) const override;
};

// `Name(pattern)`: a name followed by parentheses that no table knows; a
// regular-expression query on the attribute of that name.
class AARegexValue : public AAValue {
public:
    AARegexValue(std::string name, std::string patternText, bool isCaseSensitive);
    ~AARegexValue() override;
    const char* ClassName() const override { return "AARegexValue"; }
    const std::string& Name() const { return token; }
    const std::string& Pattern() const { return pattern; }
    bool CaseSensitive() const { return caseSensitive; }
    void Describe(AAValueParts& parts) const override;

    // Searches the attribute's text of the note's original; a match stores
    // the capture groups and answers its position + 1, no match is false.
    // For a set attribute: whether the set holds the pattern text.
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    // `Name(/some/path)` on the right of an assignment: the attribute's text
    // on the note at that path, else the path text itself.
    ActionResult DoAssign(Node* target, Node* source, const AttributeToken& token, MatchList& matches) const override;

private:
    struct Compiled;
    const Compiled& Regex() const;

    std::string pattern;
    bool caseSensitive;
    AttributeCache attributeCache;
    mutable std::once_flag compileOnce;
    mutable std::unique_ptr<Compiled> compiled;
};

// `links(designator).query`: the links of a note, filtered by a dotted query.
class AALinks : public AAValue {
public:
    AALinks(std::string designatorText, std::string queryText)
        : designator(std::move(designatorText)), query(std::move(queryText)) {}
    const char* ClassName() const override { return "AALinks"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
    const std::string& Designator() const { return designator; }
    const std::string& Query() const { return query; }
    void Describe(AAValueParts& parts) const override;

private:
    std::string designator;
    std::string query;
};

// The expression form of `if`: condition, then and else (either branch may
// be missing).
class AAIfExpression : public AAValue {
public:
    AAIfExpression(AAValuePtr conditionValue, AAValuePtr thenValue, AAValuePtr elseValue)
        : condition(std::move(conditionValue)), thenBranch(std::move(thenValue)),
          elseBranch(std::move(elseValue)) {}
    ~AAIfExpression() override;
    const char* ClassName() const override { return "AAIfExpression"; }
    AAValue* Condition() const { return condition.get(); }
    AAValue* Then() const { return thenBranch.get(); }
    AAValue* Else() const { return elseBranch.get(); }
    void Describe(AAValueParts& parts) const override;
    ActionResult ActionValue(Node* note, MatchList& matches) const override;

protected:
    void ReleaseChildren(std::vector<AAValuePtr>& out) override;

private:
    AAValuePtr condition;
    AAValuePtr thenBranch;
    AAValuePtr elseBranch;
};

// ---------------------------------------------------------------------------
// Operators

// One operand chain: the operand is the first argument, and further
// arguments follow through GetNextArgument. Both operand slots set it.
class AAUnaryOperator : public AAValue {
public:
    explicit AAUnaryOperator(AAValuePtr operandValue = nullptr) : operand(std::move(operandValue)) {}
    ~AAUnaryOperator() override;

    AAValue* Right() const override { return operand.get(); }
    void SetLeft(AAValuePtr value) override { operand = std::move(value); }
    void SetRight(AAValuePtr value) override { operand = std::move(value); }
    AAValuePtr TakeRight() override { return std::move(operand); }
    void Describe(AAValueParts& parts) const override;

    // The computed operand.
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    bool IsValid(const Node* note) const override { return operand && operand->IsValid(note); }
    // The note itself for an empty path, otherwise the note the path names.
    virtual Node* TargetNode(const std::string& path, Node* note, MatchList& matches) const;

protected:
    void ReleaseChildren(std::vector<AAValuePtr>& out) override;

    AAValuePtr operand;
};

// Left and right operands. For the dot operators the left is the receiver
// and the right the first argument.
class AABinaryOperator : public AAValue {
public:
    AABinaryOperator(AAValuePtr leftValue = nullptr, AAValuePtr rightValue = nullptr)
        : left(std::move(leftValue)), right(std::move(rightValue)) {}
    ~AABinaryOperator() override;

    AAValue* Left() const override { return left.get(); }
    AAValue* Right() const override { return right.get(); }
    void SetLeft(AAValuePtr value) override { left = std::move(value); }
    void SetRight(AAValuePtr value) override { right = std::move(value); }
    AAValuePtr TakeRight() override { return std::move(right); }
    void Describe(AAValueParts& parts) const override;

    // Computes by the kind ArgumentType tells (number, text, boolean, date,
    // set, list, colour, interval, dictionary), then Modify.
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    // ArgumentType; comparisons answer boolean.
    int ResultType(Node* note, MatchList& matches) const override;
    long GetNum(Node* note, MatchList& matches) const override;
    bool IsValid(const Node* note) const override;

    // What the result becomes: itself, or its negation for `!=`, `<=`, `>=`.
    virtual ActionResult Modify(const ActionResult& result) const { return result; }
    // Whether Modify negates the truth of the result (and keeps nothing else).
    virtual bool Negates() const { return false; }
    // The kind of computation, from the types of both operands.
    virtual int ArgumentType(Node* note, MatchList& matches) const;
    // The number of an operand: days since the never date for a date text,
    // the number otherwise; 0 for no operand.
    double Eval(const AAValue* operand, Node* note, MatchList& matches) const;
    // The text of an operand (ComputeValue(operand).AsString()), viewed in
    // place when it can be, else kept in `buffer`.
    std::string_view EvalText(const AAValue* operand, Node* note, MatchList& matches, std::string& buffer) const;
    bool EvalBoolean(const AAValue* operand, Node* note, MatchList& matches) const;
    virtual double Compute(Node* note, MatchList& matches) const { return 0.0; }
    virtual bool ComputeBoolean(Node* note, MatchList& matches) const { return false; }
    virtual double ComputeDate(Node* note, MatchList& matches) const { return 0.0; }
    virtual std::string ComputeSet(Node* note, MatchList& matches) const { return std::string(); }
    virtual std::string ComputeList(Node* note, MatchList& matches) const { return std::string(); }
    virtual std::string ComputeColor(Node* note, MatchList& matches) const;
    virtual std::string ComputeInterval(Node* note, MatchList& matches) const;
    virtual ActionResult ComputeDictionary(Node* note, MatchList& matches) const;
    virtual ActionResult ComputeActionResultForString(Node* note, MatchList& matches) const;
    // The truth of ComputeActionResultForString.
    virtual bool ComputeTruthForString(Node* note, MatchList& matches) const {
        return ComputeActionResultForString(note, matches).IsTrue();
    }
    // When exactly one side carries rich text, gives the other side rich
    // text in the note's default text style.
    void ExpandAttributedStrings(Node* note, ActionResult& l, ActionResult& r) const;

protected:
    // Whether the class is a comparison, whose result type is boolean.
    virtual bool IsComparison() const { return false; }
    // ActionValue's truth, for the operators that compute by ArgumentType
    // alone: numbers, booleans and texts are told without a result made and
    // copied.
    bool OperatorTruth(Node* note, MatchList& matches) const;
    // ActionValue for the kind ArgumentType answered.
    ActionResult ResultFor(int kind, Node* note, MatchList& matches) const;

    void ReleaseChildren(std::vector<AAValuePtr>& out) override;

    AAValuePtr left;
    AAValuePtr right;
};

// A dot operator on a receiver, `$A.size`, `$A.replace(a, b)`. Until its
// class computes something of its own, a dot operator answers the empty
// text, like any function without a body.
class AADotOperator : public AABinaryOperator {
public:
    using AABinaryOperator::AABinaryOperator;
    int Priority() const override { return kPriorityDotOperator; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override { return AAValue::ActionValue(note, matches); }
    int ResultType(Node* note, MatchList& matches) const override { return -1; }
    long GetNum(Node* note, MatchList& matches) const override { return AAValue::GetNum(note, matches); }
    bool IsValid(const Node* note) const override { return true; }
};

// `.contains` and `.containsAnyOf` with their case flag.
class AADotContains : public AADotOperator {
public:
    explicit AADotContains(bool isCaseSensitive) : caseSensitive(isCaseSensitive) {}
    const char* ClassName() const override { return "AADotContains"; }
    bool CaseSensitive() const { return caseSensitive; }
    void Describe(AAValueParts& parts) const override;
    // A set or list receiver: the one-based position of the item, or false.
    // A dictionary: whether the key exists. Otherwise the argument is a
    // regular expression searched in the receiver's text: a match stores
    // the capture groups and answers its one-based position.
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    // ActionValue as a truth, with no result made for a text receiver.
    bool Truth(Node* note, MatchList& matches) const override;
    bool IsValid(const Node* note) const override;

protected:
    // A text receiver searched for the pattern: the one-based position of
    // the match (its captures stored), or 0.
    long SearchText(Node* note, MatchList& matches) const;
    // The test of one pattern on a computed receiver of the given type.
    ActionResult Contains(const ActionResult& receiver, int receiverType, const std::string& pattern,
                          MatchList& matches) const;

private:
    bool caseSensitive;
};

// `.containsAnyOf(list)`: whether any item of the list is contained, by
// the rule of `.contains`.
class AADotContainsAny : public AADotContains {
public:
    using AADotContains::AADotContains;
    const char* ClassName() const override { return "AADotContainsAny"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    bool Truth(Node* note, MatchList& matches) const override;
};

// Family bases of the function library.

// A function of the library. Until its class computes something of its
// own, a call answers the empty text (never the operand passed through).
class AAFunction : public AAUnaryOperator {
public:
    using AAUnaryOperator::AAUnaryOperator;
    ActionResult ActionValue(Node* note, MatchList& matches) const override { return AAValue::ActionValue(note, matches); }
    bool IsValid(const Node* note) const override { return true; }
};

// A one-argument numeric function: the argument computed as a double goes
// through Compute; the result is a number.
class AANumFun : public AAFunction {
public:
    using AAFunction::AAFunction;
    int Priority() const override { return kPriorityListFunction; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
    virtual double Compute(double x) const { return x; }
};

// A one-argument text function: the argument computed as text goes through
// Transform; the result is a string.
class AATransformer : public AAFunction {
public:
    using AAFunction::AAFunction;
    int Priority() const override { return kPriorityDotOperator; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
    virtual std::string Transform(const std::string& text) const { return text; }
};

// A function over the items of a list: the argument (the receiver of the
// dot forms) computed as text and split at ";", and the kind of its items.
class AASetFun : public AAFunction {
public:
    using AAFunction::AAFunction;
    int Priority() const override { return kPriorityListFunction; }
    // Compute on the items and the item type (number, date, or another).
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
    virtual ActionResult Compute(const ArgList& items, int type) const;
    // The type the items are compared by: the argument's own type when it
    // is number or date; otherwise number when every item is numeric, else
    // date when every item is a date, else string.
    int ItemType(const ArgList& items, Node* note, MatchList& matches) const;
};

// A unary function whose argument names a note.
class AAUnaryWithTarget : public AAFunction {
public:
    using AAFunction::AAFunction;
};

// Functions of composites. The `:name` forms keep the texts of their
// parenthesised arguments.
class AACompositeFunction : public AAFunction {
public:
    using AAFunction::AAFunction;
    int Priority() const override { return kPriorityDotOperator; }
    void SetArguments(std::vector<std::string> texts) { arguments = std::move(texts); }
    const std::vector<std::string>& Arguments() const { return arguments; }
    void Describe(AAValueParts& parts) const override;

private:
    std::vector<std::string> arguments;
};
