#include "ExpressionElement.h"

#include <cctype>
#include <climits>
#include <unordered_map>

#include "AACollect.h"
#include "AACompositeFor.h"
#include "AACreate.h"
#include "AAOperators.h"
#include "AASetFun.h"
#include "AgentActionExpressionParser.h"
#include "ArgList.h"
#include "ElementTables.h"
#include "Parser.h"

namespace {

AAValuePtr ParseText(const std::string& text, bool caseSensitive) {
    return AgentActionExpressionParser::Parse(text, caseSensitive);
}

// Reads "(...)" from the parser's stream and answers the text between the
// parentheses; an unclosed parenthesis becomes the parser's error.
std::string ParenthesizedText(AgentActionExpressionParser& parser) {
    ParenParser paren(parser.Stream());
    std::string text = paren.Token();
    if (!paren.OK())
        parser.Error(paren.GetError());
    return text;
}

// ---------------------------------------------------------------------------
// Operands

// A string: quoted (remembering the quote) or a bare word.
class StringElement : public ExpressionElement {
public:
    StringElement(std::string text, char quoteChar) : ExpressionElement(std::move(text)), quote(quoteChar) {}
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<StringElement>(*this); }
    AAValuePtr Parse(AgentActionExpressionParser&) override {
        if (quote)
            return std::make_unique<AAQuotedStringValue>(text, quote);
        return std::make_unique<AAStringValue>(text);
    }

private:
    char quote;
};

// `$0`, `$1`: a capture group.
class MatchElement : public ExpressionElement {
public:
    using ExpressionElement::ExpressionElement;
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<MatchElement>(*this); }
    AAValuePtr Parse(AgentActionExpressionParser&) override {
        long number = 0;
        for (size_t i = 1; i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])); ++i) {
            if (number < INT_MAX / 10)
                number = number * 10 + (text[i] - '0');
        }
        return std::make_unique<AAMatchValue>(text, static_cast<int>(number));
    }
};

// `$Name`, optionally followed by `(designator)`.
class AttributeElement : public ExpressionElement {
public:
    using ExpressionElement::ExpressionElement;
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<AttributeElement>(*this); }
    AAValuePtr Parse(AgentActionExpressionParser& parser) override {
        std::string designator = parser.GetArguments();
        return std::make_unique<AAAttributeValue>(text.substr(1), designator);
    }
};

// `(...)`: the inner text is an expression of its own.
class ParentheticalElement : public ExpressionElement {
public:
    using ExpressionElement::ExpressionElement;
    std::unique_ptr<ExpressionElement> Clone() const override {
        return std::make_unique<ParentheticalElement>(*this);
    }
    AAValuePtr Parse(AgentActionExpressionParser& parser) override {
        return std::make_unique<AAParenthetical>(ParseText(text, parser.CaseSensitive()));
    }
};

// `[i]` behind an expression: the item at an index.
class BracketElement : public ExpressionElement {
public:
    using ExpressionElement::ExpressionElement;
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<BracketElement>(*this); }
    bool CanBeParsed() const override { return false; }
    AAValuePtr Parse2(AgentActionExpressionParser&, AAValue*) override {
        return std::make_unique<AAAt>(nullptr, ParseText(text, true));
    }
};

// `^`: the rest of the text is an export template.
class ExportTemplateElement : public ExpressionElement {
public:
    using ExpressionElement::ExpressionElement;
    std::unique_ptr<ExpressionElement> Clone() const override {
        return std::make_unique<ExportTemplateElement>(*this);
    }
    AAValuePtr Parse(AgentActionExpressionParser& parser) override {
        return std::make_unique<AATemplateValue>(text + parser.Rest());
    }
};

// A backtick: the rest of the text is a shell command. The closing backtick
// is not looked for.
class ShellElement : public ExpressionElement {
public:
    using ExpressionElement::ExpressionElement;
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<ShellElement>(*this); }
    AAValuePtr Parse(AgentActionExpressionParser& parser) override {
        std::string command = text.substr(1) + parser.Rest();
        return std::make_unique<AAShellValue>(parser.Create(command));
    }
};

// Any other word: a number, a boolean, a string, or, before parentheses, a
// regular-expression query on the attribute of that name.
class MysteryElement : public ExpressionElement {
public:
    using ExpressionElement::ExpressionElement;
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<MysteryElement>(*this); }
    AAValuePtr Parse(AgentActionExpressionParser& parser) override {
        if (parser.NextCharIs('(')) {
            std::string pattern = parser.GetArguments();
            return std::make_unique<AARegexValue>(text, pattern, parser.CaseSensitive());
        }
        if (ExpressionToken::IsNumber(text))
            return std::make_unique<AAInteger>(text);
        if (text == "true" || text == "false")
            return std::make_unique<AABoolean>(text);
        return StringConstant(text);
    }
};

