#pragma once
// Character-stream parsers. Every piece of the action language, the list
// types and the export templates is read by one of these small parsers, each
// reading one construct from a shared std::istream. A parser never throws: a
// syntax problem is recorded as the error text (the last one wins) and the
// parser answers what it could read.
#include <istream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>

class Parser {
public:
    // A parser over its own copy of the text. The stream keeps its default of
    // skipping white space for formatted reads; tokens switch that off.
    explicit Parser(const std::string& text);
    // A parser that borrows the stream; white-space skipping is turned off.
    explicit Parser(std::istream& stream);
    virtual ~Parser();

    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    // The stream state is good (no end, no failure).
    virtual bool good() const;
    // No error has been recorded.
    virtual bool OK() const;
    // One character. A backslash followed by a second backslash yields one
    // backslash; a backslash followed by anything else puts that character
    // back and yields the backslash. Answers false when nothing could be read.
    virtual bool Read(char* c);
    // One character, unmodified. Answers false when nothing could be read.
    virtual bool ReadRaw(char* c);
    // Reads with Read until `c` (consumed) or the end of the stream. At the end
    // records "unterminated expression: expected <c>" and answers false.
    virtual bool Munch(char c);
    // The content of a quoted string whose opening quote `c` was just read.
    virtual std::string GetQuote(char c);
    // Records an error text; the last one wins.
    virtual void Error(const std::string& message);
    virtual std::string GetError() const;
    // All remaining characters, raw.
    virtual std::string Rest();
    // The stream is good and its next character is `c` (not consumed).
    virtual bool NextCharIs(char c);
    virtual bool NextCharIsSpace();
    // The next character is "." or a decimal digit.
    virtual bool NextCharIsNumeric();

    std::istream& Stream() { return *in; }

    // Removes every `c`. Text that is empty or begins with `c` comes back as is.
    static std::string Strip(const std::string& text, char c);
    // Removes every line feed.
    static std::string CRLF(const std::string& text);
    // Removes white space and newlines at both ends. Text that is not valid
    // UTF-8 yields "encoding error".
    static std::string Trim(const std::string& text);
    // The number at the start of the text, read as a stream reads a double
    // (blanks first, then an optional sign, digits, a point, an exponent);
    // 0 when there is none. Without a stream's cost: numbers are read on
    // every comparison of action code.
    static double ReadDouble(std::string_view text);
    // "x" or 'x' becomes x; anything else is returned as is.
    static std::string TrimQuotes(const std::string& text);
    // The token of a ParenParser over the text.
    static std::string TrimParens(const std::string& text);
    // The token of a BracketParser over the text.
    static std::string TrimBrackets(const std::string& text);
    // \n and \t become line feed and tab; other backslash pairs are kept.
    static std::string EscapeCharacters(const std::string& text);
    // \\ becomes one backslash; any other backslash pair the bare character.
    static std::string EscapeBackslash(const std::string& text);
    // Tab, line feed and carriage return become \t, \n and \r.
    static std::string EncodeCharacters(const std::string& text);
    // As EncodeCharacters, and each backslash is dropped while the character
    // behind it is kept as it is.
    static std::string EncodeCharactersNotBackslash(const std::string& text);
    // The character that closes an export-template token: '^'.
    static char TokenDelimiter() { return '^'; }

protected:
    // Stops skipping white space on formatted reads of the stream.
    void NoSkip();
    // Skips white space, then stops skipping.
    void SkipWhiteSpace();
    // The next character without taking it, as istream::peek answers.
    int Peek();
    // Puts the last character read back into the stream.
    void PutBack(char c);

    std::unique_ptr<std::istringstream> owned;
    std::istream* in;
    std::string error;
};

// Reads a parenthesised expression: the opening "(" is consumed first and the
// answer is the inner text. Quoted strings inside are copied with their quotes
// and nested parentheses are balanced. Unless told to preserve it, a "^" that
// directly follows the closing ")" is consumed too.
class ParenParser : public Parser {
public:
    explicit ParenParser(const std::string& text, bool preserveClosingTokenDelimiter = false);
    explicit ParenParser(std::istream& stream, bool preserveClosingTokenDelimiter = false);

