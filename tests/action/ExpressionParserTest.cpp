// The expression level: tokens, elements by spelling, composition by
// priority, and the shape of the trees, compared as dumps.
#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "AAFunctions.h"
#include "ActionTreeDump.h"
#include "AgentActionExpressionParser.h"
#include "ElementTables.h"
#include "ExpressionToken.h"

namespace {

std::string Dump(const std::string& code, bool caseSensitive = true) {
    std::string error;
    AAValuePtr tree = AgentActionExpressionParser::Parse(code, caseSensitive, &error);
    std::string out = ActionTreeDump::Expression(tree.get());
    if (!error.empty())
        out += "error: " + error + "\n";
    return out;
}

std::vector<std::string> Tokens(const std::string& code) {
    AgentActionExpressionParser parser(code, true);
    std::vector<std::string> tokens;
    for (std::string token = parser.Token(); !token.empty(); token = parser.Token())
        tokens.push_back(token);
    return tokens;
}

}  // namespace

TEST(ExpressionParser, TokensEndAtOperatorsDotsAndBrackets) {
    using V = std::vector<std::string>;
    EXPECT_EQ(Tokens("$A.size"), (V{"$A", ".size"}));
    EXPECT_EQ(Tokens("3.14+x"), (V{"3.14", "+", "x"}));
    EXPECT_EQ(Tokens("3.x"), (V{"3", ".x"}));
    EXPECT_EQ(Tokens(".5"), (V{".5"}));
    // A blank inside a word stays inside the token.
    EXPECT_EQ(Tokens("foo bar <= 2"), (V{"foo bar", "<=", "2"}));
    EXPECT_EQ(Tokens("a!=b==c>=d"), (V{"a", "!=", "b", "==", "c", ">=", "d"}));
    EXPECT_EQ(Tokens("$A[1](x){y}"), (V{"$A", "[1]", "(x)", "y"}));
    EXPECT_EQ(Tokens("'a\\'b' \"c\\nd\""), (V{"'a'b'", "\"c\nd\""}));
    // ":" is taken at the start of a token and ends one elsewhere.
    EXPECT_EQ(Tokens("x:count"), (V{"x", ":count"}));
    // A backslash takes the next character as it is.
    EXPECT_EQ(Tokens("a\\+b"), (V{"a+b"}));
    // "^" and the backtick stand alone.
    EXPECT_EQ(Tokens("^value^"), (V{"^", "value^"}));
    // ";" ends a token and is consumed.
    EXPECT_EQ(Tokens("a;b"), (V{"a", "b"}));
}

TEST(ExpressionParser, TokenPredicates) {
    EXPECT_TRUE(ExpressionToken::IsNumber("-.5"));
    EXPECT_TRUE(ExpressionToken::IsNumber("5."));
    EXPECT_TRUE(ExpressionToken::IsNumber("#ff"));
    EXPECT_FALSE(ExpressionToken::IsNumber("."));
    EXPECT_FALSE(ExpressionToken::IsNumber("-"));
    EXPECT_FALSE(ExpressionToken::IsNumber("1.2.3"));
    EXPECT_FALSE(ExpressionToken::IsNumber("+5"));
    EXPECT_FALSE(ExpressionToken::IsNumber("1e5"));
    EXPECT_FALSE(ExpressionToken::IsHexNumber("#"));
    EXPECT_FALSE(ExpressionToken::IsHexNumber("#fg"));
    EXPECT_TRUE(ExpressionToken::IsHexNumber("C0FFEE"));

    EXPECT_TRUE(ExpressionToken("true").IsBoolean());
    EXPECT_FALSE(ExpressionToken("True").IsBoolean());
    EXPECT_TRUE(ExpressionToken("~x").IsOperator());
    EXPECT_FALSE(ExpressionToken("^").IsOperator());
    EXPECT_TRUE(ExpressionToken(".size").IsDotOperator());
    EXPECT_TRUE(ExpressionToken("[0]").IsBracketOperator());
    EXPECT_TRUE(ExpressionToken("+").IsBinaryOperator());
    EXPECT_TRUE(ExpressionToken("-").IsBinaryOperator());
    EXPECT_TRUE(ExpressionToken("-").CanBeParsed());
    EXPECT_FALSE(ExpressionToken("*").CanBeParsed());
    EXPECT_FALSE(ExpressionToken("!").IsBinaryOperator());
    // Spellings are whole words and case-sensitive.
    EXPECT_TRUE(ExpressionToken(":name").IsBinaryOperator());
    EXPECT_FALSE(ExpressionToken("Sqrt").IsBinaryOperator());

    ExpressionToken token("1");
    token = ExpressionToken("2") + "3";
    EXPECT_EQ(token.AsString(), "23");
    EXPECT_TRUE(token.IsNumber());
}

