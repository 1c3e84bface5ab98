#include <gtest/gtest.h>

#include <sstream>

#include "ActionList.h"
#include "ActionResult.h"
#include "ArgList.h"
#include "Parser.h"
#include "SetList.h"
#include "Value.h"
#include "ValueRecyclingPool.h"

TEST(ParserHelpers, StripTrimAndQuotes) {
    EXPECT_EQ(Parser::Strip("1,234,567", ','), "1234567");
    EXPECT_EQ(Parser::Strip(",5", ','), ",5");  // begins with the character: unchanged
    EXPECT_EQ(Parser::Strip("", ','), "");
    EXPECT_EQ(Parser::CRLF("\na\nb\n"), "ab");

    EXPECT_EQ(Parser::Trim("  \t a b \n\r "), "a b");
    EXPECT_EQ(Parser::Trim("\xC2\xA0\xE2\x80\x83x\xE2\x80\xA8"), "x");  // no-break, em space, line separator
    EXPECT_EQ(Parser::Trim(" caf\xC3\xA9 "), "caf\xC3\xA9");
    EXPECT_EQ(Parser::Trim(" a\xFF "), "encoding error");
    EXPECT_EQ(Parser::Trim("\xED\xA0\x80"), "encoding error");  // an encoded surrogate
    EXPECT_EQ(Parser::Trim("   "), "");

    EXPECT_EQ(Parser::TrimQuotes("\"abc\""), "abc");
    EXPECT_EQ(Parser::TrimQuotes("'abc'"), "abc");
    EXPECT_EQ(Parser::TrimQuotes("'abc\""), "'abc\"");
    EXPECT_EQ(Parser::TrimQuotes("\""), "\"");
    EXPECT_EQ(Parser::TrimQuotes("\"\""), "");

    EXPECT_EQ(Parser::TrimParens("(a(b)c)"), "a(b)c");
    EXPECT_EQ(Parser::TrimParens("  (x, \")\")"), "x, \")\"");
    EXPECT_EQ(Parser::TrimBrackets("[ 3 ]"), "3");
    EXPECT_EQ(Parser::TrimBrackets("[a"), "");

    EXPECT_EQ(Parser::EscapeCharacters("a\\nb\\tc\\qd\\"), "a\nb\tc\\qd\\");
    EXPECT_EQ(Parser::EscapeBackslash("a\\\\b\\qc"), "a\\bqc");
    EXPECT_EQ(Parser::EncodeCharacters("a\tb\nc\rd\\"), "a\\tb\\nc\\rd\\");
    EXPECT_EQ(Parser::EncodeCharactersNotBackslash("a\tb\\xc\\\\d"), "a\\tbxc\\d");
    EXPECT_EQ(Parser::TokenDelimiter(), '^');
}

TEST(ParserCore, ReadMunchRest) {
    Parser p("a\\\\b\\c");
    p.Stream().unsetf(std::ios_base::skipws);
    char c;
    ASSERT_TRUE(p.Read(&c));
    EXPECT_EQ(c, 'a');
    ASSERT_TRUE(p.Read(&c));
    EXPECT_EQ(c, '\\');  // a doubled backslash is one
    ASSERT_TRUE(p.Read(&c));
    EXPECT_EQ(c, 'b');
    ASSERT_TRUE(p.Read(&c));
    EXPECT_EQ(c, '\\');  // a lone backslash stays, the next character is put back
    EXPECT_TRUE(p.NextCharIs('c'));
    EXPECT_EQ(p.Rest(), "c");

    Parser m("xyz");
    EXPECT_TRUE(m.OK());
    EXPECT_FALSE(m.Munch(')'));
    EXPECT_FALSE(m.OK());
    EXPECT_EQ(m.GetError(), "unterminated expression: expected )");

    Parser n("1 ");
    EXPECT_TRUE(n.NextCharIsNumeric());
    n.ReadRaw(&c);
    EXPECT_TRUE(n.NextCharIsSpace());
    EXPECT_FALSE(n.NextCharIsNumeric());
}

TEST(LittleParsers, ParenthesesAndTokenDelimiter) {
    std::istringstream s("(a \"(\" 'x)' \\) (b))^rest");
    ParenParser p(s);
    EXPECT_EQ(p.Token(), "a \"(\" 'x)' \\) (b)");
    EXPECT_TRUE(p.OK());
    std::string rest;
    std::getline(s, rest);
    EXPECT_EQ(rest, "rest");  // the closing ^ was eaten

    std::istringstream s2("(a)^rest");
    ParenParser keep(s2, true);
    EXPECT_EQ(keep.Token(), "a");
    std::getline(s2, rest);
    EXPECT_EQ(rest, "^rest");

    ParenParser open("(a (b)");
    EXPECT_EQ(open.Token(), "");
    EXPECT_EQ(open.GetError(), "unclosed parenthesis");

    BraceParser brace("{ $A=1; {x} }");
    EXPECT_EQ(brace.Token(), "$A=1; {x}");
    BraceParser badBrace("{ a");
    EXPECT_EQ(badBrace.Token(), "");
    EXPECT_EQ(badBrace.GetError(), "unclosed brace");
    BracketParser bracket("[a\\]b 'c]");
    EXPECT_EQ(bracket.Token(), "a]b 'c");
    BracketParser badBracket("[a");
    badBracket.Token();
    EXPECT_EQ(badBracket.GetError(), "unclosed bracket");
}

