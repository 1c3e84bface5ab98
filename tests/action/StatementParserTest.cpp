// The statement level: splitting, statement forms, and the completion lists.
#include <gtest/gtest.h>

#include <string>

#include "Action.h"
#include "ActionTreeDump.h"
#include "AgentActionExpressionParser.h"
#include "AgentActionParser.h"
#include "ElementTables.h"

namespace {

std::string Statements(const std::string& code) { return ActionTreeDump::Statements(*Action::Create(code)); }

std::string FirstLine(const std::string& code) {
    AAValuePtr tree = AgentActionExpressionParser::Parse(code, true);
    std::string dump = ActionTreeDump::Expression(tree.get());
    return dump.substr(0, dump.find_first_of(" \n"));
}

}  // namespace

TEST(StatementParser, SplittingAtSemicolons) {
    EXPECT_EQ(Statements("$A=1;$B=2"),
              "AAAssign \"$A\"\n"
              "  AAInteger \"1\"\n"
              "AAAssign \"$B\"\n"
              "  AAInteger \"2\"\n");
    EXPECT_EQ(Statements("$A=\"x;y\""),
              "AAAssign \"$A\"\n"
              "  AAQuotedStringValue \"x;y\"\n");
    // Empty statements vanish; `$X=` has the empty expression on its right.
    EXPECT_EQ(Statements("$X=; ;$B"),
              "AAAssign \"$X\"\n"
              "  AADefaultValue\n"
              "AAExpressionToken\n"
              "  AAAttributeValue \"B\"\n");
    // A ";" inside a comment still ends the statement.
    EXPECT_EQ(Statements("$A=1 // set A; $B=2"),
              "AAAssign \"$A\"\n"
              "  AAInteger \"1\"\n"
              "AAAssign \"$B\"\n"
              "  AAInteger \"2\"\n");
    EXPECT_EQ(Statements(""), "NoAction\n");
}

TEST(StatementParser, AssignmentOperators) {
    EXPECT_EQ(Statements("$A+=1"),
              "AAAssign \"$A+\"\n"
              "  AAInteger \"1\"\n");
    EXPECT_EQ(Statements("$A |= 1; $B &= $C"),
              "AAOrAssign \"$A\"\n"
              "  AAInteger \"1\"\n"
              "AAAndAssign \"$B\"\n"
              "  AAAttributeValue \"C\"\n");
    EXPECT_EQ(Statements("$Name(parent)[2] = 1 + 2 * 3"),
              "AAAssign \"$Name(parent)[2]\"\n"
              "  AAPlus\n"
              "    AAInteger \"1\"\n"
              "    AAMultiply\n"
              "      AAInteger \"2\"\n"
              "      AAInteger \"3\"\n");
    // "|" and "&" without "=" are operators of a bare expression.
    EXPECT_EQ(Statements("$A | $B"),
              "AAExpressionToken\n"
              "  AAOr\n"
              "    AAAttributeValue \"A\"\n"
              "    AAAttributeValue \"B\"\n");
    EXPECT_EQ(Statements("doSomething(1)"),
              "AAExpressionToken\n"
              "  AARegexValue \"doSomething\" pattern \"1\" case-sensitive\n");
    // A statement that begins with a quoted string is an expression.
    EXPECT_EQ(Statements("\"abc\" + \"d\""),
              "AAExpressionToken\n"
              "  AAPlus\n"
              "    AAQuotedStringValue \"abc\"\n"
              "    AAQuotedStringValue \"d\"\n");
}