// `:count`, `:name`, ... behind a composite.
class CompositeReference : public BinaryFunction {
public:
    using BinaryFunction::BinaryFunction;
    std::unique_ptr<ExpressionElement> Clone() const override {
        return std::make_unique<CompositeReference>(*this);
    }
    bool CanBeParsed() const override { return false; }
    AAValuePtr Parse2(AgentActionExpressionParser& parser, AAValue*) override {
        std::unique_ptr<AACompositeFunction> node;
        if (text == "count")
            node = std::make_unique<AACompositeCount>();
        else if (text == "name")
            node = std::make_unique<AACompositeName>();
        else if (text == "role")
            node = std::make_unique<AACompositeRole>();
        else if (text == "roles")
            node = std::make_unique<AACompositeRoles>();
        else if (text == "kind")
            node = std::make_unique<AACompositeKind>();
        else
            return StringConstant(text);
        node->SetArguments(GetArguments(parser));
        return node;
    }
};

// `.name` behind an expression.
class DotElement : public ExpressionElement {
public:
    using ExpressionElement::ExpressionElement;
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<DotElement>(*this); }
    bool CanBeParsed() const override { return false; }
    AAValuePtr Parse2(AgentActionExpressionParser& parser, AAValue*) override {
        const DotOperatorEntry* entry = FindDotOperator(text);
        if (!entry)
            return StringConstant(text);
        AAValuePtr node = entry->make();
        switch (entry->form) {
        case DotForm::OneToken:
        case DotForm::OneTokenCaseInsensitive:
            // The argument is exactly one token.
            node->SetRight(parser.Create(parser.Token()));
            break;
        case DotForm::ArgumentsCaseSensitive:
            node->SetRight(UnaryFunction::Arguments(parser, true));
            break;
        case DotForm::Arguments:
            node->SetRight(UnaryFunction::Arguments(parser, parser.CaseSensitive()));
            break;
        case DotForm::NoArgument:
            break;
        case DotForm::TokenAndArguments: {
            AAValuePtr first = parser.Create(parser.Token());
            if (first)
                first->SetNext(UnaryFunction::Arguments(parser, parser.CaseSensitive()));
            node->SetRight(std::move(first));
            break;
        }
        }
        return node;
    }
};

// ---------------------------------------------------------------------------
// Operators

// A binary operator: its right operand is exactly one token.
class BinaryOperatorElement : public BinaryFunction {
public:
    BinaryOperatorElement(std::string text, AAValuePtr (*maker)()) : BinaryFunction(std::move(text)), make(maker) {}
    std::unique_ptr<ExpressionElement> Clone() const override {
        return std::make_unique<BinaryOperatorElement>(*this);
    }
    bool CanBeParsed() const override { return false; }
    AAValuePtr Parse2(AgentActionExpressionParser& parser, AAValue*) override {
        AAValuePtr node = make();
        node->SetRight(parser.Create(parser.Token()));
        return node;
    }

private:
    AAValuePtr (*make)();
};

// ",": links the arguments of a list. The expression parser handles it.
class CommaFunction : public BinaryFunction {
public:
    using BinaryFunction::BinaryFunction;
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<CommaFunction>(*this); }
    bool CanBeParsed() const override { return false; }
    bool IsComma() const override { return true; }
};

// "-": negation in operand place, subtraction between operands.
class NegateFunction : public BinaryFunction {
public:
    using BinaryFunction::BinaryFunction;
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<NegateFunction>(*this); }
    AAValuePtr Parse(AgentActionExpressionParser& parser) override {
        AAValuePtr operand = parser.Create(parser.Token());
        if (!operand)
            return StringConstant(text);
        return std::make_unique<AANegate>(std::move(operand));
    }
    AAValuePtr Parse2(AgentActionExpressionParser& parser, AAValue*) override {
        return std::make_unique<AAMinus>(nullptr, parser.Create(parser.Token()));
    }
};