TEST(ExpressionParser, PrecedenceRotatesOnlyUnderTheRoot) {
    EXPECT_EQ(Dump("1 + 2 * 3"),
              "AAPlus\n"
              "  AAInteger \"1\"\n"
              "  AAMultiply\n"
              "    AAInteger \"2\"\n"
              "    AAInteger \"3\"\n");
    // "*" is compared with "=" only, so it takes "1 + 2" whole.
    EXPECT_EQ(Dump("1 = 1 + 2 * 3"),
              "AAEqual\n"
              "  AAInteger \"1\"\n"
              "  AAMultiply\n"
              "    AAPlus\n"
              "      AAInteger \"1\"\n"
              "      AAInteger \"2\"\n"
              "    AAInteger \"3\"\n");
    EXPECT_EQ(Dump("a - b - c"),
              "AAMinus\n"
              "  AAMinus\n"
              "    AAStringValue \"a\"\n"
              "    AAStringValue \"b\"\n"
              "  AAStringValue \"c\"\n");
    // "&" and "|" have one priority and group to the left.
    EXPECT_EQ(Dump("a & b | c"),
              "AAOr\n"
              "  AAAnd\n"
              "    AAStringValue \"a\"\n"
              "    AAStringValue \"b\"\n"
              "  AAStringValue \"c\"\n");
    EXPECT_EQ(Dump("a | b & c"),
              "AAAnd\n"
              "  AAOr\n"
              "    AAStringValue \"a\"\n"
              "    AAStringValue \"b\"\n"
              "  AAStringValue \"c\"\n");
    EXPECT_EQ(Dump("$A < 2 & $B >= 3"),
              "AAAnd\n"
              "  AALess\n"
              "    AAAttributeValue \"A\"\n"
              "    AAInteger \"2\"\n"
              "  AAGreaterEqual\n"
              "    AAAttributeValue \"B\"\n"
              "    AAInteger \"3\"\n");
    EXPECT_EQ(Dump("$A != 1 == 2"),
              "AAEqual\n"
              "  AANotEqual\n"
              "    AAAttributeValue \"A\"\n"
              "    AAInteger \"1\"\n"
              "  AAInteger \"2\"\n");
}

