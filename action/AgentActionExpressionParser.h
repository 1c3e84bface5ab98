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
#include <cstddef>
#include <atomic>
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
    // How many texts have been parsed so far in this process, nested parses
    // included: compiled actions are meant to be parsed once, and the
    // benchmarks check that running them parses nothing.
    static long ParseCount() { return parseCount.load(std::memory_order_relaxed); }

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

    // How deep parses may nest before the parser gives up. Every recursive
    // step counts: nested parses of a text, and operands that read further
    // operands from the same stream (`- - 1`, `!!x`).
    static constexpr int kMaxNesting = 100;
    // How deep a finished tree may be. Long runs of operators build deep
    // trees without nesting (`1+1+...` is left-deep); the outermost parse
    // answers AAInvalid for a tree deeper than this, so that code which
    // walks trees recursively stays within the stack.
    static constexpr int kMaxTreeDepth = 1000;
    static const char* const kTooDeepMessage;

    // The depth of a tree: 1 for a leaf. Arguments chained behind a node
    // stand at its depth. Counting stops past `limit`, which keeps the walk
    // short for a huge tree.
    static int TreeDepth(const AAValue* root, int limit);

private:
    // One expression up to the end of the stream or up to a "," that links
    // it to the next argument (then `commaFollows` is set).
    AAValuePtr ParseSegment(bool& commaFollows);
    void Compose(AAValuePtr& tree, AAValuePtr value);

    bool caseSensitive;
    // Set when an operand was nested too deeply; the parser then reads no
    // further.
    bool tooDeep = false;
    static std::atomic<long> parseCount;
};

// Counts nested parses on the current thread, so that deeply nested text
// ends with an error instead of a stack overflow. Each nested parse also
// counts the size of the text it holds: every level keeps copies of the
// rest of the text, so a huge text nested deeply would otherwise cost its
// size many times over.
class StParseNesting {
public:
    explicit StParseNesting(size_t textSize = 0);
    ~StParseNesting();
    StParseNesting(const StParseNesting&) = delete;
    StParseNesting& operator=(const StParseNesting&) = delete;
    // Nested more than kMaxNesting levels, or the nested parses hold more
    // text between them than the outermost one and kMaxNestedText bytes.
    bool TooDeep() const;

    static constexpr size_t kMaxNestedText = size_t(16) << 20;

private:
    size_t size;
    static thread_local int depth;
    static thread_local size_t nestedText;
    static thread_local size_t outermostText;
};
