#pragma once
// The expression level of action code. The parser reads one token at a time
// from its stream, maps it to an ExpressionElement by spelling, and composes
// the nodes into a tree of AAValues by operator priority.
//
// Composition is deliberately shallow: a new operator is compared with the
// root of the tree only, and at most the root's right side is rotated under
// it. So `1 = 1 + 2 * 3` reads as `1 = ((1 + 2) * 3)`. Existing action code
// depends on this reading.
//
// A syntax problem never throws. It is recorded as the parser's error (the
// last one wins); operands made after that are AAInvalid "syntax error: ..."
// while the tree built so far stays.
#include <istream>
#include <string>

#include "AAValue.h"
#include "ExpressionToken.h"
#include "Parser.h"

class AgentActionExpressionParser : public Parser {
public:
    AgentActionExpressionParser(const std::string& text, bool caseSensitive);
    // Borrows the stream.
    AgentActionExpressionParser(std::istream& stream, bool caseSensitive);

    // The expression of `text`. Nested parses (parentheses, arguments) come
    // here too; past a fixed nesting depth the answer is AAInvalid instead
    // of a deeper parse. `error`, when given, receives the parser's error.
    static AAValuePtr Parse(const std::string& text, bool caseSensitive, std::string* error = nullptr);

    // The expression of the whole stream.
    AAValuePtr Parse();

    // The next token; "" at the end.
    std::string Token();

    // The node of a token in operand place.
    AAValuePtr Create(const ExpressionToken& token);
    AAValuePtr Create(const std::string& text) { return Create(ExpressionToken(text)); }

    // The designator text of a following "(...)", or "".
    std::string GetArguments();

    bool CaseSensitive() const { return caseSensitive; }

    // Skips a "//" comment whose first "/" has been read: up to a line feed
    // or to the next "//". The character behind the comment is lost too;
    // existing action code has been written around that.
    static void SkipComment(Parser& parser);

    // How deep parses may nest before the parser gives up.
    static constexpr int kMaxNesting = 100;
    static const char* const kTooDeepMessage;

private:
    // One expression up to the end of the stream or up to a "," that links
    // it to the next argument (then `commaFollows` is set).
    AAValuePtr ParseSegment(bool& commaFollows);
    void Compose(AAValuePtr& tree, AAValuePtr value);

    bool caseSensitive;
};

// Counts nested parses on the current thread, so that deeply nested text
// ends with an error instead of a stack overflow.
class StParseNesting {
public:
    StParseNesting();
    ~StParseNesting();
    StParseNesting(const StParseNesting&) = delete;
    StParseNesting& operator=(const StParseNesting&) = delete;
    bool TooDeep() const;

private:
    static thread_local int depth;
};