TEST(StatementParser, IfStatements) {
    EXPECT_EQ(Statements("if($A){$B=1}else{$B=2;$C=3}"),
              "AAIf\n"
              "  AAParenthetical\n"
              "    AAAttributeValue \"A\"\n"
              "  AgentAction \"$B=1\"\n"
              "    AAAssign \"$B\"\n"
              "      AAInteger \"1\"\n"
              "  AgentAction \"$B=2;$C=3\"\n"
              "    AAAssign \"$B\"\n"
              "      AAInteger \"2\"\n"
              "    AAAssign \"$C\"\n"
              "      AAInteger \"3\"\n");
    EXPECT_EQ(Statements("if ($A > 1) { $B = 1 }"),
              "AAIf\n"
              "  AAParenthetical\n"
              "    AAGreater\n"
              "      AAAttributeValue \"A\"\n"
              "      AAInteger \"1\"\n"
              "  AgentAction \"$B = 1\"\n"
              "    AAAssign \"$B\"\n"
              "      AAInteger \"1\"\n"
              "  NoAction\n");
    // Text after the closing brace without a ";" makes the statement null.
    EXPECT_EQ(Statements("if($A){$B=1} $C=2"), "");
    EXPECT_EQ(Statements("if($A){$B=1}; $C=2"),
              "AAIf\n"
              "  AAParenthetical\n"
              "    AAAttributeValue \"A\"\n"
              "  AgentAction \"$B=1\"\n"
              "    AAAssign \"$B\"\n"
              "      AAInteger \"1\"\n"
              "  NoAction\n"
              "AAAssign \"$C\"\n"
              "  AAInteger \"2\"\n");
    // The head is cut at "if": `iffy=1` is no assignment and is dropped.
    EXPECT_EQ(Statements("iffy=1;$A=2"),
              "AAAssign \"$A\"\n"
              "  AAInteger \"2\"\n");
}

TEST(StatementParser, VarAndEach) {
    EXPECT_EQ(Statements("var a, b(3), c"),
              "AAVars\n"
              "  var \"a\"\n"
              "  var \"b\"\n"
              "    AAInteger \"3\"\n"
              "  var \"c\"\n");
    EXPECT_EQ(Statements("var x = 1 + 2"),
              "AAVars\n"
              "  var \"x\"\n"
              "    AAPlus\n"
              "      AAInteger \"1\"\n"
              "      AAInteger \"2\"\n");
    // The head is cut at "var" too.
    EXPECT_EQ(Statements("variable=1"),
              "AAVars\n"
              "  var \"iable\"\n"
              "    AAInteger \"1\"\n");
    EXPECT_EQ(Statements("$Tags.each( t ){$Text = $Text + $t}"),
              "AAEach \"t\"\n"
              "  AAAttributeValue \"Tags\"\n"
              "  AgentAction \"$Text = $Text + $t\"\n"
              "    AAAssign \"$Text\"\n"
              "      AAPlus\n"
              "        AAAttributeValue \"Text\"\n"
              "        AAAttributeValue \"t\"\n");
}

TEST(StatementParser, CommentsCostTheCharacterBehindThem) {
    // The "$" behind the line feed is lost; the name still arrives.
    EXPECT_EQ(Statements("// note\n$A=1"),
              "AAAssign \"A\"\n"
              "  AAInteger \"1\"\n");
    EXPECT_EQ(Statements("// note\n $A=1"),
              "AAAssign \"$A\"\n"
              "  AAInteger \"1\"\n");
    EXPECT_EQ(Statements("// only a comment"), "");
}

TEST(StatementParser, DeepNestingEndsWithoutOverflow) {
    const int levels = 1000;
    std::string code;
    for (int i = 0; i < levels; ++i)
        code += "if(1){";
    code += "$A=1";
    code += std::string(levels, '}');
    std::unique_ptr<Action> action = Action::Create(code);
    int depth = 0;
    const Action* current = action.get();
    while (auto* agentAction = dynamic_cast<const AgentAction*>(current)) {
        if (agentAction->Tokens().empty())
            break;
        auto* ifToken = dynamic_cast<const AAIf*>(&agentAction->Tokens().at(0));
        if (!ifToken)
            break;
        current = &ifToken->Then();
        ++depth;
    }
    EXPECT_GT(depth, 10);
    EXPECT_LE(depth, AgentActionExpressionParser::kMaxNesting);
}

TEST(StatementParser, MillionFoldNestingEnds) {
    const int levels = 1000000;
    for (const std::string open : {"if(1){", "$L.each(x){", "$A=-", "var a = !"}) {
        std::string code;
        code.reserve((open.size() + 1) * levels + 8);
        for (int i = 0; i < levels; ++i)
            code += open;
        code += "1";
        if (open.back() == '{')
            code += std::string(levels, '}');
        std::unique_ptr<Action> action = Action::Create(code);
        // The bodies stop at the nesting limit, where the statement is
        // dropped; an expression nested too deeply is refused.
        if (open.back() != '{') {
            std::string dump = ActionTreeDump::Statements(*action);
            EXPECT_LT(dump.size(), 100000u) << open;
            EXPECT_NE(dump.find("expression nested too deeply"), std::string::npos) << open;
        }
        int depth = 0;
        const Action* current = action.get();
        while (auto* agentAction = dynamic_cast<const AgentAction*>(current)) {
            if (agentAction->Tokens().empty())
                break;
            const AAToken& token = agentAction->Tokens().at(0);
            if (auto* ifToken = dynamic_cast<const AAIf*>(&token))
                current = &ifToken->Then();
            else if (auto* each = dynamic_cast<const AAEach*>(&token))
                current = &each->Body();
            else
                break;
            ++depth;
        }
        EXPECT_LE(depth, AgentActionExpressionParser::kMaxNesting) << open;
    }
}