TEST(ExpressionParser, DotOperatorsComposeLikeBinaryOperators) {
    EXPECT_EQ(Dump("$A + $B.size"),
              "AAPlus\n"
              "  AAAttributeValue \"A\"\n"
              "  AASize\n"
              "    AAAttributeValue \"B\"\n");
    // The dot operator binds to the root's right side, here `$B * $C`.
    EXPECT_EQ(Dump("$A + $B * $C.size"),
              "AAPlus\n"
              "  AAAttributeValue \"A\"\n"
              "  AASize\n"
              "    AAMultiply\n"
              "      AAAttributeValue \"B\"\n"
              "      AAAttributeValue \"C\"\n");
    EXPECT_EQ(Dump("$Name.lowercase.contains(\"x\")"),
              "AADotContains case-sensitive\n"
              "  AALowercase\n"
              "    AAAttributeValue \"Name\"\n"
              "  AAParenthetical\n"
              "    AAQuotedStringValue \"x\"\n");
    EXPECT_EQ(Dump("$Name.icontains(\"x\")"),
              "AADotContains case-insensitive\n"
              "  AAAttributeValue \"Name\"\n"
              "  AAParenthetical\n"
              "    AAQuotedStringValue \"x\"\n");
    EXPECT_EQ(Dump("$Text.replace(\"a\", \"b\").size"),
              "AASize\n"
              "  AAReplace\n"
              "    AAAttributeValue \"Text\"\n"
              "    AAQuotedStringValue \"a\"\n"
              "    , AAQuotedStringValue \"b\"\n");
    EXPECT_EQ(Dump("$Date.year"),
              "AAYear\n"
              "  AAAttributeValue \"Date\"\n");
    // An unknown dot name is the text of the name; the receiver is dropped.
    EXPECT_EQ(Dump("$A.nosuch"), "AAStringValue \"nosuch\"\n");
    // A dot operator without arguments leaves a following "(...)" alone.
    EXPECT_EQ(Dump("$A.size(3)"),
              "AASize\n"
              "  AAAttributeValue \"A\"\n"
              "error: Unexpected operator $A\n");
    // `.5` is a number, `.size` a dot operator.
    EXPECT_EQ(Dump(".5"), "AAInteger \".5\"\n");
    EXPECT_EQ(Dump(".size"), "AAInvalid \".size\"\n");
    EXPECT_EQ(Dump("\"abc\"[0]"),
              "AAAt\n"
              "  AAQuotedStringValue \"abc\"\n"
              "  AAInteger \"0\"\n");
    EXPECT_EQ(Dump("$L[1 + 1] + 2"),
              "AAPlus\n"
              "  AAAt\n"
              "    AAAttributeValue \"L\"\n"
              "    AAPlus\n"
              "      AAInteger \"1\"\n"
              "      AAInteger \"1\"\n"
              "  AAInteger \"2\"\n");
    EXPECT_EQ(Dump("compositeFor(\"Pair\"):name(1)"),
              "AACompositeName \"1\"\n"
              "  AACompositeFor\n"
              "    AAStringValue \"\\\"Pair\\\"\"\n");
}

TEST(ExpressionParser, DotOperatorsKeepTheirReceiverAndArgument) {
    EXPECT_EQ(Dump("$Text.speak(\"Alex\")"),
              "AASpeak\n"
              "  AAAttributeValue \"Text\"\n"
              "  AAParenthetical\n"
              "    AAQuotedStringValue \"Alex\"\n"
              "  , AADefaultValue\n");
    EXPECT_EQ(Dump("$Text.speak($Voice)(\"fast\")"),
              "AASpeak\n"
              "  AAAttributeValue \"Text\"\n"
              "  AAParenthetical\n"
              "    AAAttributeValue \"Voice\"\n"
              "  , AAQuotedStringValue \"fast\"\n");
    // The function form has no receiver.
    EXPECT_EQ(Dump("speak(\"hi\")"),
              "AASpeak\n"
              "  (none)\n"
              "  AAQuotedStringValue \"hi\"\n");
    // Behind "!" a dot operator reads its arguments as it does elsewhere.
    EXPECT_EQ(Dump("!$Text.speak($Voice)(\"fast\")"),
              "AANot\n"
              "  AASpeak\n"
              "    AAAttributeValue \"Text\"\n"
              "    AAParenthetical\n"
              "      AAAttributeValue \"Voice\"\n"
              "    , AAQuotedStringValue \"fast\"\n");

    // Whatever its form and wherever it stands, a dot operator keeps its
    // receiver, and one that reads an argument keeps that too.
    const std::string receiver = "AAAttributeValue \"Receiver\"";
    const std::string argument = "AAAttributeValue \"Argument\"";
    for (const DotOperatorEntry& entry : DotOperatorTable()) {
        std::string call = std::string("$Receiver.") + entry.name + "($Argument)";
        for (const std::string& code : {call, "1 + " + call, "!" + call, "2 * 3 = " + call}) {
            std::string dump = Dump(code);
            EXPECT_NE(dump.find(receiver), std::string::npos) << code << "\n" << dump;
            if (entry.form != DotForm::NoArgument) {
                EXPECT_NE(dump.find(argument), std::string::npos) << code << "\n" << dump;
            }
        }
    }
}

