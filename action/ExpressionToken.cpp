#include "ExpressionToken.h"

#include <cctype>

ExpressionToken::ExpressionToken(std::string tokenText)
    : text(std::move(tokenText)), element(ExpressionElement::Create(text)) {}

ExpressionToken::~ExpressionToken() = default;

ExpressionToken::ExpressionToken(const ExpressionToken& other)
    : text(other.text), element(other.element ? other.element->Clone() : nullptr) {}

ExpressionToken& ExpressionToken::operator=(const ExpressionToken& other) {
    if (this == &other || text == other.text)
        return *this;
    text = other.text;
    element = other.element ? other.element->Clone() : nullptr;
    return *this;
}

ExpressionToken& ExpressionToken::operator=(ExpressionToken&& other) noexcept {
    if (this == &other || text == other.text)
        return *this;
    text = std::move(other.text);
    element = std::move(other.element);
    return *this;
}

ExpressionToken ExpressionToken::operator+(const std::string& more) const { return ExpressionToken(text + more); }

ExpressionToken ExpressionToken::operator+(const ExpressionToken& more) const {
    return ExpressionToken(text + more.text);
}

AAValuePtr ExpressionToken::Parse(AgentActionExpressionParser& parser) const {
    return element ? element->Parse(parser) : nullptr;
}

AAValuePtr ExpressionToken::Parse2(AgentActionExpressionParser& parser, AAValue* left) const {
    return element ? element->Parse2(parser, left) : nullptr;
}

bool ExpressionToken::CanBeParsed() const { return element && element->CanBeParsed(); }

bool ExpressionToken::IsBinaryOperator() const { return element && element->IsBinaryOperator(); }

bool ExpressionToken::IsComma() const { return element && element->IsComma(); }

bool ExpressionToken::IsOperator(char c) {
    switch (c) {
    case '!': case '&': case '*': case '+': case ',': case '-': case '/':
    case '<': case '=': case '>': case '`': case '|': case '~':
        return true;
    default:
        return false;
    }
}

bool ExpressionToken::IsNumber(const std::string& text) {
    if (!text.empty() && text[0] == '#')
        return IsHexNumber(text);
    size_t i = 0;
    if (i < text.size() && text[i] == '-')
        ++i;
    int digits = 0;
    int others = 0;
    for (; i < text.size(); ++i) {
        char c = text[i];
        if (c >= '0' && c <= '9') {
            ++digits;
        } else if (c == '.' && others == 0) {
            ++others;
        } else {
            return false;
        }
    }
    return digits > 0;
}

bool ExpressionToken::IsHexNumber(const std::string& text) {
    size_t i = (!text.empty() && text[0] == '#') ? 1 : 0;
    if (i >= text.size())
        return false;
    for (; i < text.size(); ++i) {
        if (!std::isxdigit(static_cast<unsigned char>(text[i])))
            return false;
    }
    return true;
}
