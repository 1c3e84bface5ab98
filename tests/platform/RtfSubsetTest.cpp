// The RTF that the styled text writes must read back to the same text and
// runs, whatever style follows whatever; paragraph indents survive the trip
// and tell paragraphs apart; and RTF of other writers in other
// code pages must read as the characters they meant.
#include <gtest/gtest.h>

#include "StyledText.h"

namespace {

// Styles that between them switch every property on and off.
std::vector<TextStyle> StylePalette() {
    std::vector<TextStyle> styles(9);
    styles[1].font = "Georgia";
    styles[1].size = 18;
    styles[1].leftIndent = 720;
    styles[2].bold = true;
    styles[2].italic = true;
    styles[3].font = "Brace{Font}\\Back";
    styles[3].underline = true;
    styles[3].foreground = TextRGB{255, 0, 0};
    styles[4].size = 9.5;
    styles[4].strikethrough = true;
    styles[4].background = TextRGB{0, 0, 0};
    styles[5].foreground = TextRGB{0, 0, 0};
    styles[5].background = TextRGB{255, 0, 0};
    styles[5].link = "https://example.org/a b\\c{d}?q=\xC3\xA9";
    styles[6].font = "Georgia";
    styles[6].link = "file:///tmp/x";
    styles[6].bold = true;
    styles[7].link = "https://example.org/a b\\c{d}?q=\xC3\xA9";
    styles[7].italic = true;
    styles[7].leftIndent = 720;
    styles[7].firstLineIndent = -360;
    styles[8].font = "Caf\xC3\xA9 Sans";
    styles[8].size = 11;
    styles[8].underline = true;
    return styles;
}

void ExpectSameRuns(const StyledText& back, const StyledText& original, const std::string& rtf) {
    EXPECT_EQ(back.Text(), original.Text()) << rtf;
    ASSERT_EQ(back.Runs().size(), original.Runs().size()) << rtf;
    for (size_t i = 0; i < original.Runs().size(); ++i) {
        EXPECT_EQ(back.Runs()[i].start, original.Runs()[i].start) << "run " << i;
        EXPECT_TRUE(back.Runs()[i].style == original.Runs()[i].style) << "run " << i << "\n" << rtf;
    }
}

} // namespace

TEST(RtfSubset, EveryStyleFollowsEveryOtherAndReadsBack) {
    std::vector<TextStyle> styles = StylePalette();
    // Characters the writer must escape or spell as \uN, one per run in turn.
    const std::vector<std::string> pieces = {
        "plain", "{brace}", "back\\slash", "caf\xC3\xA9", "\xF0\x9F\x8C\xB1 sprout", "tab\there", "semi;colon",
        "\xEF\xBF\xBC object", "del\x7f", "9digits", " lead", "\xE2\x80\xA8" "sep",
    };
    StyledText text;
    size_t piece = 0;
    for (size_t from = 0; from < styles.size(); ++from)
        for (size_t to = 0; to < styles.size(); ++to) {
            if (from == to)
                continue;
            text.Append(pieces[piece++ % pieces.size()], styles[from]);
            text.Append(pieces[piece++ % pieces.size()], styles[to]);
        }
    text.Append("\nlast line", TextStyle());
    std::string rtf = text.ToRTF();
    StyledText back = StyledText::FromRTF(rtf);
    ExpectSameRuns(back, text, rtf);
    EXPECT_EQ(back.ToRTF(), rtf);

    // Paragraph alignment changes and returns, with styles inside.
    StyledText paragraphs;
    paragraphs.Append("left\n", styles[1]);
    paragraphs.Append("centred ", styles[2]);
    paragraphs.Append("still\n", styles[5]);
    paragraphs.Append("natural\n", TextStyle());
    paragraphs.Append("right", styles[3]);
    paragraphs.SetAlignment(0, 1, TextAlignment::Left);
    paragraphs.SetAlignment(6, 1, TextAlignment::Center);
    paragraphs.SetAlignment(paragraphs.Length() - 1, 1, TextAlignment::Right);
    rtf = paragraphs.ToRTF();
    back = StyledText::FromRTF(rtf);
    ExpectSameRuns(back, paragraphs, rtf);
    EXPECT_EQ(back.StyleAt(paragraphs.Length() - 1).alignment, TextAlignment::Right);
    EXPECT_EQ(back.StyleAt(20).alignment, TextAlignment::Natural);
}

TEST(RtfSubset, AttachmentsInsideLinksAndStylesKeepTheirNamesAndPlaces) {
    TextStyle linked;
    linked.link = "https://example.org/pics";
    linked.bold = true;
    StyledText text("see  and  end");
    text.SetStyle(0, 3, linked);
    text.InsertAttachment(4, {"my {odd} pic\\\xC3\xA9.png", std::string("\x00\xFF\x01", 3), 40, 20}, linked);
    text.InsertAttachment(10, {"", "unnamed bytes", 0, 0});
    std::string rtf = text.ToRTF();
    StyledText back = StyledText::FromRTF(rtf);
    EXPECT_EQ(back.Text(), text.Text());
    ASSERT_EQ(back.AttachmentCount(), 2);
    EXPECT_EQ(back.Attachment(0)->fileName, "my {odd} pic\\\xC3\xA9.png");
    EXPECT_EQ(back.Attachment(0)->width, 40);
    EXPECT_EQ(back.AttachmentPosition(0), 4);
    EXPECT_EQ(back.StyleAt(4).link, "https://example.org/pics");
    EXPECT_EQ(back.Attachment(1)->fileName, "Attachment 2");
    EXPECT_EQ(back.AttachmentPosition(1), 10);

    // The container carries the bytes, every byte value, as given.
    std::string all;
    for (int i = 0; i < 256; ++i)
        all += static_cast<char>(i);
    StyledText pictures("x");
    pictures.InsertAttachment(0, {"all.bin", all, 1, 1});
    pictures.InsertAttachment(2, {"all.bin", all, 1, 1});   // the same picture twice is stored once
    std::string rtfd = pictures.ToRTFD();
    bool ok = false;
    auto files = StyledText::RTFDFiles(rtfd, &ok);
    ASSERT_TRUE(ok);
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[1].second, all);
    StyledText read = StyledText::FromRTFD(rtfd, &ok);
    ASSERT_TRUE(ok);
    EXPECT_EQ(read.Attachment(0)->data, all);
    EXPECT_EQ(read.Attachment(1)->data, all);
    EXPECT_EQ(read.ToRTFD(), rtfd);
}

