#include <gtest/gtest.h>

#include "Base64.h"
#include "StyledText.h"

namespace {

TextStyle Bold() {
    TextStyle s;
    s.bold = true;
    return s;
}

// A text that uses every property the RTF writer knows.
StyledText RichSample() {
    StyledText t;
    TextStyle title;
    title.font = "Georgia";
    title.size = 18;
    title.bold = true;
    title.alignment = TextAlignment::Center;
    t.Append("Caf\xC3\xA9 {notes} \\ 100%\n", title);
    TextStyle body;
    body.font = "Helvetica Neue";
    body.size = 12.5;
    t.Append("Plain, then ", body);
    TextStyle italic = body;
    italic.italic = true;
    italic.foreground = TextRGB{200, 10, 20};
    t.Append("italic red", italic);
    t.Append(" and ", TextStyle());
    TextStyle link = body;
    link.link = "https://example.org/a?b={c}&d=\\x#frag ment";
    t.Append("a link ", link);
    link.underline = true;
    link.background = TextRGB{255, 255, 0};
    t.Append("still linked\n", link);
    TextStyle right;
    right.alignment = TextAlignment::Right;
    right.strikethrough = true;
    t.Append("\tstruck \xF0\x9F\x98\x80 emoji\xE2\x80\xA8line", right);
    return t;
}

} // namespace

TEST(StyledText, RunsSplitMergeAndReplaceInUtf16Units) {
    StyledText t("a\xF0\x9F\x98\x80" "bc");   // a, emoji (two units), b, c
    EXPECT_EQ(t.Length(), 5);
    t.SetStyle(1, 2, Bold());
    ASSERT_EQ(t.Runs().size(), 3u);
    EXPECT_EQ(t.Runs()[1].start, 1);
    EXPECT_EQ(t.Runs()[1].length, 2);
    EXPECT_TRUE(t.StyleAt(2).bold);
    EXPECT_FALSE(t.StyleAt(3).bold);
    EXPECT_TRUE(t.HasStyles());

    // Making the rest bold merges everything into one run.
    t.SetStyle(0, 5, Bold());
    ASSERT_EQ(t.Runs().size(), 1u);

    // Plain replacement takes the replaced range's style; styled keeps its own.
    t.Replace(3, 1, "XYZ");
    EXPECT_EQ(t.Text(), "a\xF0\x9F\x98\x80XYZc");
    EXPECT_EQ(t.Runs().size(), 1u);
    t.Replace(0, 1, StyledText("plain "));
    EXPECT_EQ(t.Text(), "plain \xF0\x9F\x98\x80XYZc");
    ASSERT_EQ(t.Runs().size(), 2u);
    EXPECT_EQ(t.Runs()[1].start, 6);

    StyledText sub = t.Substring(4, 6);
    EXPECT_EQ(sub.Text(), "n \xF0\x9F\x98\x80XY");
    ASSERT_EQ(sub.Runs().size(), 2u);
    EXPECT_EQ(sub.Runs()[0].length, 2);
    EXPECT_TRUE(sub.StyleAt(2).bold);

    // Out-of-range requests are clipped, not errors.
    t.SetStyle(-5, 100, TextStyle());
    EXPECT_FALSE(t.HasStyles());
    EXPECT_EQ(t.Runs().size(), 1u);

    // Alignment covers whole paragraphs.
    StyledText p("one\ntwo\nthree");
    p.SetAlignment(5, 1, TextAlignment::Center);
    EXPECT_EQ(p.StyleAt(3).alignment, TextAlignment::Natural);
    EXPECT_EQ(p.StyleAt(4).alignment, TextAlignment::Center);
    EXPECT_EQ(p.StyleAt(7).alignment, TextAlignment::Center);
    EXPECT_EQ(p.StyleAt(8).alignment, TextAlignment::Natural);
}

