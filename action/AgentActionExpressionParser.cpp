#include "AgentActionExpressionParser.h"

#include <cctype>
#include <utility>
#include <vector>

#include "AAValue.h"
#include "Log.h"

const char* const AgentActionExpressionParser::kTooDeepMessage = "expression nested too deeply";

thread_local int StParseNesting::depth = 0;
thread_local size_t StParseNesting::nestedText = 0;
thread_local size_t StParseNesting::outermostText = 0;

StParseNesting::StParseNesting(size_t textSize) : size(textSize) {
    // The outermost parse may hold a text of any size; nested ones may hold
    // as much again and a fixed amount more between them.
    if (++depth == 1)
        outermostText = size;
    else
        nestedText += size;
}

StParseNesting::~StParseNesting() {
    if (--depth == 0)
        outermostText = 0;
    else
        nestedText -= size;
}

bool StParseNesting::TooDeep() const {
    return depth > AgentActionExpressionParser::kMaxNesting || nestedText > kMaxNestedText + outermostText;
}

namespace {

// Expression parses under way on this thread; the outermost one checks the
// depth of the tree it answers.
thread_local int expressionParses = 0;

}  // namespace

AgentActionExpressionParser::AgentActionExpressionParser(const std::string& text, bool isCaseSensitive)
    : Parser(text), caseSensitive(isCaseSensitive) {
    NoSkip();
}

AgentActionExpressionParser::AgentActionExpressionParser(std::istream& stream, bool isCaseSensitive)
    : Parser(stream), caseSensitive(isCaseSensitive) {}

std::atomic<long> AgentActionExpressionParser::parseCount{0};

AAValuePtr AgentActionExpressionParser::Parse(const std::string& text, bool caseSensitive, std::string* error) {
    parseCount.fetch_add(1, std::memory_order_relaxed);
    StParseNesting nesting(text.size());
    if (nesting.TooDeep()) {
        LogFormat("Action code nested too deeply (more than %d levels or %zu bytes)", kMaxNesting,
                  StParseNesting::kMaxNestedText);
        if (error)
            *error = kTooDeepMessage;
        return ExpressionElement::Invalid(std::string("syntax error: ") + kTooDeepMessage);
    }
    AgentActionExpressionParser parser(text, caseSensitive);
    ++expressionParses;
    AAValuePtr tree = parser.Parse();
    bool outermost = --expressionParses == 0;
    if (error)
        *error = parser.GetError();
    if (outermost && TreeDepth(tree.get(), kMaxTreeDepth) > kMaxTreeDepth) {
        LogFormat("Action code makes a tree more than %d levels deep", kMaxTreeDepth);
        if (error)
            *error = kTooDeepMessage;
        return ExpressionElement::Invalid(std::string("syntax error: ") + kTooDeepMessage);
    }
    return tree;
}

int AgentActionExpressionParser::TreeDepth(const AAValue* root, int limit) {
    if (!root)
        return 0;
    std::vector<std::pair<const AAValue*, int>> stack{{root, 1}};
    AAValueParts parts;
    int deepest = 0;
    while (!stack.empty()) {
        auto [node, depth] = stack.back();
        stack.pop_back();
        if (depth > deepest) {
            deepest = depth;
            if (deepest > limit)
                break;
        }
        if (const AAValue* next = node->GetNextArgument())
            stack.emplace_back(next, depth);
        parts.fields.clear();
        parts.operands.clear();
        node->Describe(parts);
        for (const AAValue* operand : parts.operands) {
            if (operand)
                stack.emplace_back(operand, depth + 1);
        }
    }
    return deepest;
}

AAValuePtr AgentActionExpressionParser::Parse() {
    bool commaFollows = false;
    AAValuePtr head = ParseSegment(commaFollows);
    // Behind a "," the rest of the text is the next argument, parsed afresh
    // and linked behind the previous one. This is a loop rather than a
    // nested parse so that a long argument list does not nest.
    AAValue* tail = head.get();
    while (commaFollows && tail) {
        AgentActionExpressionParser rest(*in, caseSensitive);
        AAValuePtr following = rest.ParseSegment(commaFollows);
        AAValue* last = following.get();
        tail->SetNext(std::move(following));
        tail = last;
    }
    return head;
}

AAValuePtr AgentActionExpressionParser::ParseSegment(bool& commaFollows) {
    commaFollows = false;
    ExpressionToken first(Token());
    if (first.empty())
        return std::make_unique<AADefaultValue>();

    AAValuePtr tree;
    if (first.CanBeParsed())
        tree = first.Parse(*this);
    // An operator in first place joins the next token: "+" and "5" make "+5".
    if (!tree && first.IsOperator())
        first = first + Token();
    if (!tree)
        tree = Create(first);

    while (good() && !tooDeep) {
        SkipWhiteSpace();
        ExpressionToken next(Token());
        if (next.empty())
            break;
        if (next.IsComma()) {
            if (!tree) {
                Error("Unexpected operator " + next.AsString());
                break;
            }
            commaFollows = true;
            break;
        }
        if (next.IsBinaryOperator()) {
            AAValuePtr value = next.Parse2(*this, tree.get());
            if (!value) {
                Error("Unexpected operator " + next.AsString());
                break;
            }
            Compose(tree, std::move(value));
        } else if (next.IsDotOperator() || next.IsBracketOperator()) {
            Compose(tree, next.Parse2(*this, tree.get()));
        } else {
            // The message names the first token of the expression.
            Error("Unexpected operator " + first.AsString());
            break;
        }
    }
    return tree;
}