TEST(RtfSubset, ParagraphIndentsAreWrittenReadAndKeptApart) {
    TextStyle georgia;
    georgia.font = "Georgia";
    StyledText text;
    text.Append("top\n");
    text.Append("one ", georgia);
    text.Append("level\n");   // back to no font: \plain in the middle of the paragraph
    text.Append("two levels\n");
    text.Append("hanging");
    text.SetIndents(4, 1, 720);
    text.SetIndents(text.Length() - 16, 3, 1440);
    text.SetIndents(text.Length() - 1, 1, 720, -360);
    EXPECT_EQ(text.StyleAt(3).leftIndent, 0);
    EXPECT_EQ(text.StyleAt(13).leftIndent, 720);   // the whole paragraph, line break included
    EXPECT_EQ(text.StyleAt(14).leftIndent, 1440);
    // Same characters, different indents: different runs.
    ASSERT_EQ(text.Runs().size(), 5u);
    EXPECT_FALSE(text.StyleAt(14).IsPlain());
    EXPECT_TRUE(text.StyleAt(14) != text.StyleAt(0));

    std::string rtf = text.ToRTF();
    EXPECT_NE(rtf.find("\\pard\\li720\\f0 one"), std::string::npos) << rtf;
    EXPECT_NE(rtf.find("\\li1440"), std::string::npos) << rtf;
    EXPECT_NE(rtf.find("\\li720\\fi-360"), std::string::npos) << rtf;
    StyledText back = StyledText::FromRTF(rtf);
    ExpectSameRuns(back, text, rtf);
    EXPECT_TRUE(back == text);
    EXPECT_EQ(back.StyleAt(8).leftIndent, 720);    // after \plain
    EXPECT_EQ(back.StyleAt(back.Length() - 1).firstLineIndent, -360);
    EXPECT_EQ(back.ToRTF(), rtf);

    // Other writers: \pard clears the indents, \plain does not, and a huge
    // number stays within range.
    StyledText other = StyledText::FromRTF("{\\rtf1 \\li360\\fi-180 a\\plain b\\par\\pard c\\li99999999999 d}");
    EXPECT_EQ(other.Text(), "ab\ncd");
    EXPECT_EQ(other.StyleAt(0).leftIndent, 360);
    EXPECT_EQ(other.StyleAt(0).firstLineIndent, -180);
    EXPECT_EQ(other.StyleAt(1).leftIndent, 360);
    EXPECT_EQ(other.StyleAt(3).leftIndent, 0);
    EXPECT_EQ(other.StyleAt(3).firstLineIndent, 0);
    EXPECT_GT(other.StyleAt(4).leftIndent, 0);
}

TEST(RtfSubset, CodePagesOfOtherWritersReadAsTheirCharacters) {
    // Double-byte code pages: a second byte below 0x80 (even a backslash's
    // code) belongs to its character.
    EXPECT_EQ(StyledText::FromRTF("{\\rtf1\\ansi\\ansicpg932 \\'82\\'a0\\'95\\'5c\\'83\\'5c!}").Text(),
              "\xE3\x81\x82\xE8\xA1\xA8\xE3\x82\xBD!");
    EXPECT_EQ(StyledText::FromRTF("{\\rtf1\\ansi\\ansicpg936 \\'c4\\'e3\\'ba\\'c3 x}").Text(),
              "\xE4\xBD\xA0\xE5\xA5\xBD x");
    // In a single-byte code page "\'5c" is a backslash and stands alone.
    EXPECT_EQ(StyledText::FromRTF("{\\rtf1\\ansi\\ansicpg1252 caf\\'e9\\'5c\\'41}").Text(), "caf\xC3\xA9\\A");
    EXPECT_EQ(StyledText::FromRTF("{\\rtf1\\mac \\'8e t}").Text(), "\xC3\xA9 t");
    EXPECT_EQ(StyledText::FromRTF("{\\rtf1\\ansi\\ansicpg1251 \\'cf\\'f0\\'e8}").Text(), "\xD0\x9F\xD1\x80\xD0\xB8");
    // \uN with its fallback: \uc1 skips one character, \uc2 a hex escape and a
    // letter, and a group end ends the skipping.
    EXPECT_EQ(StyledText::FromRTF("{\\rtf1\\uc1 a\\u8364?b}").Text(), "a\xE2\x82\xAC" "b");
    EXPECT_EQ(StyledText::FromRTF("{\\rtf1\\uc2 a\\u8364\\'80Eb}").Text(), "a\xE2\x82\xAC" "b");
    EXPECT_EQ(StyledText::FromRTF("{\\rtf1\\uc3 {a\\u8364}bcd}").Text(), "a\xE2\x82\xAC" "bcd");
    EXPECT_EQ(StyledText::FromRTF("{\\rtf1 \\u-10180 ?\\u-8399 ?!}").Text(), "\xF0\x9F\x8C\xB1!");
}