TEST(StyledText, RtfRoundTripKeepsEveryStyle) {
    StyledText original = RichSample();
    std::string rtf = original.ToRTF();
    StyledText back = StyledText::FromRTF(rtf);
    EXPECT_EQ(back.Text(), original.Text());
    ASSERT_EQ(back.Runs().size(), original.Runs().size()) << rtf;
    for (size_t i = 0; i < original.Runs().size(); ++i) {
        EXPECT_EQ(back.Runs()[i].start, original.Runs()[i].start) << i;
        EXPECT_TRUE(back.Runs()[i].style == original.Runs()[i].style) << "run " << i << "\n" << rtf;
    }
    EXPECT_TRUE(back == original);
    // The writer is deterministic, so a second trip gives the same bytes.
    EXPECT_EQ(back.ToRTF(), rtf);
    // Plain text round-trips to plain text.
    StyledText plain("just words\nand lines");
    EXPECT_TRUE(StyledText::FromRTF(plain.ToRTF()) == plain);
    EXPECT_FALSE(StyledText::FromRTF(plain.ToRTF()).HasStyles());
}

TEST(StyledText, ReadsRtfOfOtherWriters) {
    const char* rtf =
        "{\\rtf1\\ansi\\ansicpg1252\\cocoartf2761\n"
        "\\cocoatextscaling0\\cocoaplatform0{\\fonttbl{\\f0\\fswiss\\fcharset0 Helvetica;}"
        "{\\f1\\fnil\\fcharset0 Menlo-Regular{\\*\\panose 020b0609030804020204};}}\n"
        "{\\colortbl;\\red255\\green255\\blue255;\\red0\\green0\\blue255;}\n"
        "{\\*\\expandedcolortbl;;\\csgenericrgb\\c0\\c0\\c100000;}\n"
        "{\\info{\\title Hidden}}\n"
        "\\margl1440\\vieww11520\\pard\\tx560\\pardirnatural\\partightenfactor0\n"
        "\\f0\\fs24 \\cf0 Caf\\'e9 na\\uc1\\u239 ive\\~end\\\n"
        "{\\b bold} \\plain \\f1 mono \\cf2 blue\\cf0  "
        "{\\field{\\*\\fldinst{HYPERLINK \"http://x.org/\"}}{\\fldrslt \\ul site}} after}";
    StyledText t = StyledText::FromRTF(rtf);
    EXPECT_EQ(t.Text(), "Caf\xC3\xA9 na\xC3\xAFve\xC2\xA0" "end\nbold mono blue site after");
    EXPECT_EQ(t.StyleAt(0).font, "Helvetica");
    EXPECT_EQ(t.StyleAt(0).size, 12);
    int bold = t.Text().find("bold") - 2;   // two multibyte characters before
    EXPECT_TRUE(t.StyleAt(bold).bold);
    EXPECT_FALSE(t.StyleAt(bold + 4).bold);
    std::u16string u = t.Unicode();
    int mono = static_cast<int>(u.find(u"mono"));
    EXPECT_EQ(t.StyleAt(mono).font, "Menlo-Regular");
    EXPECT_EQ(t.StyleAt(mono).size, 0);
    int blue = static_cast<int>(u.find(u"blue"));
    ASSERT_TRUE(t.StyleAt(blue).foreground.has_value());
    EXPECT_EQ(t.StyleAt(blue).foreground->blue, 255);
    int site = static_cast<int>(u.find(u"site"));
    EXPECT_EQ(t.StyleAt(site).link, "http://x.org/");
    EXPECT_TRUE(t.StyleAt(site).underline);
    int after = static_cast<int>(u.find(u"after"));
    EXPECT_EQ(t.StyleAt(after).link, "");
    EXPECT_FALSE(t.StyleAt(after).underline);

    // Not RTF at all: the bytes are the text.
    EXPECT_EQ(StyledText::FromRTF("hello {world}").Text(), "hello {world}");
}

