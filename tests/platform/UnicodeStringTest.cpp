#include <gtest/gtest.h>

#include <cstdlib>

#include "UnicodeString.h"

TEST(UnicodeStringTest, Forms) {
    UnicodeString s("Grüße €");
    EXPECT_EQ(s.length(), 7u);
    EXPECT_EQ(s.size(), 11u);
    EXPECT_EQ(s.at(2), u'ü');
    EXPECT_EQ(s.at(99), 0);
    EXPECT_EQ(s.substr(2, 3).UTF8(), "üße");
    EXPECT_EQ(s.substr(5).UTF8(), " €");
    EXPECT_EQ(s.substr(50).UTF8(), "");
    EXPECT_EQ(s.MacRoman(), "Gr\x9f\xa7" "e \xdb");

    UnicodeStringFromMacRoman roman("caf\x8e \xdb");
    EXPECT_EQ(roman.UTF8(), "café €");
    EXPECT_EQ(UnicodeString("日本").MacRoman(), "??");

    EXPECT_EQ(UnicodeString::FromUTF16(std::string("\0A\0\xe9", 4)).UTF8(), "Aé");
    EXPECT_EQ(UnicodeString::FromUTF16LE(std::string("A\0\xe9\0", 4)).UTF8(), "Aé");
    EXPECT_EQ(UnicodeString::FromUTF16(std::string("\xff\xfe" "A\0", 4)).UTF8(), "A");  // BOM wins

    std::u16string units;
    for (char16_t u : UnicodeString("a€")) units += u;
    EXPECT_EQ(units, u"a€");
    UnicodeString text("ab");
    auto it = text.begin();
    ++it;
    EXPECT_EQ(it.offset(), 1u);
    text.clear();
    EXPECT_TRUE(text.empty());
}

TEST(UnicodeStringTest, InvalidBytesAreAccepted) {
    std::string bad = "a\xff\xc3";
    UnicodeString s(bad);
    EXPECT_FALSE(s.IsValidUnicode());
    EXPECT_TRUE(UnicodeString("ok é").IsValidUnicode());
    EXPECT_FALSE(UnicodeString::IsValidUTF8("\xed\xa0\x80"));
    EXPECT_EQ(s.AsNSString(), u"a\uFFFD\uFFFD");
    EXPECT_EQ(s.UTF8(), bad);  // the original bytes stay
    EXPECT_EQ(UnicodeString::Lowercase(bad), "a\uFFFD\uFFFD");
    EXPECT_EQ(UnicodeString::ToJSON(bad), bad);
    EXPECT_FALSE(UnicodeString(std::u16string(1, char16_t(0xD800))).IsValidUnicode());
}

TEST(UnicodeStringTest, CaseAndComparison) {
    EXPECT_EQ(UnicodeString("ÀÉÎ Straße").Lowercase().UTF8(), "àéî straße");
    EXPECT_EQ(UnicodeString::Uppercase("straße"), "STRASSE");
    EXPECT_TRUE(UnicodeString("Zürich").EqualCaseInsensitive(UnicodeString("ZÜRICH")));
    EXPECT_TRUE(UnicodeString::EqualCaseInsensitive("Maße", "MASSE"));
    EXPECT_TRUE(UnicodeString("apple").LessCaseInsensitive(UnicodeString("Banana")));
    EXPECT_FALSE(UnicodeString("apple").Less(UnicodeString("Banana")));
    EXPECT_TRUE(UnicodeString("a").Less(UnicodeString("b")));
    EXPECT_TRUE(UnicodeString("x") == UnicodeString(u"x"));

    EXPECT_LT(UnicodeString::LocalizedCompare("apple", "Banana"), 0);
    EXPECT_LT(UnicodeString::LocalizedCompare("côte", "cote2"), 0);
    EXPECT_EQ(UnicodeString::LocalizedCompare("same", "same"), 0);
    EXPECT_GT(UnicodeString::LocalizedCompare("b", "a"), 0);

    // The locale follows the environment: Turkish dotted capital I.
    const char* saved = std::getenv("LC_ALL");
    std::string previous = saved ? saved : "";
    setenv("LC_ALL", "tr_TR.UTF-8", 1);
    EXPECT_EQ(UnicodeString::Lowercase("I"), "ı");
    EXPECT_EQ(UnicodeString::UserLocaleName(), "tr_TR");
    // Swedish puts "ö" after "z".
    setenv("LC_ALL", "sv_SE.UTF-8", 1);
    EXPECT_GT(UnicodeString::LocalizedCompare("ö", "z"), 0);
    setenv("LC_ALL", "de_DE.UTF-8", 1);
    EXPECT_LT(UnicodeString::LocalizedCompare("ö", "z"), 0);
    if (saved) {
        setenv("LC_ALL", previous.c_str(), 1);
    } else {
        unsetenv("LC_ALL");
    }
}

TEST(UnicodeStringTest, Escaping) {
    EXPECT_EQ(UnicodeString::RemoveControlCharacters(std::string("a\x01\tb\nc\rd\x1f\x7f", 10)), "a\tb\nc\rd\x7f");
    EXPECT_EQ(UnicodeString::EscapeSlashes("a/b//c"), "a\\/b\\/\\/c");
    EXPECT_EQ(UnicodeString::ToJSON("q\"/\\\b\t\n\f\r\x01é"), "q\\\"\\/\\\\\\b\\t\\n\\f\\r\x01é");
}