TEST(LittleParsers, Quotes) {
    QuoteParser q(std::string("a\\nb\\tc\\rd \\\"e\\' \"\"f\\x\" tail"), '"');
    EXPECT_EQ(q.Token(), "a\nb\tc\rd \"e' \"f\\x");
    EXPECT_TRUE(q.OK());
    EXPECT_EQ(q.Rest(), " tail");

    QuoteParser single("it\\'s' x", '\'');
    EXPECT_EQ(single.Token(), "it's");

    QuoteParser open("abc", '\'');
    EXPECT_EQ(open.Token(), "abc");
    EXPECT_EQ(open.GetError(), "unterminated expression: expected '");

    TSVQuoteParser tsv("a\"\"b\"\tc");
    EXPECT_EQ(tsv.Token(), "a\"\"b");
    EXPECT_EQ(tsv.Rest(), "\tc");
    TSVQuoteParser tsvOpen("abc");
    tsvOpen.Token();
    EXPECT_EQ(tsvOpen.GetError(), "unterminated expression: expected \"");
}

TEST(LittleParsers, LineEntityDotNumber) {
    std::istringstream lines("one \"two\nthree\" \\x\nsecond\r\nthird");
    LineParser l(lines);
    EXPECT_EQ(l.Token(), "one two\nthree x");
    LineParser l2(lines);
    EXPECT_EQ(l2.Token(), "second");
    EXPECT_EQ(LineParser(lines).Token(), "");
    EXPECT_EQ(LineParser(lines).Token(), "third");

    EXPECT_EQ(EntityParser("a&#65;b&#233;&amp;c&;d").Token(), "aAb\xC3\xA9&amp;cd");
    EXPECT_EQ(EntityParser("x & y").Token(), "x & y");
    EXPECT_EQ(EntityParser("tail&amp").Token(), "tail&amp");

    std::istringstream dots("$a.b.c.d.e+1");
    DotParser d(dots);
    EXPECT_EQ(d.Token(), "$a.b.c.d");  // the fourth dot is put back
    EXPECT_EQ(dots.get(), '.');
    EXPECT_EQ(DotParser("name(x)").Token(), "name");
    EXPECT_EQ(DotParser("'a b'.c d").Token(), "'a b'.c");
    EXPECT_EQ(DotParser("x'y z").Token(), "x'y");
    EXPECT_EQ(DotParser("a\\+b+c").Token(), "a+b");

    NumberParser n("12.5.3");
    EXPECT_EQ(n.Token(), "12.5");
    EXPECT_EQ(n.GetError(), "unexpected decimal");
    NumberParser n2("42abc");
    EXPECT_EQ(n2.Token(), "42");
    EXPECT_TRUE(n2.OK());
}

namespace {
std::vector<std::string> Tokens(ArgListParser& p) {
    std::vector<std::string> out;
    while (p.good()) out.push_back(p.Token());
    return out;
}
}  // namespace

TEST(LittleParsers, ArgListAndActionList) {
    ArgListParser a(" a ; \"b;c\" ; f(x;y)^ ; 'q;r' ; s't;u ; \\;v\\w ; {p;q}", ';');
    std::vector<std::string> expected{"a", "\"b;c\"", "f(x;y)^", "'q;r'", "s't", "u", ";v\\w", "{p",
                                      "q}"};
    EXPECT_EQ(Tokens(a), expected);

    ActionListParser s("$A=1; if($B){$C=2;$D=3} else {$E=\"x;y\"} ; \\{x", ';');
    std::vector<std::string> statements{"$A=1", "if($B){$C=2;$D=3} else {$E=\"x;y\"}", "{x"};
    EXPECT_EQ(Tokens(s), statements);

    ArgListParser colon("key: value", ':');
    EXPECT_EQ(Tokens(colon), (std::vector<std::string>{"key", "value"}));
}

TEST(ParserNumbers, ReadDoubleReadsAsAStreamDoes) {
    // Each case is what reading the text with `stream >> double` gives.
    for (const char* text : {"12", " 12", "-1.5", "+2", ".5", "1e3", "1.5e-2", "12abc", "1.2.3", "3 4", "0x10", "",
                             "abc", "inf", "nan", "--1", "+-1", "1e", "1e+", ".", "-", "1E5x", "007"}) {
        std::istringstream in(text);
        double expected = 0.0;
        in >> expected;
        EXPECT_DOUBLE_EQ(Parser::ReadDouble(text), expected) << text;
    }
}
