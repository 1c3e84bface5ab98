// Evaluation of action code: expressions on notes, and actions that change
// them. Each case is what a user writes and what the document then holds.
#include <gtest/gtest.h>

#include "ActionTestDocument.h"

#include "AAValue.h"
#include "Action.h"
#include "ActionHooks.h"
#include "ActionPool.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "Hypertext.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "STime.h"
#include "STimeInterval.h"
#include "Value.h"

namespace {

using EvaluationTest = ActionTestDocument;

TEST_F(EvaluationTest, ArithmeticAndItsOddRulesOnTexts) {
    EXPECT_EQ(Eval("1 + 2 * 3"), "7");
    EXPECT_EQ(Eval("10 - 2 - 3"), "5");
    EXPECT_EQ(Eval("7 / 2"), "3.5");
    EXPECT_EQ(Eval("1 / 0"), "inf");
    // A number and a text: the text path.
    EXPECT_EQ(Eval("1 + \"2\""), "12");
    EXPECT_EQ(Eval("\"a\" - \"b\""), "a-b");
    EXPECT_EQ(Eval("\"ab\" * 3"), "ababab");
    EXPECT_EQ(Eval("3 * \"ab\""), "ababab");
    EXPECT_EQ(Eval("\"ab\" * 0"), "ab0");
    EXPECT_EQ(Eval("\"ab\" * -2"), "");
    EXPECT_EQ(Eval("\"a\" / \"b\""), "a/b");
    EXPECT_EQ(Eval("0 | \"x\""), "x");
    EXPECT_EQ(Eval("mod(17, 5)"), "2");
    EXPECT_EQ(Eval("mod(17, 0)"), "0");
    // Operands past the range of whole numbers are held at its ends; the
    // smallest one by -1 has remainder 0 instead of a trap.
    EXPECT_EQ(Eval("mod(-1/0, 7)"), "-1");
    EXPECT_EQ(Eval("mod(-1/0, -1)"), "0");
    EXPECT_EQ(Eval("-(3)"), "-3");
    EXPECT_EQ(Eval("-true"), "");
    EXPECT_EQ(Eval("-false"), "true");
}

TEST_F(EvaluationTest, ComparisonsAndTruth) {
    EXPECT_EQ(Eval("\"a\" != \"b\""), "true");
    EXPECT_EQ(Eval("\"a\" == \"b\""), "");
    EXPECT_EQ(Eval("\"a\" < \"b\""), "true");
    // Numbers compare to 1 and 0.
    EXPECT_EQ(Eval("2 > 1"), "1");
    EXPECT_EQ(Eval("2 < 1"), "0");
    // `<=` is "not greater", `>=` "not less", whatever the kinds.
    EXPECT_EQ(Eval("2 <= 2"), "true");
    EXPECT_EQ(Eval("3 <= 2"), "");
    EXPECT_EQ(Eval("\"b\" >= \"a\""), "true");
    EXPECT_EQ(Eval("!true"), "");
    EXPECT_EQ(Eval("!\"\""), "true");
    EXPECT_EQ(Eval("true & false"), "");
    EXPECT_EQ(Eval("true | false"), "true");
    EXPECT_EQ(Eval("\"x\" & \"y\""), "true");
    EXPECT_EQ(Eval("\"\" & \"y\""), "");
    EXPECT_EQ(Eval("if(1 > 2){\"yes\"}else{\"no\"}"), "no");
    EXPECT_EQ(Eval("if(\"a\"){\"yes\"}"), "yes");
    EXPECT_EQ(Eval("if(\"\"){\"yes\"}"), "");
}

TEST_F(EvaluationTest, AttributesVariablesAndWords) {
    a->Set("Count", "4");
    EXPECT_EQ(Eval("$Count * 2"), "8");
    EXPECT_EQ(Eval("$Count + 1"), "5");
    EXPECT_EQ(Eval("$Name"), "A");
    EXPECT_EQ(Eval("$Name(parent)"), "Top");
    EXPECT_EQ(Eval("$Name(nextSibling)"), "B");
    EXPECT_EQ(Eval("$Name(parent(parent))"), doc.Root()->Name());
    EXPECT_EQ(Eval("$Name(parent)", doc.Root()), "");
    EXPECT_EQ(Eval("$NoSuchThing"), "");
    // A bare word: a variable, else an attribute, else the word.
    EXPECT_EQ(Eval("Count"), "4");
    EXPECT_EQ(Eval("hello"), "hello");
    Do("var x = 3; $Words = x + 1");
    EXPECT_EQ(Get("Words"), "4");
    Do("var x(\"a\"), y; $Words = x + y + \"!\"");
    EXPECT_EQ(Get("Words"), "a!");
}

TEST_F(EvaluationTest, AssignmentsToEveryKind) {
    Do("$Count = 2 + 3");
    EXPECT_EQ(Get("Count"), "5");
    Do("$Count = $Count + 1; $Count = $Count * 2");
    EXPECT_EQ(Get("Count"), "12");
    // "+=" adds by the rules of "+", to every target.
    Do("$Count += 3");
    EXPECT_EQ(Get("Count"), "15");
    a->Set("Count", "1");
    b->Set("Count", "2");
    Do("$Count(children) += 10", top);
    EXPECT_EQ(Get("Count", a), "11");
    EXPECT_EQ(Get("Count", b), "12");
    // `|=` only assigns to a false value, `&=` only to a true one.
    Do("$Flag |= true");
    EXPECT_EQ(Get("Flag"), "true");
    Do("$Flag |= false");
    EXPECT_EQ(Get("Flag"), "true");
    Do("$Flag &= false");
    EXPECT_EQ(Get("Flag"), "false");
    Do("$Flag &= true");
    EXPECT_EQ(Get("Flag"), "false");
    // Sets sort and drop duplicates; `+` and `-` add and remove items.
    Do("$Tags = \"b;a;b\"");
    EXPECT_EQ(Get("Tags"), "a;b");
    Do("$Tags = $Tags + \"c\"; $Tags = $Tags - \"a\"");
    EXPECT_EQ(Get("Tags"), "b;c");
    Do("$Tags += \"d\"");
    EXPECT_EQ(Get("Tags"), "b;c;d");
    Do("var n = 2; n += 5; $Words = n");
    EXPECT_EQ(Get("Words"), "7");
    // Lists keep order and duplicates; an index replaces or pads.
    Do("$Items = \"x;y;x\"");
    Do("$Items = $Items - \"x\"");
    EXPECT_EQ(Get("Items"), "y;x");
    Do("$Items[-1] = \"z\"");
    EXPECT_EQ(Get("Items"), "y;z");
    Do("$Items[4] = \"w\"");
    EXPECT_EQ(Get("Items"), "y;z;;;w");
    // Dictionaries by key.
    Do("$Table = \"a:1;b:2\"; $Table[\"c\"] = 3");
    EXPECT_EQ(Get("Table"), "a:1;b:2;c:3");
    EXPECT_EQ(Eval("$Table - \"a\""), "b:2;c:3");
}

TEST_F(EvaluationTest, EmptyRightSideMakesTheNoteInheritAgain) {
    Node* prototype = MakeNote("Proto");
    prototype->Set("Words", "inherited");
    a->SetPrototype(prototype, false);
    Do("$Words = \"own\"");
    EXPECT_EQ(Get("Words"), "own");
    Do("$Words = ;");
    EXPECT_EQ(Get("Words"), "inherited");
    EXPECT_FALSE(NodeDefaults(a).HasImmediate("Words"));
}

TEST_F(EvaluationTest, DesignatorsOnTheLeftAssignToEveryNoteTheyName) {
    Do("$Color(children) = \"red\"", top);
    EXPECT_EQ(Get("Color", a), "red");
    EXPECT_EQ(Get("Color", b), "red");
    EXPECT_NE(Get("Color", top), "red");
    Do("$Words(/Top/B) = \"there\"", a);
    EXPECT_EQ(Get("Words", b), "there");
    // A designator that is an expression names the note its result names.
    a->Set("Words", "/Top/B");
    EXPECT_EQ(Eval("$Name($Words)"), "B");
    Do("$Words($Words) = \"via expression\"", a);
    EXPECT_EQ(Get("Words", b), "via expression");
    a->Set("Words", "");
    // A designator that names nothing changes nothing.
    Do("$Words(/Top/Nowhere) = \"lost\"", a);
    EXPECT_EQ(Get("Words", a), "");
}

TEST_F(EvaluationTest, DatesCompareByDayAndNeverIsSpecial) {
    // Times without a zone are the local wall clock, so that the two are on
    // one day wherever the test runs.
    a->Set("Due", "2024-03-05T10:00:00");
    b->Set("Due", "2024-03-05T18:00:00");
    EXPECT_EQ(Eval("$Due == $Due(nextSibling)"), "true");
    b->Set("Due", "2024-03-06T01:00:00");
    EXPECT_EQ(Eval("$Due == $Due(nextSibling)"), "");
    EXPECT_EQ(Eval("$Due < \"2024-04-01\""), "true");
    EXPECT_EQ(Eval("$Due > \"2024-04-01\""), "");
    // Never on the left: never less, always greater.
    a->Set("Due", "never");
    EXPECT_EQ(Eval("$Due < \"2024-04-01\""), "");
    EXPECT_EQ(Eval("$Due > \"2024-04-01\""), "true");
    a->Set("Due", "2024-03-05T10:00:00Z");
    b->Set("Due", "2024-03-15T10:00:00Z");
    EXPECT_EQ(Eval("$Due(nextSibling) - $Due"), "10");
    Do("$Due.year = 2030");
    EXPECT_EQ(NodeFacade(a).GetDate("Due").Year(), 2030);
    EXPECT_EQ(NodeFacade(a).GetDate("Due").Month(), 3);
    Do("$Due = $Due + \"1 day\"");
    EXPECT_EQ(NodeFacade(a).GetDate("Due").Day(), 6);
}

TEST_F(EvaluationTest, ColoursAndIntervals) {
    a->Set("Color", "#ff0000");
    EXPECT_EQ(Eval("$Color == \"#ff0000\""), "true");
    Do("$Color.green = 255");
    EXPECT_EQ(NodeFacade(a).GetColor("Color").green, 0xffff);
    EXPECT_EQ(NodeFacade(a).GetColor("Color").red, 0xffff);
    a->Set("Span", STimeInterval(60).ToString());
    EXPECT_EQ(Eval("$Span + $Span"), STimeInterval(120).ToString());
    EXPECT_EQ(Eval("$Span * 3"), STimeInterval(180).ToString());
    EXPECT_EQ(Eval("$Span - $Span"), STimeInterval(0).ToString());
    EXPECT_EQ(Eval("$Span < \"" + STimeInterval(120).ToString() + "\""), "true");
}

TEST_F(EvaluationTest, RegularExpressionQueriesStoreTheirCaptures) {
    MatchList matches;
    ActionResult found = Action::EvaluateAction(a, "Name(^(A)$)", matches, true);
    EXPECT_TRUE(found.IsTrue());
    EXPECT_EQ(found.AsString(), "1");
    ASSERT_EQ(matches.matches.size(), 2u);
    EXPECT_EQ(matches.matches[1], "A");
    EXPECT_EQ(Action::EvaluateAction(a, "$1", matches, true).AsString(), "A");
    // Case-insensitive unless the flag is on.
    EXPECT_TRUE(Action::EvaluateAction(a, "Name(a)", matches, false).IsTrue());
    EXPECT_FALSE(Action::EvaluateAction(a, "Name(a)", matches, true).IsTrue());
    EXPECT_TRUE(matches.matches.empty());
    // A set attribute holds the pattern text literally.
    a->Set("Tags", "x.y;z");
    EXPECT_TRUE(Action::EvaluateAction(a, "Tags(x.y)").IsTrue());
    EXPECT_FALSE(Action::EvaluateAction(a, "Tags(x)").IsTrue());
    // `.contains` on texts, lists and dictionaries.
    EXPECT_EQ(Eval("\"abc\".contains(\"B\")"), "");
    EXPECT_EQ(Eval("\"abc\".icontains(\"B\")"), "2");
    a->Set("Items", "p;q");
    EXPECT_EQ(Eval("$Items.contains(\"q\")"), "2");
    EXPECT_EQ(Eval("$Items.contains(\"p;\")"), "");
}

TEST_F(EvaluationTest, EachKeepsOuterChangesAndDropsInnerVariables) {
    Do("var total = 0; var seen; var numbers = \"1;2;3\"; numbers.each(n){ total = total + n; var t = n }; "
       "$Count = total; $Words = t + \"|\" + seen");
    EXPECT_EQ(Get("Count"), "6");
    // `t` is gone after the loop: the bare word is just the word.
    EXPECT_EQ(Get("Words"), "t|");
    a->Set("Tags", "b;a");
    Do("$Items = \"\"; $Tags.each(x){ $Items = $Items + x }");
    EXPECT_EQ(Get("Items"), "a;b");
}

TEST_F(EvaluationTest, IfStatementsAndStatementsThatDoNotParse) {
    Do("if($Name == \"A\"){$Words = \"yes\"}else{$Words = \"no\"}");
    EXPECT_EQ(Get("Words"), "yes");
    Do("if($Name == \"B\"){$Words = \"yes\"}else{$Words = \"no\"}");
    EXPECT_EQ(Get("Words"), "no");
    // Text after the closing brace without ";" makes the statement null;
    // the statements around it still run.
    Do("$Count = 1; if(true){$Count = 2} $Count = 3; $Words = \"after\"");
    EXPECT_EQ(Get("Count"), "1");
    EXPECT_EQ(Get("Words"), "after");
    EXPECT_FALSE(Action::IsValidAction("if(true){}", a));
    EXPECT_TRUE(Action::IsValidAction("$Count = 1", a));
    EXPECT_FALSE(Action::IsValidAction("", a));
    EXPECT_FALSE(Action::IsValidAction("$Count = $Nonexistent", a));
}

TEST_F(EvaluationTest, ReadOnlyAttributesAreLeftAlone) {
    std::string id = Get("ID");
    Do("$ID = 12345");
    EXPECT_EQ(Get("ID"), id);
    // A bound variable of a read-only attribute's name is assigned.
    Do("var ID = 1; ID = 2; $Words = ID");
    EXPECT_EQ(Get("Words"), "2");
}

TEST_F(EvaluationTest, RunawayCodeEndsBoundedAndQuietly) {
    // An expression a million terms long and one nested a million deep.
    std::string sum = "1";
    for (int i = 0; i < 1000000; ++i)
        sum += "+1";
    EXPECT_NO_FATAL_FAILURE(Eval(sum));
    std::string nested(1000000, '(');
    EXPECT_NO_FATAL_FAILURE(Eval(nested + "1" + std::string(1000000, ')')));
    // A display expression that reads itself.
    a->Set("DisplayExpression", "$DisplayName + \"!\"");
    EXPECT_FALSE(a->DisplayName().empty());
    // `.each` over a long list ends.
    std::string items;
    for (int i = 0; i < 100000; ++i)
        items += "x;";
    a->Set("Items", items);
    Do("var n = 0; $Items.each(i){ n = n + 1 }; $Count = n");
    EXPECT_EQ(Get("Count"), "100000");
}

TEST_F(EvaluationTest, AnActionThatRewritesItselfKeepsRunningSafely) {
    a->Set("Rule", "$Rule = \"$Count = 99\"; $Count = 7");
    const Value* rule = a->Get(std::string("Rule"));
    ASSERT_TRUE(rule);
    Action* action = rule->AsAgentAction(&doc);
    ASSERT_TRUE(action);
    MatchList matches;
    action->Apply(a, matches);
    EXPECT_EQ(Get("Count"), "7");
    EXPECT_EQ(Get("Rule"), "$Count = 99");
    // The replaced value dies once the document cleans up, and its compiled
    // action waits in the pool rather than being destroyed under a caller.
    doc.CleanupDeletedValues();
    EXPECT_GE(ActionPool::For(&doc)->Size(), 1u);
}

}  // namespace
