// One compiled expression searches text after text with the same buffers:
// each search must see only its own text, counted in UTF-16 units, and the
// per-thread cache must hand back the expression for the pattern and case
// option asked for, whatever was asked for just before.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "RegularExpression.h"

namespace {

TEST(RegularExpressionTest, ReusedExpressionSeesEachTextAlone) {
    RegularExpression regex("(\\w+)$", false);
    ASSERT_TRUE(regex.IsValid());
    RegularExpression::Match match;

    // A long text first, so that the buffer kept afterwards is larger than
    // the texts that follow.
    std::string long_text(200, 'z');
    long_text += " tail";
    ASSERT_TRUE(regex.Search(long_text, match));
    EXPECT_EQ(match.position, 201);
    EXPECT_EQ(match.groups[1], "tail");

    ASSERT_TRUE(regex.Search("ab cd", match));
    EXPECT_EQ(match.position, 3);
    EXPECT_EQ(match.length, 2);
    EXPECT_EQ(match.groups[0], "cd");

    // Positions count UTF-16 units: é is one, the emoji two.
    ASSERT_TRUE(regex.Search("é😀 héllo", match));
    EXPECT_EQ(match.position, 4);
    EXPECT_EQ(match.length, 5);
    EXPECT_EQ(match.groups[1], "héllo");

    // A view that is not the end of its string ends where the view ends.
    std::string backing = "one two three";
    ASSERT_TRUE(regex.Search(std::string_view(backing).substr(0, 7), match));
    EXPECT_EQ(match.groups[1], "two");
    EXPECT_EQ(match.position, 4);

    EXPECT_FALSE(regex.Search("", match));
    EXPECT_EQ(match.position, -1);
    EXPECT_TRUE(match.groups.empty());
    EXPECT_FALSE(regex.Search("ends in space ", match));

    std::vector<RegularExpression::Match> found;
    RegularExpression words("\\w+", false);
    words.SearchAll("α beta", found);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[1].position, 2);
    EXPECT_EQ(words.ReplaceAll("α beta", "<$0>"), "<α> <beta>");
}

TEST(RegularExpressionTest, IllFormedBytesReadAsReplacementCharacters) {
    RegularExpression regex("\\x{FFFD}+(.)", false);
    RegularExpression::Match match;
    // A stray continuation byte and a cut-off lead byte each become one
    // U+FFFD; the ASCII around them stays where it was.
    ASSERT_TRUE(regex.Search(std::string("ab\x80\xe2\x82z"), match));
    EXPECT_EQ(match.position, 2);
    EXPECT_EQ(match.length, 3);
    EXPECT_EQ(match.groups[1], "z");
    // A well-formed text after it has no trace of them.
    EXPECT_FALSE(regex.Search("abz", match));
    RegularExpression after("z", false);
    ASSERT_TRUE(after.Search(std::string("\xe2\x82\xac\xffz"), match));
    EXPECT_EQ(match.position, 2);
}

TEST(RegularExpressionTest, CacheAnswersForPatternAndCase) {
    RegularExpression::Match match;
    RegularExpression& sensitive = RegularExpression::Cached("abc", false);
    RegularExpression& insensitive = RegularExpression::Cached("abc", true);
    EXPECT_NE(&sensitive, &insensitive);
    EXPECT_FALSE(RegularExpression::Cached("abc", false).Search("ABC", match));
    EXPECT_TRUE(RegularExpression::Cached("abc", true).Search("ABC", match));
    EXPECT_FALSE(RegularExpression::Cached("abc", false).Search("xABC", match));
    EXPECT_EQ(&RegularExpression::Cached("abc", false), &sensitive);

    // Patterns that differ only in length or in the last character, asked
    // for one after the other, are different expressions.
    std::string backing = "abcd";
    EXPECT_FALSE(RegularExpression::Cached(std::string_view(backing).substr(0, 3), false).Search("abX", match));
    EXPECT_TRUE(RegularExpression::Cached(std::string_view(backing).substr(0, 2), false).Search("abX", match));
    EXPECT_FALSE(RegularExpression::Cached("abd", false).Search("abc", match));
    EXPECT_TRUE(RegularExpression::Cached("abc", false).Search("abc", match));

    // Many patterns overflow the cache; each still answers its own.
    for (int i = 0; i < 150; ++i) {
        std::string pattern = "^n" + std::to_string(i) + "$";
        EXPECT_TRUE(RegularExpression::Cached(pattern, i % 2 == 0).Search("n" + std::to_string(i), match)) << pattern;
        EXPECT_FALSE(RegularExpression::Cached(pattern, i % 2 == 0).Search("n" + std::to_string(i + 1), match));
    }
    EXPECT_FALSE(RegularExpression::Cached("(", false).IsValid());
    EXPECT_FALSE(RegularExpression::Cached("(", false).Search("(", match));
}

TEST(RegularExpressionTest, PlainWordsFindWhatTheEngineFinds) {
    // A plain pattern is searched in the bytes, and a pattern that starts
    // with plain characters is tried only on texts that hold them; wrapped
    // in a group either goes straight to the engine. Both must give the
    // same position, length and text.
    const std::vector<std::string> patterns = {
        "note 17", "a-b, c:d", "x", "\"q\" & 'r'", "to=do!", "note 1[0-9]$", "note 17?", "note 1*7", "X x+",
        "XX{0}x", "note 1|X", "no(?i)te", "to=do!$", "(?i)note",
    };
    const std::vector<std::string> texts = {
        "note 17", "my note 17 and note 17", "é😀note 17", std::string("\xff\xe2\x82note 17"), "a-b, c:d",
        "ü a-b, c:d", "no match here", "", "say \"q\" & 'r'", "what to=do!", "X x", "NOTE 17", "note 1", "note 7", "note  1", "XX x", "x x", "No te", "noTE 17",
    };
    for (const std::string& pattern : patterns) {
        RegularExpression plain(pattern, false);
        RegularExpression engine("(?:" + pattern + ")", false);
        for (const std::string& text : texts) {
            RegularExpression::Match a, b;
            bool found = plain.Search(text, a);
            EXPECT_EQ(found, engine.Search(text, b)) << pattern << " in " << text;
            EXPECT_EQ(a.position, b.position) << pattern << " in " << text;
            EXPECT_EQ(a.length, b.length) << pattern << " in " << text;
            EXPECT_EQ(a.groups, b.groups) << pattern << " in " << text;
        }
    }
    RegularExpression::Match match;
    ASSERT_TRUE(RegularExpression("é😀note", false).Search("xé😀note", match));
    EXPECT_EQ(match.position, 1);
    EXPECT_TRUE(RegularExpression("note", true).Search("NOTE", match));
    EXPECT_FALSE(RegularExpression("note", false).Search("NOTE", match));
    // Searching from a later position still skips earlier matches.
    RegularExpression word("ab", false);
    ASSERT_TRUE(word.Search("ab éab", match, 1));
    EXPECT_EQ(match.position, 4);
}

TEST(RegularExpressionTest, SearchAfterTimeLimitStartsAfresh) {
    RegularExpression regex("(a+)+$", false);
    RegularExpression::Match match;
    std::string text(5000, 'a');
    text += "b";
    EXPECT_FALSE(regex.Search(text, match));
    ASSERT_TRUE(regex.Search("xaa", match));
    EXPECT_EQ(match.position, 1);
    EXPECT_EQ(match.groups[1], "aa");
}

}  // namespace