TEST(ExpressionParser, PrefixOperators) {
    // "!" reads a following dot operator with its operand.
    EXPECT_EQ(Dump("!$A.contains(\"x\")"),
              "AANot\n"
              "  AADotContains case-sensitive\n"
              "    AAAttributeValue \"A\"\n"
              "    AAParenthetical\n"
              "      AAQuotedStringValue \"x\"\n");
    // A lone operand still reads its own arguments.
    EXPECT_EQ(Dump("!inside(/Projects)"),
              "AANot\n"
              "  AAInside\n"
              "    AAStringValue \"/Projects\"\n");
    EXPECT_EQ(Dump("~$Checked & $Flag"),
              "AAAnd\n"
              "  AANot\n"
              "    AAAttributeValue \"Checked\"\n"
              "  AAAttributeValue \"Flag\"\n");
    // "!" is looser than "=" and rotates it under itself.
    EXPECT_EQ(Dump("!$A = 1"),
              "AANot\n"
              "  AAEqual\n"
              "    AAAttributeValue \"A\"\n"
              "    AAInteger \"1\"\n");
    // "-" negates the one token it reads; `.size` applies to the negation.
    EXPECT_EQ(Dump("-$A.size"),
              "AASize\n"
              "  AANegate\n"
              "    AAAttributeValue \"A\"\n");
    EXPECT_EQ(Dump("1 - -2"),
              "AAMinus\n"
              "  AAInteger \"1\"\n"
              "  AANegate\n"
              "    AAInteger \"2\"\n");
    // Another operator in first place joins the next token into a word.
    EXPECT_EQ(Dump("+5"), "AAStringValue \"+5\"\n");
    EXPECT_EQ(Dump("* 5"), "AAStringValue \"*5\"\n");
}

TEST(ExpressionParser, LiteralsAndNames) {
    EXPECT_EQ(Dump("true"), "AABoolean \"true\"\n");
    EXPECT_EQ(Dump("True"), "AAStringValue \"True\"\n");
    EXPECT_EQ(Dump("#FF00"), "AAInteger \"#FF00\"\n");
    EXPECT_EQ(Dump("-.5"),
              "AANegate\n"
              "  AAInteger \".5\"\n");
    EXPECT_EQ(Dump("parent"), "AAStringValue \"parent\"\n");
    EXPECT_EQ(Dump("'it''s'"), "AAQuotedStringValue \"it's\" single-quoted\n");
    EXPECT_EQ(Dump("\"tab\\there\""), "AAQuotedStringValue \"tab\\there\"\n");
    EXPECT_EQ(Dump(""), "AADefaultValue\n");
    EXPECT_EQ(Dump("$2"), "AAMatchValue \"$2\"\n");
    EXPECT_EQ(Dump("$Name(parent)"), "AAAttributeValue \"Name\" designator \"parent\"\n");
    // A name before parentheses that no table knows is a pattern query.
    EXPECT_EQ(Dump("Name(^Ab.*)"), "AARegexValue \"Name\" pattern \"^Ab.*\" case-sensitive\n");
    EXPECT_EQ(Dump("Name(ab)", false), "AARegexValue \"Name\" pattern \"ab\" case-insensitive\n");
    EXPECT_EQ(Dump("^value($Name)^"), "AATemplateValue \"^value($Name)^\"\n");
    EXPECT_EQ(Dump("`ls -l`"),
              "AAShellValue\n"
              "  AAStringValue \"ls -l`\"\n");
    // Quotes and backslashes keep their meaning inside parentheses.
    EXPECT_EQ(Dump("(\"x)\")"),
              "AAParenthetical\n"
              "  AAQuotedStringValue \"x)\"\n");
    EXPECT_EQ(Dump("(a\\)b)"),
              "AAParenthetical\n"
              "  AAStringValue \"a)b\"\n");
    EXPECT_EQ(Dump("(1 + 2) * 3"),
              "AAMultiply\n"
              "  AAParenthetical\n"
              "    AAPlus\n"
              "      AAInteger \"1\"\n"
              "      AAInteger \"2\"\n"
              "  AAInteger \"3\"\n");
}

