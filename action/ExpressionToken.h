#pragma once
// One token of an expression: its text and the element its spelling selects.
#include <memory>
#include <string>

#include "ExpressionElement.h"

class ExpressionToken {
public:
    explicit ExpressionToken(std::string text = "");
    ~ExpressionToken();
    ExpressionToken(const ExpressionToken& other);
    ExpressionToken(ExpressionToken&& other) noexcept = default;
    // Does nothing when the texts are already equal.
    ExpressionToken& operator=(const ExpressionToken& other);
    ExpressionToken& operator=(ExpressionToken&& other) noexcept;

    // A new token of the joined texts.
    ExpressionToken operator+(const std::string& more) const;
    ExpressionToken operator+(const ExpressionToken& more) const;

    const std::string& AsString() const { return text; }
    bool empty() const { return text.empty(); }
    bool StartsWith(char c) const { return !text.empty() && text[0] == c; }

    AAValuePtr Parse(AgentActionExpressionParser& parser) const;
    AAValuePtr Parse2(AgentActionExpressionParser& parser, AAValue* left) const;
    bool CanBeParsed() const;
    bool IsBinaryOperator() const;
    bool IsComma() const;
    bool IsDotOperator() const { return StartsWith('.'); }
    bool IsBracketOperator() const { return StartsWith('['); }
    bool IsNumber() const { return IsNumber(text); }
    bool IsHexNumber() const { return IsHexNumber(text); }
    bool IsBoolean() const { return text == "true" || text == "false"; }
    // A non-empty token that begins with an operator character.
    bool IsOperator() const { return !text.empty() && IsOperator(text[0]); }

    // "!", "&", "*", "+", ",", "-", "/", "<", "=", ">", "`", "|", "~".
    static bool IsOperator(char c);
    // An optional "-", then digits with at most one ".", at least one digit;
    // or a hexadecimal number behind "#".
    static bool IsNumber(const std::string& text);
    // An optional "#", then one or more hexadecimal digits.
    static bool IsHexNumber(const std::string& text);

private:
    std::string text;
    std::unique_ptr<ExpressionElement> element;
};
