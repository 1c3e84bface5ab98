// The function library of action code: what each family computes, as a
// user writes it.
#include <gtest/gtest.h>

#include "ActionTestDocument.h"

#include <chrono>
#include <filesystem>

#include "Action.h"
#include "ActionHooks.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "CommandTrust.h"
#include "Hypertext.h"
#include "Log.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "RegularExpression.h"

namespace {

using FunctionLibraryTest = ActionTestDocument;

TEST_F(FunctionLibraryTest, NumericFunctions) {
    EXPECT_EQ(Eval("sqrt(16)"), "4");
    EXPECT_EQ(Eval("abs(-3.5)"), "3.5");
    EXPECT_EQ(Eval("round(2.5)"), "3");
    EXPECT_EQ(Eval("round(-2.5)"), "-3");
    EXPECT_EQ(Eval("floor(2.7)"), "2");
    EXPECT_EQ(Eval("ceil(2.1)"), "3");
    EXPECT_EQ(Eval("pow(2, 10)"), "1024");
    EXPECT_EQ(Eval("degrees(radians(90))"), "90");
    EXPECT_EQ(Eval("exp(0)"), "1");
    double r = std::stod(Eval("rand()"));
    EXPECT_GE(r, 0.0);
    EXPECT_LE(r, 1.0);
    a->Set("Count", "3.14159");
    EXPECT_EQ(Eval("$Count.precision"), "3.14");
    EXPECT_EQ(Eval("$Count.precision(3)"), "3.142");
    EXPECT_EQ(Eval("$Words.precision(3)"), "0");
}

TEST_F(FunctionLibraryTest, StringPositionsCountUTF16Units) {
    EXPECT_EQ(Eval("\"hello\".substr(-3, 2)"), "ll");
    EXPECT_EQ(Eval("\"hello\".substr(1)"), "ello");
    EXPECT_EQ(Eval("\"hello\".substr(1, -1)"), "ell");
    EXPECT_EQ(Eval("substr(\"hello\", 2, 99)"), "llo");
    // An emoji is two UTF-16 units.
    EXPECT_EQ(Eval("\"a\xF0\x9F\x98\x80" "b\".size"), "4");
    EXPECT_EQ(Eval("\"a\xF0\x9F\x98\x80" "b\".find(\"b\")"), "3");
    EXPECT_EQ(Eval("\"abc\".find(\"z\")"), "-1");
    EXPECT_EQ(Eval("\"abcabc\".countOccurrencesOf(\"bc\")"), "2");
    EXPECT_EQ(Eval("\"abc\".beginsWith(\"ab\")"), "true");
    EXPECT_EQ(Eval("\"abc\".endsWith(\"ab\")"), "");
    EXPECT_EQ(Eval("\"abc\".contains(\"B\")"), "");
    EXPECT_EQ(Eval("\"abc\".icontains(\"B\")"), "2");
}

TEST_F(FunctionLibraryTest, StringShapes) {
    EXPECT_EQ(Eval("\"  a b \n\".trim"), "a b");
    EXPECT_EQ(Eval("\"..a b!\".trim(\"punctuation\")"), "a b");
    EXPECT_EQ(Eval("\"a1b22c\".split(\"[0-9]+\")"), "a;b;c");
    EXPECT_EQ(Eval("\"one\ntwo\nthree\".paragraphs(2)"), "one\ntwo");
    EXPECT_EQ(Eval("\"one\ntwo\nthree\".paragraphCount"), "3");
    EXPECT_EQ(Eval("\"a b c d\".words(2)"), "a b");
    EXPECT_EQ(Eval("\"a b c d\".words(-2)"), "c d");
    EXPECT_EQ(Eval("\"a b c d\".words(0)"), "");
    EXPECT_EQ(Eval("\"abc\".reverse"), "cba");
    EXPECT_EQ(Eval("\"hello world\".deleteCharacters(\"lo\")"), "he wrd");
    EXPECT_EQ(Eval("uppercase(\"abc\")"), "ABC");
    EXPECT_EQ(Eval("\"ABC\".lowercase"), "abc");
    EXPECT_EQ(Eval("capitalize(\"hello wORLD\")"), "Hello World");
    EXPECT_EQ(Eval("firstWord(\"  red green blue\")"), "red");
    EXPECT_EQ(Eval("lastWord(\"red green blue.\")"), "blue");
    EXPECT_EQ(Eval("\"\".empty"), "true");
    EXPECT_EQ(Eval("\"abc\".next"), "abd");
    EXPECT_EQ(Eval("urlEncode(\"a b&c\")"), "a%20b&c");
    EXPECT_EQ(Eval("escapeHTML(\"<a & b>\")"), "&lt;a &amp; b&gt;");
    EXPECT_EQ(Eval("idEncode(\"9 lives, here\")"), "_9_lives_here");
}

TEST_F(FunctionLibraryTest, ReplaceAndFollowingSetCaptures) {
    EXPECT_EQ(Eval("\"the cat and the dog\".replace(\"\\bthe\\b\", \"THE\")"), "THE cat and THE dog");
    EXPECT_EQ(Eval("\"John Smith\".replace(\"(\\w+) (\\w+)\", \"$2, $1\")"), "Smith, John");
    // A bad pattern answers "".
    EXPECT_EQ(Eval("\"abc\".replace(\"(\", \"x\")"), "");
    MatchList matches;
    EXPECT_EQ(Action::Evaluate(a, "\"key: one\nplain\nother: two\".following(\":\")", matches, true), "one;two");
    ASSERT_EQ(matches.matches.size(), 2u);
    EXPECT_EQ(matches.matches[0], "key");
    EXPECT_EQ(matches.matches[1], "other");
}

TEST_F(FunctionLibraryTest, PathologicalPatternsEndQuickly) {
    std::string text(10000, 'a');
    text += "b";
    auto start = std::chrono::steady_clock::now();
    RegularExpression regex("(a+)+$", false);
    RegularExpression::Match match;
    EXPECT_FALSE(regex.Search(text, match));
    std::vector<RegularExpression::Match> found;
    regex.SearchAll(text, found);
    EXPECT_TRUE(found.empty());
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_LT(seconds, 10.0);
}

TEST_F(FunctionLibraryTest, CommandsRunOnlyWhenAllowed) {
    std::filesystem::path marker = std::filesystem::temp_directory_path() / "rylvane-trust-test";
    std::filesystem::remove(marker);
    std::string code = "runCommand(\"touch " + marker.string() + "; echo ran\")";
    CommandTrust::Allow(false);
    testing::internal::CaptureStderr();
    EXPECT_EQ(Eval(code), "");
    EXPECT_EQ(Eval(code), "");
    std::string refused = testing::internal::GetCapturedStderr();
    EXPECT_FALSE(std::filesystem::exists(marker));
    // One line per command text per run, naming the note.
    EXPECT_EQ(std::count(refused.begin(), refused.end(), '\n'), 1);
    EXPECT_NE(refused.find("\"A\""), std::string::npos);
    EXPECT_EQ(Eval("\"abc\".tr(\"a-z\", \"A-Z\")"), "");

    CommandTrust::Allow(true);
    EXPECT_EQ(Eval(code), "ran\n");
    EXPECT_TRUE(std::filesystem::exists(marker));
    EXPECT_EQ(Eval("\"abc\".tr(\"a-z\", \"A-Z\")"), "ABC");
    EXPECT_EQ(Eval("runCommand(\"cat\", \"piped\")"), "piped");
    CommandTrust::Allow(false);
    std::filesystem::remove(marker);
}

TEST_F(FunctionLibraryTest, GroupFunctions) {
    a->Set("Count", "2");
    b->Set("Count", "5");
    b->Set("Words", "x;y");
    EXPECT_EQ(Eval("collect(children, $Name)", top), "A;B");
    EXPECT_EQ(Eval("collect(children, $Words)", top), "\"x;y\"");
    EXPECT_EQ(Eval("collect_if(children, $Count > 3, $Name)", top), "B");
    EXPECT_EQ(Eval("find($Count > 3)"), "/Top/B");
    EXPECT_EQ(Eval("sum(children, $Count)", top), "7");
    EXPECT_EQ(Eval("count_if(children, $Count > 1)", top), "2");
    // avg divides by the whole group, even notes the condition refused.
    EXPECT_EQ(Eval("avg_if(children, $Count > 3, $Count)", top), "2.5");
    EXPECT_EQ(Eval("every(children, $Count > 1)", top), "true");
    EXPECT_EQ(Eval("every(children, $Count > 2)", top), "");
    EXPECT_EQ(Eval("any(children, $Count > 4)", top), "true");
    EXPECT_EQ(Eval("every(children, $Count > 1)", b), "true");
    EXPECT_EQ(Eval("any(children, $Count > 1)", b), "");
    EXPECT_EQ(Eval("values(children, \"Count\")", top), "2;5;");
    // A note that refuses searches is left out.
    b->SetBoolean("Searchable", false);
    EXPECT_EQ(Eval("collect(children, $Name)", top), "A");
}

TEST_F(FunctionLibraryTest, EvalAndSelfEvaluatingCodeStop) {
    EXPECT_EQ(Eval("eval(\"1+1\")"), "2");
    a->Set("Words", "eval($Words)");
    std::vector<std::string> logged;
    LogSink old = SetLogSink([&logged](const std::string& line) { logged.push_back(line); });
    EXPECT_EQ(Eval("eval($Words)"), "");
    SetLogSink(old);
    EXPECT_EQ(logged.size(), 1u);
    Do("action(\"$Count=7\")");
    EXPECT_EQ(a->GetString("Count"), "7");
}

}  // namespace