TEST(ExpressionParser, FunctionsReadTheirArguments) {
    EXPECT_EQ(Dump("sqrt(4) + 1"),
              "AAPlus\n"
              "  AASqrt\n"
              "    AAInteger \"4\"\n"
              "  AAInteger \"1\"\n");
    EXPECT_EQ(Dump("sqrt"),
              "AASqrt\n"
              "  AAInvalid \"*missing argument*\"\n");
    EXPECT_EQ(Dump("pow(2, 1 + 2)"),
              "AAPower\n"
              "  AAInteger \"2\"\n"
              "  , AAPlus\n"
              "    AAInteger \"1\"\n"
              "    AAInteger \"2\"\n");
    EXPECT_EQ(Dump("list(a, b, c)"),
              "AAList\n"
              "  AAStringValue \"a\"\n"
              "  , AAStringValue \"b\"\n"
              "  , AAStringValue \"c\"\n");
    EXPECT_EQ(Dump("descendedFrom(\"/a/b\")"),
              "AADescendedFrom\n"
              "  AAStringValue \"\\\"/a/b\\\"\"\n");
    EXPECT_EQ(Dump("inside"),
              "AAInside\n"
              "  AADefaultValue\n");
    EXPECT_EQ(Dump("guard(a, b)"),
              "AAGuardField\n"
              "  AAStringValue \"a, b\"\n");
    EXPECT_EQ(Dump("collect(children, $Name + \"x\")"),
              "AACollect\n"
              "  AAStringValue \"children\"\n"
              "  , AAPlus\n"
              "    AAAttributeValue \"Name\"\n"
              "    AAQuotedStringValue \"x\"\n");
    EXPECT_EQ(Dump("collect(children)"), "AAInvalid \"collect: syntax error\"\n");
    EXPECT_EQ(Dump("collect_if(children, $A)"), "AAInvalid \"collect_if: syntax error\"\n");
    EXPECT_EQ(Dump("neighbors(this)"),
              "AANeighbors\n"
              "  AAStringValue \"this\"\n");
    EXPECT_EQ(Dump("neighbors"), "AAInvalid \"export: syntax error\"\n");
    EXPECT_EQ(Dump("find($Checked)"),
              "AACollectIf\n"
              "  AAStringValue \"all\"\n"
              "  , AAAttributeValue \"Checked\"\n"
              "  , AAAttributeValue \"Path\"\n");
    EXPECT_EQ(Dump("values($Tags)"),
              "AAValues\n"
              "  AAStringValue \"all\"\n"
              "  , AAAttributeValue \"Tags\"\n");
    EXPECT_EQ(Dump("values(children, $Tags)"),
              "AAValues\n"
              "  AAStringValue \"children\"\n"
              "  , AAAttributeValue \"Tags\"\n");
    EXPECT_EQ(Dump("values"), "AAInvalid \"syntax error: values\"\n");
    EXPECT_EQ(Dump("eval(\"1+1\")"),
              "AAEval\n"
              "  AAQuotedStringValue \"1+1\"\n");
    EXPECT_EQ(Dump("action"), "AAInvalid \"action: syntax error\"\n");
    EXPECT_EQ(Dump("runCommand(\"ls\", \"\", \"/tmp\", extra)"),
              "AAShellValue\n"
              "  AAQuotedStringValue \"ls\"\n"
              "  , AAQuotedStringValue \"\"\n"
              "  , AAQuotedStringValue \"/tmp\"\n");
    EXPECT_EQ(Dump("runCommand"), "AAInvalid \"shell: syntax error\"\n");
    EXPECT_EQ(Dump("links(parent).outbound.agree.Name"),
              "AALinks designator \"parent\" query \"outbound.agree.Name\"\n");
    EXPECT_EQ(Dump("links.inbound"), "AALinks designator \"this\" query \"inbound\"\n");
    EXPECT_EQ(Dump("links(parent)"), "AAInvalid \"links: syntax error\"\n");
    EXPECT_EQ(Dump("if($A) {1} else {2}"),
              "AAIfExpression\n"
              "  AAParenthetical\n"
              "    AAAttributeValue \"A\"\n"
              "  AAInteger \"1\"\n"
              "  AAInteger \"2\"\n");
    // Older "#" spellings name the same class; the table is case-sensitive.
    EXPECT_EQ(Dump("#word(x)"),
              "AAWord\n"
              "  AAStringValue \"x\"\n");
    EXPECT_EQ(Dump("SQRT(4)"), "AARegexValue \"SQRT\" pattern \"4\" case-sensitive\n");
}