// "!" and "~". A dot operator directly behind the operand is read along
// with it, so that `!$A.contains(x)` negates the whole test. The dot
// operator reads its argument as it would anywhere else, and takes the
// operand as its receiver.
class NotFunction : public UnaryFunction {
public:
    using UnaryFunction::UnaryFunction;
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<NotFunction>(*this); }
    AAValuePtr Parse(AgentActionExpressionParser& parser) override {
        // The operand reads its own arguments, such as the designator of
        // `!inside(/Projects)`.
        AAValuePtr operand = parser.Create(parser.Token());
        if (!operand)
            return StringConstant(text);
        if (parser.NextCharIs('.')) {
            ExpressionToken dot(parser.Token());
            if (AAValuePtr applied = dot.Parse2(parser, operand.get())) {
                applied->SetLeft(std::move(operand));
                operand = std::move(applied);
            }
        }
        return std::make_unique<AANot>(std::move(operand));
    }
};

// A function of the tables: its argument form and its evaluator class.
class TableFunction : public UnaryFunction {
public:
    TableFunction(std::string text, const FunctionEntry* functionEntry)
        : UnaryFunction(std::move(text)), entry(functionEntry) {}
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<TableFunction>(*this); }
    AAValuePtr Parse(AgentActionExpressionParser& parser) override {
        AAValuePtr arguments;
        switch (entry->form) {
        case ArgumentForm::Single:
            arguments = SingleArgument(parser);
            break;
        case ArgumentForm::Arguments:
            arguments = Arguments(parser);
            break;
        case ArgumentForm::Path:
            arguments = PathArgument(parser);
            break;
        case ArgumentForm::Literal:
            arguments = LiteralArguments(parser);
            break;
        case ArgumentForm::Designator:
            arguments = DesignatorAndArguments(parser, GetArguments(parser), entry->minimum);
            if (!arguments)
                return Invalid(entry->message);
            break;
        }
        AAValuePtr node = entry->make();
        node->SetRight(std::move(arguments));
        return node;
    }

private:
    const FunctionEntry* entry;
};

// `find(condition)`: `collect_if(all, condition, $Path)`.
class FindFunction : public UnaryFunction {
public:
    using UnaryFunction::UnaryFunction;
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<FindFunction>(*this); }
    AAValuePtr Parse(AgentActionExpressionParser& parser) override {
        std::string condition = ParenthesizedText(parser);
        std::vector<AAValuePtr> items;
        items.push_back(ParseText("all", parser.CaseSensitive()));
        items.push_back(ParseText(condition, parser.CaseSensitive()));
        items.push_back(ParseText("$Path", parser.CaseSensitive()));
        return std::make_unique<AACollectIf>(ChainArguments(std::move(items)));
    }
};

// `values(attribute)` or `values(designator, attribute)`.
class ValuesFunction : public UnaryFunction {
public:
    using UnaryFunction::UnaryFunction;
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<ValuesFunction>(*this); }
    AAValuePtr Parse(AgentActionExpressionParser& parser) override {
        std::vector<std::string> items = GetArguments(parser);
        if (items.empty())
            return Invalid("syntax error: values");
        std::vector<AAValuePtr> chain;
        if (items.size() == 1) {
            chain.push_back(StringConstant("all"));
            chain.push_back(ParseText(items[0], parser.CaseSensitive()));
        } else {
            chain.push_back(StringConstant(items[0]));
            chain.push_back(ParseText(items[1], parser.CaseSensitive()));
        }
        return std::make_unique<AAValues>(ChainArguments(std::move(chain)));
    }
};

// `eval(expr)`, `eval(designator, expr)` and the same for `action`.
class EvalFunction : public UnaryFunction {
public:
    EvalFunction(std::string text, const char* errorMessage, AAValuePtr (*maker)())
        : UnaryFunction(std::move(text)), message(errorMessage), make(maker) {}
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<EvalFunction>(*this); }
    AAValuePtr Parse(AgentActionExpressionParser& parser) override {
        std::vector<std::string> items = GetArguments(parser);
        if (items.empty())
            return Invalid(message);
        AAValuePtr arguments = items.size() == 1 ? ParseText(items[0], parser.CaseSensitive())
                                                 : DesignatorAndArguments(parser, items);
        AAValuePtr node = make();
        node->SetRight(std::move(arguments));
        return node;
    }

private:
    const char* message;
    AAValuePtr (*make)();
};

// `runCommand(command, input, directory)`.
class ShellFunction : public UnaryFunction {
public:
    using UnaryFunction::UnaryFunction;
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<ShellFunction>(*this); }
    AAValuePtr Parse(AgentActionExpressionParser& parser) override {
        std::vector<std::string> items = GetArguments(parser);
        if (items.empty())
            return Invalid("shell: syntax error");
        std::vector<AAValuePtr> chain;
        for (size_t i = 0; i < items.size() && i < 3; ++i)
            chain.push_back(ParseText(items[i], parser.CaseSensitive()));
        return std::make_unique<AAShellValue>(ChainArguments(std::move(chain)));
    }
};

