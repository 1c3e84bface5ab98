#include "AgentActionParser.h"

#include "Action.h"
#include "AgentActionExpressionParser.h"
#include "ElementTables.h"

AgentActionParser::AgentActionParser(const std::string& statement) : Parser(statement) { NoSkip(); }

std::unique_ptr<AgentActionParser> AgentActionParser::For(const std::string& statement) {
    return std::make_unique<AgentActionParser>(statement);
}

AATokenPtr AgentActionParser::Parse(const std::string& statement) {
    AgentActionParser parser(statement);
    return parser.ParseStatement();
}

std::string AgentActionParser::Token() {
    SkipWhiteSpace();
    char c;
    if (NextCharIs('/')) {
        ReadRaw(&c);
        if (!NextCharIs('/'))
            return "/";
        AgentActionExpressionParser::SkipComment(*this);
    }
    if (NextCharIs('=') || NextCharIs('|') || NextCharIs('&')) {
        AgentActionOperatorParser op(*in);
        std::string text = op.Token();
        if (!op.OK())
            Error(op.GetError());
        return text;
    }
    if (NextCharIs('"')) {
        ReadRaw(&c);
        QuoteParser quote(*in, '"');
        std::string text = quote.Token();
        if (!quote.OK())
            Error(quote.GetError());
        return text;
    }
    if (NextCharIs('{')) {
        BraceParser brace(*in);
        std::string text = brace.Token();
        if (!brace.OK())
            Error(brace.GetError());
        return text;
    }
    if (NextCharIs('(')) {
        ParenParser paren(*in);
        std::string text = paren.Token();
        if (!paren.OK())
            Error(paren.GetError());
        return "(" + text + ")";
    }

    std::string text;
    while (Read(&c)) {
        if (c == '=' || ((c == '&' || c == '|') && NextCharIs('='))) {
            PutBack(c);
            return Trim(text);
        }
        if (c == '(') {
            PutBack(c);
            ParenParser paren(*in);
            std::string inner = paren.Token();
            if (!paren.OK())
                Error(paren.GetError());
            text += "(" + inner + ")";
            continue;
        }
        if (c == '\\') {
            char escaped;
            if (ReadRaw(&escaped))
                text += escaped;
            continue;
        }
        if (c == '{') {
            PutBack(c);
            return Trim(text);
        }
        text += c;
        // A head that begins with these letters is cut here, whatever
        // follows: `iffy=1` is an `if` statement.
        if (text == "if" || text == "var")
            return text;
    }
    return Trim(text);
}

AATokenPtr AgentActionParser::ParseStatement() {
    std::string head = Token();

    size_t each = head.find(".each(");
    if (each != std::string::npos) {
        size_t start = each + 6;  // behind "each("
        size_t close = head.rfind(')');
        size_t end = (close == std::string::npos || close < start) ? head.size() : close;
        std::string receiver = head.substr(0, each);
        std::string variable = Trim(head.substr(start, end - start));
        std::string body = Token();
        return Action::CreateEach(Action::ParseExpression(receiver), variable, Action::Create(body));
    }

    if (head == "if") {
        std::string condition = Token();
        std::string thenText = Token();
        std::string third = Token();
        std::string elseText;
        if (third == "else")
            elseText = Token();
        else if (!third.empty())
            return nullptr;
        return Action::CreateIf(condition, thenText, elseText);
    }

    if (head == "var") {
        std::string names = Token();
        std::string op = Token();
        if (op.empty())
            return Action::CreateVar(names);
        std::string rest = Trim(Rest());
        if (op[0] == '=')
            return Action::CreateVar(names, rest);
        return Action::CreateVar(names);
    }

    std::string op = Token();
    if (op.empty()) {
        if (head.empty())
            return nullptr;
        AAValuePtr expression = Action::ParseExpression(head);
        if (!expression)
            return nullptr;
        return Action::CreateExpressionEvaluator(std::move(expression));
    }

    std::string rest = Trim(Rest());
    switch (op[0]) {
    case '&':
        return Action::CreateAndAssign(head, rest);
    case '=':
        return Action::CreateAssign(head, rest);
    case '|':
        return Action::CreateOrAssign(head, rest);
    default:
        // A statement that begins with a quoted string: the string is
        // quoted again and the whole read as an expression.
        return Action::CreateExpressionEvaluator(Action::ParseExpression("\"" + head + "\"" + op + rest));
    }
}

std::string AgentActionOperatorParser::Token() {
    char c;
    if (!ReadRaw(&c)) {
        Error("Illegal operator");
        return "";
    }
    if (c == '=')
        return "=";
    if (c == '|' || c == '&') {
        if (NextCharIs('=')) {
            char equals;
            ReadRaw(&equals);
            return std::string(1, c) + "=";
        }
        Error(std::string("Incomplete operator:") + c);
        return "";
    }
    Error("Illegal operator");
    return "";
}

const std::vector<std::string>& AgentActionParser::Operators() {
    static const std::vector<std::string> list = [] {
        std::vector<std::string> names;
        for (const FunctionEntry& entry : FunctionTable()) {
            if (entry.offered)
                names.push_back(entry.spelling);
        }
        for (const char* special : {"find", "values", "eval", "action", "runCommand", "links", "if"})
            names.push_back(special);
        return names;
    }();
    return list;
}

const std::vector<std::string>& AgentActionParser::DotOperators() {
    static const std::vector<std::string> list = {
        "contains", "icontains", "containsAnyOf", "icontainsAnyOf", "format", "toNumber", "size", "empty",
        "substr", "tr", "replace", "split", "at", "lookup", "intersect", "sort", "isort", "nsort", "unique",
        "reverse", "paragraphs", "paragraphCount", "paragraph", "words", "lowercase", "uppercase", "capitalize",
        "speak", "play", "json", "year", "month", "week", "day", "hour", "minute", "second", "weekday", "red",
        "blue", "green", "hue", "saturation", "brightness", "precision", "isbn10", "isbn13", "min", "max",
        "count", "sum", "avg", "beginsWith", "endsWith", "find", "keys", "trim", "wordList", "nounList",
        "paragraphList", "following", "next", "first", "last", "countOccurrencesOf", "each", "bold", "italic",
        "plain", "fontSize", "textColor", "remove", "every", "any", "deleteCharacters", "collect", "collect_if",
    };
    return list;
}

const std::vector<std::string>& AgentActionParser::OperatorsTakingDesignator() {
    static const std::vector<std::string> list = {
        "collect", "collect_if", "links", "count", "count_if", "sum", "sum_if", "avg", "avg_if", "every", "any",
        "format", "do", "exportedString", "speak", "play", "eval", "values", "action", "descendedFrom", "inside",
        "contains", "linkedTo", "linkedFrom", "originalLinkedTo", "originalLinkedFrom", "delete", "distanceTo",
        "drivingTimeTo", "linkTo", "linkToOriginal", "unlinkTo", "linkFrom", "linkFromOriginal", "unlinkFrom",
        "unlinkToOriginal", "unlinkFromOriginal", "similarTo", "word", "distance", "notify", "inheritsFrom",
        "neighbors", "neighbors2", "neighborsWithin", "neighbors2Within", "compositeFor", "compositeWithName",
        "my",
    };
    return list;
}