TEST(ExpressionParser, SyntaxProblemsBecomeNodes) {
    EXPECT_EQ(Dump("1 + (2"),
              "AAPlus\n"
              "  AAInteger \"1\"\n"
              "  AAInvalid \"syntax error: unclosed parenthesis\"\n"
              "error: unclosed parenthesis\n");
    EXPECT_EQ(Dump("1 + \"abc"),
              "AAPlus\n"
              "  AAInteger \"1\"\n"
              "  AAInvalid \"syntax error: unterminated expression: expected \\\"\"\n"
              "error: unterminated expression: expected \"\n");
    EXPECT_EQ(Dump("1 +"),
              "AAPlus\n"
              "  AAInteger \"1\"\n"
              "  AAInvalid \"syntax error\"\n");
    // An operator in operand place is invalid; the message of the stray
    // operand names the first token.
    EXPECT_EQ(Dump("1 * * 2"),
              "AAMultiply\n"
              "  AAInteger \"1\"\n"
              "  AAInvalid \"*\"\n"
              "error: Unexpected operator 1\n");
    EXPECT_EQ(Dump("$Name(parent"),
              "AAAttributeValue \"Name\"\n"
              "error: unterminated argument list\n");
    EXPECT_EQ(Dump("\"a\" \"b\""),
              "AAQuotedStringValue \"a\"\n"
              "error: Unexpected operator \"a\"\n");
}

TEST(ExpressionParser, CommentsCostTheCharacterBehindThem) {
    // The blank behind the line feed is lost, the "+" survives.
    EXPECT_EQ(Dump("1 // one\n + 2"),
              "AAPlus\n"
              "  AAInteger \"1\"\n"
              "  AAInteger \"2\"\n");
    // Here the "+" itself is lost.
    EXPECT_EQ(Dump("1 // one\n+ 2"),
              "AAInteger \"1\"\n"
              "error: Unexpected operator 1\n");
    // Two slashes end a comment as a line feed does.
    EXPECT_EQ(Dump("1 // one // + 2"),
              "AAPlus\n"
              "  AAInteger \"1\"\n"
              "  AAInteger \"2\"\n");
    EXPECT_EQ(Dump("6 / 2"),
              "AADivide\n"
              "  AAInteger \"6\"\n"
              "  AAInteger \"2\"\n");
}

TEST(ExpressionParser, HostileInputStaysBounded) {
    const int levels = 100000;
    // Each nesting level up to the limit reads the rest of the text once more;
    // unoptimised sanitizer builds get shorter texts of the same shapes.
#ifdef NDEBUG
    const int size = levels;
#else
    const int size = levels / 10;
#endif
    std::string nested = std::string(size, '(') + "1" + std::string(size, ')');
    std::string out = Dump(nested);
    EXPECT_NE(out.find("AAInvalid \"syntax error: expression nested too deeply\""), std::string::npos);
    EXPECT_LT(out.size(), 100000u);
    EXPECT_EQ(out.find("AAInteger"), std::string::npos);

    std::string unclosed(levels, '(');
    EXPECT_EQ(Dump(unclosed), "AAStringValue \"(\"\nerror: unclosed parenthesis\n");

    // Long flat structures are built, walked and freed without recursion.
    std::string sum = "1";
    std::string list = "list(1";
    for (int i = 0; i < size; ++i) {
        sum += "+1";
        list += ",1";
    }
    list += ")";
    // A long run of operators makes a left-deep tree; past the limit the
    // whole expression is refused.
    std::string error;
    AAValuePtr tree = AgentActionExpressionParser::Parse(sum, true, &error);
    EXPECT_EQ(ActionTreeDump::Expression(tree.get()), "AAInvalid \"syntax error: expression nested too deeply\"\n");
    EXPECT_EQ(error, "expression nested too deeply");

    AAValuePtr call = AgentActionExpressionParser::Parse(list, true);
    int count = 0;
    for (AAValue* node = call->GetArgument(); node; node = node->GetNextArgument())
        ++count;
    EXPECT_EQ(count, size + 1);
}