// `links(designator).query`; the designator defaults to "this".
class LinksFunction : public UnaryFunction {
public:
    using UnaryFunction::UnaryFunction;
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<LinksFunction>(*this); }
    AAValuePtr Parse(AgentActionExpressionParser& parser) override {
        std::string designator = "this";
        if (parser.NextCharIs('('))
            designator = ParenthesizedText(parser);
        if (!parser.NextCharIs('.'))
            return Invalid("links: syntax error");
        char dot;
        parser.ReadRaw(&dot);
        DotParser query(parser.Stream());
        return std::make_unique<AALinks>(designator, query.Token());
    }
};

// The expression form of `if`: `if(condition) {then} else {else}`.
class IfFunction : public UnaryFunction {
public:
    using UnaryFunction::UnaryFunction;
    std::unique_ptr<ExpressionElement> Clone() const override { return std::make_unique<IfFunction>(*this); }
    AAValuePtr Parse(AgentActionExpressionParser& parser) override {
        std::string condition = parser.Token();
        std::string thenText = parser.Token();
        std::string word = parser.Token();
        AAValuePtr elseValue;
        if (word == "else")
            elseValue = ParseText(parser.Token(), parser.CaseSensitive());
        return std::make_unique<AAIfExpression>(ParseText(condition, parser.CaseSensitive()),
                                                ParseText(thenText, parser.CaseSensitive()),
                                                std::move(elseValue));
    }
};

template <class T>
AAValuePtr Make() {
    return std::make_unique<T>();
}

// Every spelling that names a function or an operator, whole and
// case-sensitive, with the element that stands for it.
using ElementMap = std::unordered_map<std::string, std::unique_ptr<ExpressionElement>>;

ElementMap BuildElementMap() {
    ElementMap map;
    for (const FunctionEntry& entry : FunctionTable())
        map.emplace(entry.spelling, std::make_unique<TableFunction>(entry.spelling, &entry));

    map.emplace("find", std::make_unique<FindFunction>("find"));
    map.emplace("values", std::make_unique<ValuesFunction>("values"));
    map.emplace("eval", std::make_unique<EvalFunction>("eval", "eval: syntax error", &Make<AAEval>));
    map.emplace("action", std::make_unique<EvalFunction>("action", "action: syntax error", &Make<AAAction>));
    map.emplace("runCommand", std::make_unique<ShellFunction>("runCommand"));
    map.emplace("links", std::make_unique<LinksFunction>("links"));
    map.emplace("if", std::make_unique<IfFunction>("if"));
    map.emplace("-", std::make_unique<NegateFunction>("-"));
    map.emplace("!", std::make_unique<NotFunction>("!"));
    map.emplace("~", std::make_unique<NotFunction>("~"));
    map.emplace(",", std::make_unique<CommaFunction>(","));

    const std::pair<const char*, AAValuePtr (*)()> binary[] = {
        {"+", &Make<AAPlus>},         {"*", &Make<AAMultiply>},      {"/", &Make<AADivide>},
        {"|", &Make<AAOr>},           {"&", &Make<AAAnd>},           {"<", &Make<AALess>},
        {"<=", &Make<AALessEqual>},   {">", &Make<AAGreater>},       {">=", &Make<AAGreaterEqual>},
        {"=", &Make<AAEqual>},        {"==", &Make<AAEqual>},        {"!=", &Make<AANotEqual>},
    };
    for (const auto& [spelling, maker] : binary)
        map.emplace(spelling, std::make_unique<BinaryOperatorElement>(spelling, maker));
    return map;
}

// Parser::TrimParens(text). A parenthesised token as the tokenizer makes it,
// without quotes, is balanced up to its last character; for such text
// TrimParens answers the text between the outer parentheses, and that is
// taken directly. Parentheses nested a hundred deep would otherwise be
// read by a ParenParser twice on every level.
std::string InnerOfParentheses(const std::string& text) {
    int depth = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '"' || c == '\'')
            return Parser::TrimParens(text);
        if (c == '\\') {
            ++i;
        } else if (c == '(') {
            ++depth;
        } else if (c == ')' && --depth == 0) {
            if (i + 1 != text.size())
                break;
            return text.substr(1, text.size() - 2);
        }
    }
    return Parser::TrimParens(text);
}