    virtual std::string Token();
    // Drops the closing character from `text`, and eats a following "^"
    // unless the closing token delimiter is to be preserved.
    std::string CloseParentheticalExpression(const std::string& text);

    bool PreserveClosingTokenDelimiter() const { return preserveClosingTokenDelimiter; }

protected:
    // Shared loop of the bracketing parsers.
    std::string Balanced(char open, char close, bool singleQuotes, bool keepBackslash,
                         const char* unclosedMessage);

    bool preserveClosingTokenDelimiter;
};

// "[...]": only double quotes quote, a backslash yields the next character
// alone, the answer is trimmed.
class BracketParser : public ParenParser {
public:
    explicit BracketParser(const std::string& text, bool preserveClosingTokenDelimiter = false);
    explicit BracketParser(std::istream& stream, bool preserveClosingTokenDelimiter = false);
    std::string Token() override;
};

// "{...}", read as BracketParser reads brackets.
class BraceParser : public ParenParser {
public:
    explicit BraceParser(const std::string& text, bool preserveClosingTokenDelimiter = false);
    explicit BraceParser(std::istream& stream, bool preserveClosingTokenDelimiter = false);
    std::string Token() override;
};

// The content of a quoted string whose opening quote has been read. A doubled
// quote yields one quote; \n, \r, \t are decoded; \" \' and \<quote> yield
// the bare quote; other backslash pairs are kept.
class QuoteParser : public Parser {
public:
    QuoteParser(std::istream& stream, char quoteChar);
    QuoteParser(const std::string& text, char quoteChar);
    std::string Token();

private:
    char quoteChar;
};

// A quoted field of tab-separated text, up to an unpaired double quote; a
// doubled quote stays doubled.
class TSVQuoteParser : public Parser {
public:
    explicit TSVQuoteParser(std::istream& stream);
    explicit TSVQuoteParser(const std::string& text);
    std::string Token();
};

// One line, up to line feed or carriage return (consumed) or the end. Quoted
// strings are read whole, without their quotes; a backslash yields the next
// character.
class LineParser : public Parser {
public:
    explicit LineParser(std::istream& stream);
    explicit LineParser(const std::string& text);
    std::string Token();
};

// Copies the text and resolves numeric character entities "&#n;".
class EntityParser : public Parser {
public:
    explicit EntityParser(std::istream& stream);
    explicit EntityParser(const std::string& text);
    std::string Token();
    // Called behind an "&": reads the entity name up to ";" or white space.
    std::string EntityToken();
};

// One dotted name such as a.b.c, ending at an operator character, "(",
// white space or a fourth ".".
class DotParser : public Parser {
public:
    explicit DotParser(std::istream& stream);
    explicit DotParser(const std::string& text);
    std::string Token();
};

// Digits and at most one ".".
class NumberParser : public Parser {
public:
    explicit NumberParser(std::istream& stream);
    explicit NumberParser(const std::string& text);
    std::string Token();
};

// Splits a list at a delimiter character. Quoted strings keep their quotes,
// parentheses are kept whole, a backslash protects the characters that
// IsEscapable names. Each token is trimmed.
class ArgListParser : public Parser {
public:
    ArgListParser(const std::string& text, char delimiter);
    ArgListParser(std::istream& stream, char delimiter);

    virtual std::string Token();
    virtual bool IsEscapable(char c) const;
    char Delimiter() const { return delimiter; }

protected:
    // Reads a "{...}" block into the token; returns false when braces are
    // ordinary characters (they are for a plain list).
    virtual bool ReadBraceBlock(std::string& token);

    char delimiter;
};

// Splits action code into statements: as ArgListParser, but brace blocks are
// kept whole and "{", "}" can be escaped too.
class ActionListParser : public ArgListParser {
public:
    ActionListParser(const std::string& text, char delimiter);
    ActionListParser(std::istream& stream, char delimiter);

    bool IsEscapable(char c) const override;

protected:
    bool ReadBraceBlock(std::string& token) override;
};