TEST(ExpressionParser, TreesAreNoDeeperThanTheLimit) {
    const int limit = AgentActionExpressionParser::kMaxTreeDepth;
    auto sum = [](int terms) {
        std::string code = "1";
        for (int i = 1; i < terms; ++i)
            code += "+1";
        return code;
    };
    // `limit` terms make a tree of `limit` levels: the operators and the
    // first term below the deepest one.
    AAValuePtr tree = AgentActionExpressionParser::Parse(sum(limit), true);
    EXPECT_EQ(AgentActionExpressionParser::TreeDepth(tree.get(), INT_MAX), limit);
    EXPECT_STREQ(tree->ClassName(), "AAPlus");
    tree = AgentActionExpressionParser::Parse(sum(limit + 1), true);
    EXPECT_STREQ(tree->ClassName(), "AAInvalid");

    // Nested texts add to the depth of the tree they sit in.
    tree = AgentActionExpressionParser::Parse("(" + sum(limit) + ")", true);
    EXPECT_STREQ(tree->ClassName(), "AAInvalid");
    // Chained arguments stand side by side and do not count.
    std::string list = "list(1";
    for (int i = 0; i < 5000; ++i)
        list += ",1";
    tree = AgentActionExpressionParser::Parse(list + ")", true);
    EXPECT_EQ(AgentActionExpressionParser::TreeDepth(tree.get(), INT_MAX), 2);

    // Dot operators in a row and a million terms end as quickly.
    std::string dots = "$A";
    for (int i = 0; i < limit; ++i)
        dots += ".size";
    EXPECT_STREQ(AgentActionExpressionParser::Parse(dots, true)->ClassName(), "AAInvalid");
    EXPECT_STREQ(AgentActionExpressionParser::Parse(sum(1000000), true)->ClassName(), "AAInvalid");
}

TEST(ExpressionParser, DeepNestingOfEveryKindEnds) {
    const int levels = 1000000;
    const std::string tooDeep = "AAInvalid \"syntax error: expression nested too deeply\"";
    auto repeat = [](const std::string& text, int count) {
        std::string out;
        out.reserve(text.size() * count);
        for (int i = 0; i < count; ++i)
            out += text;
        return out;
    };
    const std::pair<std::string, std::string> cases[] = {
        {"negation", repeat("-", levels) + "1"},
        {"not", repeat("!", levels) + "1"},
        {"tilde", repeat("~", levels) + "1"},
        {"mixed prefixes", repeat("-!", levels / 2) + "1"},
        {"backticks", repeat("`", levels) + "ls"},
        {"parentheses", repeat("(", levels) + "1" + repeat(")", levels)},
        {"brackets", repeat("$A[", levels) + "1" + repeat("]", levels)},
        {"arguments", repeat("sqrt(", levels) + "1" + repeat(")", levels)},
        {"argument lists", repeat("list(1,", levels) + "1" + repeat(")", levels)},
        {"dot arguments", repeat("$A.replace(", levels) + "1" + repeat(")", levels)},
    };
    for (const auto& [kind, code] : cases) {
        std::string error;
        AAValuePtr tree = AgentActionExpressionParser::Parse(code, true, &error);
        std::string dump = ActionTreeDump::Expression(tree.get());
        EXPECT_NE(dump.find(tooDeep), std::string::npos) << kind;
        EXPECT_LT(dump.size(), 100000u) << kind;
    }
}

TEST(ExpressionParser, DumpsOfDeepTreesGrowLinearly) {
    // Lines deeper than 40 levels keep the indentation of level 40 and
    // show their depth.
    AAValuePtr tree = std::make_unique<AAInteger>("1");
    for (int i = 0; i < 42; ++i)
        tree = std::make_unique<AANegate>(std::move(tree));
    std::string dump = ActionTreeDump::Expression(tree.get());
    const std::string margin(80, ' ');
    EXPECT_NE(dump.find("\n" + margin + "AANegate\n" + margin + "[41] AANegate\n" + margin + "[42] AAInteger \"1\"\n"),
              std::string::npos)
        << dump;
    EXPECT_EQ(dump.substr(0, 20), "AANegate\n  AANegate\n");

    const int depth = 5000;
    tree = std::make_unique<AAInteger>("1");
    for (int i = 0; i < depth; ++i)
        tree = std::make_unique<AAPlus>(std::move(tree), std::make_unique<AAInteger>("2"));
    dump = ActionTreeDump::Expression(tree.get());
    EXPECT_LT(dump.size(), static_cast<size_t>(2 * depth + 1) * 110);
    EXPECT_NE(dump.find(margin + "[5000] AAInteger \"1\"\n"), std::string::npos);
}