const ExpressionElement* FindNamedElement(const std::string& text) {
    static const ElementMap map = BuildElementMap();
    // No spelling is this long; spare long tokens the hashing.
    if (text.size() > 32)
        return nullptr;
    auto found = map.find(text);
    return found == map.end() ? nullptr : found->second.get();
}

}  // namespace

// ---------------------------------------------------------------------------

ExpressionElement::~ExpressionElement() = default;

std::unique_ptr<ExpressionElement> ExpressionElement::Create(const std::string& text) {
    if (text.empty())
        return std::make_unique<StringElement>("", '\0');
    if (const ExpressionElement* named = FindNamedElement(text))
        return named->Clone();
    if (text.size() >= 2) {
        switch (text[0]) {
        case '$':
            if (std::isdigit(static_cast<unsigned char>(text[1])))
                return std::make_unique<MatchElement>(text);
            return std::make_unique<AttributeElement>(text);
        case '"':
        case '\'':
            return std::make_unique<StringElement>(Parser::TrimQuotes(text), text[0]);
        case '(':
            return std::make_unique<ParentheticalElement>(InnerOfParentheses(text));
        case '[':
            return std::make_unique<BracketElement>(Parser::TrimBrackets(text));
        default:
            break;
        }
    }
    switch (text[0]) {
    case '^':
        return std::make_unique<ExportTemplateElement>(text);
    case '`':
        return std::make_unique<ShellElement>(text);
    case '.':
        // ".5" is a number; ".size" a dot operator.
        if (ExpressionToken::IsNumber(text.substr(1)))
            return std::make_unique<MysteryElement>(text);
        return std::make_unique<DotElement>(text.substr(1));
    case ':':
        return std::make_unique<CompositeReference>(text.substr(1));
    default:
        return std::make_unique<MysteryElement>(text);
    }
}

AAValuePtr ExpressionElement::Parse(AgentActionExpressionParser&) { return Invalid(text); }

AAValuePtr ExpressionElement::Parse2(AgentActionExpressionParser&, AAValue*) { return nullptr; }

AAValuePtr ExpressionElement::Invalid(const std::string& text) { return std::make_unique<AAInvalid>(text); }

AAValuePtr ExpressionElement::StringConstant(const std::string& text) {
    return std::make_unique<AAStringValue>(text);
}

// ---------------------------------------------------------------------------
// Argument readers

std::vector<std::string> UnaryFunction::GetArguments(AgentActionExpressionParser& parser) {
    if (!parser.NextCharIs('('))
        return {};
    return ArgList(ParenthesizedText(parser), ',', false).GetList();
}

AAValuePtr UnaryFunction::SingleArgument(AgentActionExpressionParser& parser) {
    std::vector<std::string> items = GetArguments(parser);
    if (items.empty())
        return Invalid("*missing argument*");
    return ParseText(items[0], parser.CaseSensitive());
}

AAValuePtr UnaryFunction::PathArgument(AgentActionExpressionParser& parser) {
    std::vector<std::string> items = GetArguments(parser);
    if (items.empty())
        return ParseText("", parser.CaseSensitive());
    return StringConstant(items[0]);
}

AAValuePtr UnaryFunction::LiteralArguments(AgentActionExpressionParser& parser) {
    if (!parser.NextCharIs('('))
        return StringConstant("");
    return StringConstant(ParenthesizedText(parser));
}

AAValuePtr UnaryFunction::Arguments(AgentActionExpressionParser& parser) {
    return Arguments(parser, parser.CaseSensitive());
}

AAValuePtr UnaryFunction::Arguments(AgentActionExpressionParser& parser, bool caseSensitive) {
    if (!parser.NextCharIs('('))
        return ParseText("", caseSensitive);
    return ParseText(InnerOfParentheses(parser.Token()), caseSensitive);
}

AAValuePtr UnaryFunction::DesignatorAndArguments(AgentActionExpressionParser& parser,
                                                 const std::vector<std::string>& items, size_t minimum) {
    if (items.size() < minimum || items.empty())
        return nullptr;
    std::vector<AAValuePtr> chain;
    chain.reserve(items.size());
    chain.push_back(StringConstant(items[0]));
    for (size_t i = 1; i < items.size(); ++i)
        chain.push_back(ParseText(items[i], parser.CaseSensitive()));
    return ChainArguments(std::move(chain));
}

AAValuePtr ChainArguments(std::vector<AAValuePtr> items) {
    // Link from the back so that each node takes the chain behind it.
    AAValuePtr head;
    for (auto it = items.rbegin(); it != items.rend(); ++it) {
        if (!*it)
            continue;
        (*it)->SetNext(std::move(head));
        head = std::move(*it);
    }
    return head;
}
