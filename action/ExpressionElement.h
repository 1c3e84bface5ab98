#pragma once
// The meaning of one expression token. ExpressionElement::Create picks an
// element by the token's spelling; the element then reads whatever else it
// needs (arguments in parentheses, a right operand, the rest of the text)
// from the expression parser's stream and builds evaluator nodes.
//
// Parse builds the node of a token that stands in operand place. Parse2
// builds the node of a token that follows an expression: a binary operator,
// a dot operator or a bracket index. The node it answers has an empty left
// side, which the parser fills when it composes the tree.
#include <memory>
#include <string>
#include <vector>

#include "AAValue.h"

class AgentActionExpressionParser;
class ArgList;

class ExpressionElement {
public:
    virtual ~ExpressionElement();

    // The element for a token's spelling.
    static std::unique_ptr<ExpressionElement> Create(const std::string& text);

    virtual std::unique_ptr<ExpressionElement> Clone() const = 0;
    // The element makes a node in operand place. Operators answer false:
    // in operand place they become AAInvalid.
    virtual bool CanBeParsed() const { return true; }
    virtual bool IsBinaryOperator() const { return false; }
    // The "," that links arguments into a chain.
    virtual bool IsComma() const { return false; }

    // The node in operand place. The default is AAInvalid of the spelling.
    virtual AAValuePtr Parse(AgentActionExpressionParser& parser);
    // The node that follows `left`. The default is none.
    virtual AAValuePtr Parse2(AgentActionExpressionParser& parser, AAValue* left);

    static AAValuePtr Invalid(const std::string& text);
    static AAValuePtr StringConstant(const std::string& text);

    const std::string& Text() const { return text; }

    explicit ExpressionElement(std::string spelling) : text(std::move(spelling)) {}

protected:
    std::string text;
};

// A function name: the argument readers shared by all functions. Each
// reads from the parser's stream directly behind the name.
class UnaryFunction : public ExpressionElement {
public:
    // The argument texts of a following "(...)", split at ","; empty without
    // parentheses.
    static std::vector<std::string> GetArguments(AgentActionExpressionParser& parser);
    // The first argument parsed as an expression; AAInvalid "*missing
    // argument*" when there is none.
    static AAValuePtr SingleArgument(AgentActionExpressionParser& parser);
    // The first argument as a text constant, not evaluated; the empty
    // expression when there is none.
    static AAValuePtr PathArgument(AgentActionExpressionParser& parser);
    // The whole text in parentheses as one text constant.
    static AAValuePtr LiteralArguments(AgentActionExpressionParser& parser);
    // The text in parentheses parsed as one expression; "," chains the
    // arguments.
    static AAValuePtr Arguments(AgentActionExpressionParser& parser);
    // The same, parsed with the given case sensitivity.
    static AAValuePtr Arguments(AgentActionExpressionParser& parser, bool caseSensitive);
    // Item 0 as a text constant (the designator), the further items parsed,
    // all chained. Null when there are fewer than `minimum` items.
    static AAValuePtr DesignatorAndArguments(AgentActionExpressionParser& parser,
                                             const std::vector<std::string>& items, size_t minimum = 2);

    using ExpressionElement::ExpressionElement;
};

// A function that also stands between two operands.
class BinaryFunction : public UnaryFunction {
public:
    using UnaryFunction::UnaryFunction;
    bool IsBinaryOperator() const override { return true; }
};

// Chains a list of parsed texts through SetNext and answers the first.
AAValuePtr ChainArguments(std::vector<AAValuePtr> items);