void AgentActionExpressionParser::Compose(AAValuePtr& tree, AAValuePtr value) {
    if (!value)
        return;
    if (!tree) {
        tree = std::move(value);
        return;
    }
    if (tree->Priority() < value->Priority()) {
        // The new node binds tighter than the root: it takes the root's
        // right side as its left and becomes the root's right side.
        value->SetLeft(tree->TakeRight());
        tree->SetRight(std::move(value));
    } else {
        value->SetLeft(std::move(tree));
        tree = std::move(value);
    }
}

AAValuePtr AgentActionExpressionParser::Create(const ExpressionToken& token) {
    if (!OK())
        return ExpressionElement::Invalid("syntax error: " + GetError());
    if (token.empty())
        return ExpressionElement::Invalid("syntax error");
    if (token.CanBeParsed()) {
        // An operand may read further operands from this stream (`- - 1`)
        // or parse texts of its own; each level counts.
        StParseNesting nesting(token.AsString().size());
        if (nesting.TooDeep()) {
            LogFormat("Action code nested too deeply (more than %d levels or %zu bytes)", kMaxNesting,
                      StParseNesting::kMaxNestedText);
            tooDeep = true;
            Error(kTooDeepMessage);
            return ExpressionElement::Invalid(std::string("syntax error: ") + kTooDeepMessage);
        }
        return token.Parse(*this);
    }
    if (token.IsNumber())
        return std::make_unique<AAInteger>(token.AsString());
    if (token.IsBoolean())
        return std::make_unique<AABoolean>(token.AsString());
    return ExpressionElement::Invalid(token.AsString());
}

std::string AgentActionExpressionParser::GetArguments() {
    if (!NextCharIs('('))
        return "";
    ParenParser paren(Token());
    std::string text = paren.Token();
    if (!paren.OK()) {
        Error("unterminated argument list");
        return "";
    }
    return text;
}

void AgentActionExpressionParser::SkipComment(Parser& parser) {
    char c;
    parser.ReadRaw(&c);  // the second "/"
    int slashes = 0;
    while (parser.ReadRaw(&c)) {
        if (c == '\n')
            break;
        if (c == '/') {
            if (++slashes == 2)
                break;
        } else {
            slashes = 0;
        }
    }
    // The character behind the end of the comment goes too.
    parser.ReadRaw(&c);
}

std::string AgentActionExpressionParser::Token() {
    SkipWhiteSpace();
    int peeked = Peek();
    if (peeked == std::char_traits<char>::eof())
        return "";
    char c = static_cast<char>(peeked);

    switch (c) {
    case '^':
    case '`':
        ReadRaw(&c);
        return std::string(1, c);
    case '(': {
        ParenParser paren(*in);
        std::string text = paren.Token();
        if (!paren.OK()) {
            Error(paren.GetError());
            return "(" + text;
        }
        return "(" + text + ")";
    }
    case '{': {
        BraceParser brace(*in);
        std::string text = brace.Token();
        if (!brace.OK())
            Error(brace.GetError());
        return text;
    }
    case '[': {
        BracketParser bracket(*in);
        std::string text = bracket.Token();
        if (!bracket.OK()) {
            Error(bracket.GetError());
            return "[" + text;
        }
        return "[" + text + "]";
    }
    case '"':
    case '\'': {
        ReadRaw(&c);
        QuoteParser quote(*in, c);
        std::string text = quote.Token();
        if (!quote.OK())
            Error(quote.GetError());
        return c + text + c;
    }
    case '/':
        ReadRaw(&c);
        if (!NextCharIs('/'))
            return "/";
        SkipComment(*this);
        break;
    default:
        break;
    }

    peeked = Peek();
    if (peeked != std::char_traits<char>::eof() && ExpressionToken::IsOperator(static_cast<char>(peeked))) {
        ReadRaw(&c);
        std::string op(1, c);
        if ((c == '!' || c == '<' || c == '=' || c == '>') && NextCharIs('=')) {
            ReadRaw(&c);
            op += c;
        }
        return op;
    }

    std::string text;
    bool allDigits = true;
    while (Read(&c)) {
        if (ExpressionToken::IsOperator(c) || c == '(' || c == '[' || c == '{') {
            PutBack(c);
            break;
        }
        if (c == ':' && !text.empty()) {
            PutBack(c);
            break;
        }
        if (c == ';')
            break;
        if (c == '\\') {
            char escaped;
            if (ReadRaw(&escaped))
                text += escaped;
            allDigits = false;
            continue;
        }
        if (c == '.') {
            // "3.14" stays one token; "3.x" and "$A.size" end before the dot.
            int following = Peek();
            bool letterFollows = following != std::char_traits<char>::eof() &&
                                 std::isalpha(static_cast<unsigned char>(following));
            if (!allDigits || (!text.empty() && letterFollows)) {
                PutBack(c);
                break;
            }
            text += c;
            allDigits = false;
            continue;
        }
        text += c;
        if (c < '0' || c > '9')
            allDigits = false;
    }
    return Trim(text);
}