TEST(StatementParser, ActionsAreCounted) {
    long before = AgentAction::Count();
    {
        std::unique_ptr<Action> action = Action::Create("if(1){$A=1}else{$B=2}");
        EXPECT_EQ(AgentAction::Count(), before + 3);
        EXPECT_EQ(Action::Create("")->ClassName(), std::string("NoAction"));
    }
    EXPECT_EQ(AgentAction::Count(), before);
}

TEST(StatementParser, SpellingsMapToTheirClasses) {
    const std::pair<const char*, const char*> functions[] = {
        {"atan(1)", "AAArcTan"},          {"week($D)", "AAWeekOfYear"},
        {"hasLocalValue(x)", "AALocalValue"}, {"linkPath(x)", "AAOnPath"},
        {"distanceTo(x)", "AADistanceBetween"}, {"drivingTimeTo(x)", "AADrivingTime"},
        {"my(x)", "AACompositeFor"},      {"isDuplicateName", "AADuplicateName"},
        {"do(m)", "AAMacro"},             {"RGB(1,2,3)", "AARGB"},
        {"loweCase(x)", "AALowercase"},   {"exportedString(this, t)", "AAExport"},
        {"sum_if(children, $A, $B)", "AASumIf"}, {"count_if(children, $A)", "AACountIf"},
        {"#between(1,2,3)", "AABetween"}, {"$A.isort", "AASortCaseInsensitive"},
        {"$A.json", "AAJSONEncode"},      {"$A.week", "AAWeekOfYear"},
        {"$A.hue", "AADotHue"},           {"$A.containsAnyOf(x)", "AADotContainsAny"},
        {"$A.speak(v)", "AASpeak"},       {"$A.collect_if(x)", "AADotCollectIf"},
    };
    for (const auto& [code, className] : functions)
        EXPECT_EQ(FirstLine(code), className) << code;

    // Every dot operator offered for completion builds its node, except the
    // few that the parser does not know behind a dot.
    for (const std::string& name : AgentActionParser::DotOperators()) {
        if (name == "each" || name == "isbn10" || name == "isbn13")
            EXPECT_EQ(FirstLine("$A." + name), "AAStringValue") << name;
        else
            EXPECT_NE(FirstLine("$A." + name), "AAStringValue") << name;
    }
    // Every function spelling builds a node of its own, not a text or a
    // pattern query.
    for (const FunctionEntry& entry : FunctionTable()) {
        std::string line = FirstLine(std::string(entry.spelling) + "(a, b, c)");
        EXPECT_TRUE(line != "AAStringValue" && line != "AARegexValue" && line != "AAInvalid") << entry.spelling;
    }
}

TEST(StatementParser, CompletionLists) {
    const std::vector<std::string>& operators = AgentActionParser::Operators();
    ASSERT_GE(operators.size(), 3u);
    EXPECT_EQ(operators[0], "log");
    EXPECT_EQ(operators[1], "sqrt");
    EXPECT_EQ(operators[2], "abs");
    for (const std::string& name : operators) {
        EXPECT_NE(name[0], '#') << name;
        EXPECT_NE(name, "loweCase");
    }
    EXPECT_EQ(Action::DotOperatorsStartingWith("para"),
              (std::vector<std::string>{"paragraphs", "paragraphCount", "paragraph", "paragraphList"}));
    EXPECT_EQ(Action::OperatorsStartingWith("sq"), (std::vector<std::string>{"sqrt"}));
    EXPECT_TRUE(Action::OperatorTakesDesignator("collect_if"));
    EXPECT_FALSE(Action::OperatorTakesDesignator("sqrt"));
}