TEST(StyledText, HostileRtfEndsQuietly) {
    std::string deep = "{\\rtf1 " + std::string(5000, '{') + "x" + std::string(3, '}');
    EXPECT_EQ(StyledText::FromRTF(deep).Text(), "x");
    EXPECT_EQ(StyledText::FromRTF("{\\rtf1 abc\\").Text(), "abc");
    EXPECT_EQ(StyledText::FromRTF("{\\rtf1 \\u").Text(), std::string("\0", 1));
    EXPECT_EQ(StyledText::FromRTF("{\\rtf1 a}}}}b").Text(), "a");
    EXPECT_EQ(StyledText::FromRTF("{\\rtf1 \\'zz\\'4").Text(), "zz\x04");
}

TEST(StyledText, RtfdCarriesAttachmentBytesUnchanged) {
    std::string png("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
    std::string gif("GIF89a\0\x01", 8);
    StyledText t("before  after");
    t.InsertAttachment(7, {"chart.png", png, 400, 300});
    t.InsertAttachment(7, {"anim.gif", gif, 20, 20}, Bold());
    EXPECT_EQ(t.AttachmentCount(), 2);
    EXPECT_EQ(t.AttachmentPosition(0), 7);
    EXPECT_EQ(t.AttachmentPosition(1), 8);
    EXPECT_EQ(t.Attachment(1)->fileName, "chart.png");

    std::string rtfd = t.ToRTFD();
    ASSERT_TRUE(StyledText::IsRTFD(rtfd));
    bool ok = false;
    StyledText back = StyledText::FromRTFD(rtfd, &ok);
    ASSERT_TRUE(ok);
    EXPECT_TRUE(back == t);
    EXPECT_EQ(back.Attachment(0)->data, gif);
    EXPECT_EQ(back.Attachment(1)->data, png);
    EXPECT_EQ(back.Attachment(1)->width, 400);
    EXPECT_TRUE(back.StyleAt(7).bold);
    EXPECT_EQ(back.ToRTFD(), rtfd);

    auto files = StyledText::RTFDFiles(rtfd, &ok);
    ASSERT_EQ(files.size(), 3u);
    EXPECT_EQ(files[0].first, "TXT.rtf");

    // Two different pictures with one name are both kept.
    StyledText clash("ab");
    clash.InsertAttachment(1, {"image.png", "one", 1, 1});
    clash.InsertAttachment(0, {"image.png", "two", 1, 1});
    StyledText clashBack = StyledText::FromRTFD(clash.ToRTFD());
    EXPECT_EQ(clashBack.Attachment(0)->data, "two");
    EXPECT_EQ(clashBack.Attachment(1)->data, "one");

    // Truncated or foreign containers are refused.
    StyledText::FromRTFD(rtfd.substr(0, rtfd.size() - 1), &ok);
    EXPECT_FALSE(ok);
    StyledText::FromRTFD("{\\rtf1 x}", &ok);
    EXPECT_FALSE(ok);
}

TEST(Base64, EncodesAndDecodesAllLengths) {
    std::string bytes;
    for (int i = 0; i < 300; ++i)
        bytes += static_cast<char>(i * 7);
    for (size_t n = 0; n < 8; ++n)
        EXPECT_EQ(Base64Decoder::Decode(Base64::Encode(bytes.substr(0, n))), bytes.substr(0, n));
    EXPECT_EQ(Base64::Encode("Man"), "TWFu");
    EXPECT_EQ(Base64::Encode("Ma"), "TWE=");
    EXPECT_EQ(Base64::Encode("M"), "TQ==");
    std::string wrapped = Base64::Encode(bytes, 76);
    EXPECT_NE(wrapped.find('\n'), std::string::npos);
    EXPECT_EQ(Base64Decoder::Decode(wrapped), bytes);
    std::string out;
    EXPECT_FALSE(Base64Decoder::Decode("TW*u", out));
    EXPECT_FALSE(Base64Decoder::Decode("TWF", out));
    EXPECT_FALSE(Base64Decoder::Decode("TQ==TQ==", out));
}
