// Colour, information and format functions of action code: golden tables
// of expression and answer on note A of the shared test document. The
// tests run with LC_ALL=en_US.UTF-8 (see tests/CMakeLists.txt).
#include <gtest/gtest.h>

#include "ActionTestDocument.h"

#include <regex>
#include <utility>
#include <vector>

#include "AAType.h"
#include "AttributeType.h"

namespace {

using Golden = std::vector<std::pair<const char*, const char*>>;

class ColourFormatTest : public ActionTestDocument {
protected:
    void ExpectAll(const Golden& cases) {
        for (const auto& [expression, expected] : cases)
            EXPECT_EQ(Eval(expression), expected) << expression;
    }
};

TEST_F(ColourFormatTest, ColoursFromChannelsAndBack) {
    ExpectAll({
        {"rgb(255, 0, 0)", "#ff0000"},
        {"RGB(51, 102, 153)", "#336699"},
        // Channels are clamped to 0..255.
        {"rgb(300, -5, 16)", "#ff0010"},
        {"rgb()", "#000000"},
        {"\"#336699\".red", "51"},
        {"\"#336699\".green", "102"},
        {"\"#336699\".blue", "153"},
        {"rgb(1, 2, 3).blue", "3"},
        {"\"#00ff00\".hue", "120"},
        {"\"#ffffff\".saturation", "0"},
        {"\"#ff0000\".saturation", "100"},
        {"\"#ffffff\".brightness", "100"},
        {"hue(\"#0000ff\")", "240"},
        {"saturation(\"#ff0000\")", "100"},
        {"brightness(\"#000000\")", "0"},
        {"hue()", "0"},
        // A second argument replaces the component.
        {"hue(\"#ff0000\", 240)", "#0000ff"},
        {"saturation(\"#ff0000\", 0)", "#ffffff"},
        {"brightness(\"#ff0000\", 0)", "#000000"},
        {"hue(\"#ff0000\", 120).green", "255"},
    });
    a->Set("Color", "#102030");
    EXPECT_EQ(Eval("$Color.red + $Color.blue"), "64");
}

TEST_F(ColourFormatTest, AttributeInformation) {
    ExpectAll({
        {"type(\"Count\")", "number"},
        {"type($Tags)", "set"},
        {"type(Table)", "dictionary"},
        {"type(\"Nothing\")", ""},
        {"attribute(\"Count\").at(\"type\")", "number"},
        {"attribute(\"Count\")[\"user\"]", "true"},
        {"attribute(\"Name\")[\"user\"]", "false"},
        {"attribute(\"Tags\")[\"name\"]", "Tags"},
        {"attribute(\"Nothing\")", ""},
    });
    Do("var n = \"Due\"; $Words = type(n)");
    EXPECT_EQ(Get("Words"), "date");
}

TEST_F(ColourFormatTest, VersionDocumentAndISBN) {
    std::string version = Eval("version()");
    EXPECT_TRUE(std::regex_match(version, std::regex("[0-9]+\\.[0-9]+\\.[0-9]+"))) << version;
    EXPECT_EQ(version, AAVersion::ProgramVersion());
    EXPECT_EQ(Eval("version(\"major\") + \".\" + version(\"minor\") + \".\" + version(\"patch\")"), version);
    EXPECT_EQ(Eval("version(\"other\")"), "");

    EXPECT_EQ(Eval("document()"), "");
    doc.SetDefaultPathname("/home/someone/work/notes.ryl");
    ExpectAll({
        {"document()", "/home/someone/work/notes.ryl"},
        {"document(\"name\")", "notes"},
        {"document(\"file\")", "notes.ryl"},
        {"document(\"folder\")", "/home/someone/work"},
        {"document(\"extension\")", "ryl"},
        {"document(\"colour\")", ""},

        {"isbn10(\"978-0-306-40615-7\")", "0306406152"},
        {"isbn10(\"0-306-40615-2\")", "0306406152"},
        {"isbn10(\"0306406153\")", ""},
        {"isbn10(\"979-10-90636-07-1\")", ""},
        {"isbn13(\"0-306-40615-2\")", "9780306406157"},
        {"isbn13(\"9780306406157\")", "9780306406157"},
        {"isbn13(\"9780306406158\")", ""},
        {"isbn10(\"080442957X\")", "080442957X"},
        {"isbn13(\"080442957X\")", "9780804429573"},
        {"isbn13(\"abc\")", ""},
        {"covid(\"somewhere\")", ""},
    });
}

TEST_F(ColourFormatTest, FormatNumbers) {
    a->Set("Count", "1234.5");
    ExpectAll({
        // A lone value is only written.
        {"format($Count)", "1234.5"},
        {"$Count.format(2)", "1234.50"},
        {"$Count.format(0)", "1234"},
        {"format(2.75, 1)", "2.8"},
        {"$Count.format(1, 10)", "    1234.5"},
        {"$Count.format(1, 10, \"0\")", "00001234.5"},
        {"$Count.format(1, 10, \"*#\")", "****1234.5"},
        {"$Count.format(1, 3)", "1234.5"},
        {"$Count.format()", "1234.5"},
        {"format($Count, 3, 0, \"x\")", "1234.500"},
        {"format(\"2.5\", 2)", "2.50"},
        // Localized forms.
        {"$Count.format(\"L\")", "1,234.5"},
        {"$Count.format(\"l\")", "1,234.5"},
        {"$Count.format(\"\")", "1,234.5"},
        {"$Count.format(\"$\")", "$1,234.50"},
        // Whole currency rounds halves down.
        {"$Count.format(\"$0\")", "$1,234"},
        {"format(1234.6, \"$0\")", "$1,235"},
    });
    // Places and widths are bounded.
    EXPECT_EQ(Eval("$Count.format(1, 99999999)").size(), 4096u);
    EXPECT_EQ(Eval("$Count.format(99999)").size(), std::string("1234.").size() + 40);
}

TEST_F(ColourFormatTest, FormatOtherKinds) {
    a->Set("Items", "a;b;c");
    a->Set("Due", "2024-03-05T10:20:00Z");
    a->Set("Span", "0");
    ExpectAll({
        {"$Items.format(\", \")", "a, b, c"},
        {"format(\"a;b\", \"+\")", "a+b"},
        {"$Items.format(\"<ul>\", \"<li>\", \"</li>\", \"</ul>\")", "<ul><li>a</li><li>b</li><li>c</li></ul>"},
        {"$Items.format(\"\", \"\", \"\\n\", \"\")", "a\nb\nc\n"},
        {"format(\"#FF0000\")", "#ff0000"},
        {"$Due.format(\"D/M0/Y\")", "05/03/24"},
        {"$Due.format(\"h:mm\")", "10:20"},
        {"$Span.format()", ""},
        {"format(true)", ""},
    });
    a->Set("Span", "90");
    EXPECT_NE(Eval("$Span.format()"), "");
}

TEST_F(ColourFormatTest, KindOfUntypedText) {
    const std::pair<const char*, int> cases[] = {
        {"a;b", AttributeType::kList},       {"#336699", AttributeType::kColor},
        {"12.5", AttributeType::kNumber},    {"-3", AttributeType::kNumber},
        {"1.5e3", AttributeType::kNumber},   {"March 5, 2024", AttributeType::kDate},
        {"1e5e", AttributeType::kDate},      {"", AttributeType::kString},
        {"2024-03-05", AttributeType::kNumber},
    };
    for (const auto& [text, kind] : cases)
        EXPECT_EQ(AAFormat::WhatKind(text), kind) << text;
}

}  // namespace
