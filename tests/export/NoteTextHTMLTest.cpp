// A note's text as HTML and Markdown: entities, the placing of tags,
// paragraphs and lists, styles, links, pictures and the CommonMark step.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "HTMLCode.h"
#include "HTMLEncoder.h"
#include "HTMLMarkup.h"
#include "HTMLMarkupParagraph.h"
#include "Hypertext.h"
#include "Link.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "NodeLinks.h"
#include "RylCommonMark.h"

namespace {

// An export that marks text links, names pictures after the note and keeps
// what it was asked to write.
class RecordingHost : public HTMLMarkupHost {
public:
    bool HasTextLinks() const override { return textLinks; }
    bool LinkIndexEntry(const Node* original, LinkBundle& links) const override {
        if (!useIndex)
            return false;
        links = index;
        return true;
    }
    std::string LinkURLFor(const Node* target, const Node* current) const override {
        return target->Name() + ".html";
    }
    std::string ImageFileName(const Node* note, int index) const override {
        return note->Name() + (index > 0 ? std::to_string(index) : std::string()) + ".png";
    }
    void WriteImageFile(const Node*, int, const std::string& fileName, const std::string& data) const override {
        written.push_back(fileName + "=" + data);
    }
    std::vector<std::string> MacroOpenings() const override { return macros; }

    bool textLinks = true;
    bool useIndex = false;
    LinkBundle index;
    std::vector<std::string> macros;
    mutable std::vector<std::string> written;
};

class NoteTextHTML : public ::testing::Test {
protected:
    void SetUp() override {
        top = NodeMaker(&doc).MakeNode("Top", nullptr, nullptr, 0, 0);
        note = NodeMaker(&doc).MakeNode("Plan", top, nullptr, 0, 0);
        other = NodeMaker(&doc).MakeNode("Other", top, note, 0, 0);
        textSize = NodeText(note).TextFontSize();
    }

    std::string Markup(const std::string& text, const HTMLMarkupHost* host = nullptr, long limit = 0, bool markdown = false) {
        NodeText(note).SetText(text);
        return HTMLMarkup(note, note, host, limit, markdown).ToString();
    }
    std::string Markup(const StyledText& styled, const HTMLMarkupHost* host = nullptr, long limit = 0) {
        NodeText(note).SetRTFD(styled);
        return HTMLMarkup(note, note, host, limit).ToString();
    }
    TextStyle Sized(double delta) {
        TextStyle style;
        style.size = textSize + delta;
        return style;
    }

    Hypertext doc;
    Node* top = nullptr;
    Node* note = nullptr;
    Node* other = nullptr;
    double textSize = 0;
};

}  // namespace

TEST(HTMLEncoder, AmpersandsEntitiesAndAngles) {
    EXPECT_EQ(HTMLEncoder::EntityFilter("AT&T", false, false), "AT&amp;T");
    EXPECT_EQ(HTMLEncoder::EntityFilter("&copy; 2024 &#169;", false, false), "&copy; 2024 &#169;");
    EXPECT_EQ(HTMLEncoder::EntityFilter("a & b; c&d e;", false, false), "a &amp; b; c&amp;d e;");
    EXPECT_EQ(HTMLEncoder::EntityFilter("fish&chips", true, false), "fish&chips");
    // An "&" at the very end has no ";" after it.
    EXPECT_EQ(HTMLEncoder::EntityFilter("end&", false, false), "end&amp;");

    EXPECT_EQ(HTMLEncoder::EntityFilter("<b>x</b>", false, false), "<b>x</b>");
    EXPECT_EQ(HTMLEncoder::EntityFilter("<b>x</b>", false, true), "&lt;b&gt;x&lt;/b&gt;");
    // Within a code span angles are always encoded; the code tags stay.
    EXPECT_EQ(HTMLEncoder::EntityFilter("a<b <code>if (x<y) f(<z>)</code> c>d", false, false),
              "a<b <code>if (x&lt;y) f(&lt;z&gt;)</code> c>d");
    EXPECT_EQ(HTMLEncoder::EntityFilter("<CODE class=\"x\">1<2</Code>", false, false),
              "<CODE class=\"x\">1&lt;2</Code>");

    // Beyond ASCII: hexadecimal entities by code point; attachments vanish.
    EXPECT_EQ(HTMLEncoder::EntityFilter("caf\xC3\xA9 \xF0\x9F\x98\x80", false, false), "caf&#xE9; &#x1F600;");
    EXPECT_EQ(HTMLEncoder::EntityFilter("a\xEF\xBF\xBC" "b", false, false), "ab");
    EXPECT_EQ(HTMLEncoder::AsEntity(-54), " ");
    EXPECT_EQ(HTMLEncoder::AsEntity(127), "&#x7F;");
    EXPECT_EQ(HTMLEncoder::AsEntity('&'), "&amp;");

    EXPECT_EQ(HTMLEncoder::EncodeAmpersands("&copy; & &#169;"), "&amp;copy; &amp; &amp;#169;");
    EXPECT_EQ(HTMLEncoder::EncodeQuotes("say \"hi\" & go"), "say &quot;hi&quot; & go");
}

TEST(HTMLCodeTags, EncloseWrapsInsertNestsAndSkipsReplaceText) {
    HTMLCode code(u"abcdef", false, false);
    code.Insert(HTMLMarkupTag("<b>", 0, true), HTMLMarkupTag("</b>", 3, false));
    code.Insert(HTMLMarkupTag("<i>", 0, true), HTMLMarkupTag("</i>", 3, false));
    EXPECT_EQ(code.ToString(nullptr), "<b><i>abc</i></b>def");
    code.Enclose(HTMLMarkupTag("<p>", 0, true), HTMLMarkupTag("</p>", 6, false));
    // A stretch that starts where another ends opens after the other closes.
    code.Enclose(HTMLMarkupTag("<u>", 3, true), HTMLMarkupTag("</u>", 6, false));
    EXPECT_EQ(code.ToString(nullptr), "<p><b><i>abc</i></b><u>def</u></p>");

    HTMLCode skipping(u"* item", false, false);
    HTMLMarkupTag item("<li>", 0, true);
    item.Skip(2);
    skipping.Enclose(item, HTMLMarkupTag("</li>", 6, false));
    EXPECT_EQ(skipping.ToString(nullptr), "<li>item</li>");

    // A cut end drops what lies beyond it and closes what crosses it.
    HTMLCode cut(u"one two three", false, false);
    cut.Insert(HTMLMarkupTag("<b>", 4, true), HTMLMarkupTag("</b>", 13, false));
    cut.Insert(HTMLMarkupTag("<i>", 8, true), HTMLMarkupTag("</i>", 13, false));
    cut.SetLast(7);
    cut.Add(HTMLMarkupTag("...", cut.End(), false), true);
    EXPECT_EQ(cut.ToString(nullptr), "one <b>two</b>...");

    // With entities on, text is encoded but tags are not.
    HTMLCode encoded(u"AT&T <3", true, true);
    encoded.Insert(HTMLMarkupTag("<em>", 0, true), HTMLMarkupTag("</em>", 4, false));
    EXPECT_EQ(encoded.ToHTML(nullptr), "<em>AT&amp;T</em> &lt;3");
    EXPECT_EQ(encoded.ToString(nullptr), "<em>AT&T</em> <3");
}

TEST_F(NoteTextHTML, ParagraphsUseTheNotesStrings) {
    EXPECT_EQ(Markup("First line\nSecond line\n\n\tIndented line\r\nLast  "),
              "<p>First line</p>\n<p>Second line</p>\n\n\t<blockquote>Indented line</blockquote>\r\n<p>Last</p>  ");
    note->Set("HTMLFirstParagraphStart", "<p class=\"lead\">");
    note->Set("HTMLParagraphStart", "<div>");
    note->Set("HTMLParagraphEnd", "</div>");
    EXPECT_EQ(Markup("One\nTwo\nThree"), "<p class=\"lead\">One</p>\n<div>Two</div>\n<div>Three</div>");
    // Without paragraph strings, lines end in line breaks.
    for (const char* name : {"HTMLFirstParagraphStart", "HTMLFirstParagraphEnd", "HTMLParagraphStart", "HTMLParagraphEnd"})
        note->Set(name, "");
    EXPECT_EQ(Markup("One\nTwo"), "One<br>\nTwo<br>");
    EXPECT_EQ(Markup(""), "");
}

TEST_F(NoteTextHTML, ParagraphsThatAreMarkupGetNoTags) {
    EXPECT_EQ(Markup("^value($Name)^"), "^value($Name)^");
    EXPECT_EQ(Markup("^title^\nText\n<div class=\"x\">kept</div>\n^ not markup^"),
              "^title^\n<p>Text</p>\n<div class=\"x\">kept</div>\n<p>^ not markup^</p>");
    // A preformatted stretch is one paragraph, newlines and all.
    EXPECT_EQ(Markup("Before\n<pre>a\n\nb</pre>\nAfter"), "<p>Before</p>\n<pre>a\n\nb</pre>\n<p>After</p>");
    // A macro call is left alone only when the export knows the macro.
    EXPECT_EQ(Markup("^do(greet,Ann)"), "<p>^do(greet,Ann)</p>");
    RecordingHost host;
    host.macros = {"^do("};
    EXPECT_EQ(Markup("^do(greet,Ann)\nplain", &host), "^do(greet,Ann)\n<p>plain</p>");
}

TEST_F(NoteTextHTML, ListsNestByLevelAndOrderedItemsUseTheirStrings) {
    EXPECT_EQ(Markup("* a\n** b\n* c\n# one\n# two"),
              "<ul><li> a\n<ul><li> b</li></ul></li>\n<li> c</li></ul>\n<ol><li> one</li>\n<li> two</li></ol>");
    note->Set("HTMLOrderedListItemStart", "<li class=\"n\">");
    EXPECT_EQ(Markup("Intro\n# a\n## b\n\xE2\x80\xA2 dot\nAfter"),
              "<p>Intro</p>\n<ol><li class=\"n\"> a\n<ol><li class=\"n\"> b</li></ol></li></ol>\n"
              "<ul><li> dot</li></ul>\n<p>After</p>");
    // A jump of levels still nests one deeper; a shallower item climbs back.
    EXPECT_EQ(Markup("* a\n*** deep\n** mid\n* b"),
              "<ul><li> a\n<ul><li> deep</li>\n<li> mid</li></ul></li>\n<li> b</li></ul>");
    // With no list strings at all, list characters are plain text.
    for (const char* name : {"HTMLListStart", "HTMLOrderedListStart", "HTMLListItemStart", "HTMLOrderedListItemStart"})
        note->Set(name, "");
    EXPECT_EQ(Markup("* a"), "<p>* a</p>");
}

TEST_F(NoteTextHTML, RunawayListDepthAndManyLinesStayBounded) {
    std::string deep(200000, '*');
    std::string html = Markup(deep + " x\n* y");
    EXPECT_EQ(html.substr(0, 8), "<ul><li>");
    EXPECT_EQ(html.substr(html.size() - 25), "> x</li>\n<li> y</li></ul>");
    std::string lines;
    for (int i = 0; i < 20000; ++i)
        lines += (i % 3 == 0 ? "* item\n" : "line\n");
    html = Markup(lines);
    EXPECT_NE(html.find("<ul><li> item</li></ul>\n<p>line</p>"), std::string::npos);
}

TEST_F(NoteTextHTML, HeadingsFollowTheParagraphsFontSize) {
    StyledText styled;
    styled.Append("Huge\n", Sized(6));
    styled.Append("Large\n", Sized(4));
    styled.Append("Bigger\n", Sized(2));
    styled.Append("Slightly\n", Sized(1));
    styled.Append("Mixed ", Sized(6));
    styled.Append("sizes");
    EXPECT_EQ(Markup(styled), "<h1>Huge</h1>\n<h2>Large</h2>\n<h3>Bigger</h3>\n<p>Slightly</p>\n<p>Mixed sizes</p>");
}

TEST_F(NoteTextHTML, StylesBecomeTheNotesTags) {
    StyledText styled("plain ");
    TextStyle bold;
    bold.bold = true;
    TextStyle both = bold;
    both.italic = true;
    TextStyle struck;
    struck.strikethrough = true;
    struck.underline = true;
    styled.Append("bold ", bold);
    styled.Append("both", both);
    styled.Append(" and ");
    styled.Append("gone", struck);
    EXPECT_EQ(Markup(styled), "<p>plain <b>bold <i>both</i></b> and <u><strike>gone</strike></u></p>");
    note->Set("HTMLBoldStart", "<strong>");
    note->Set("HTMLBoldEnd", "</strong>");
    EXPECT_EQ(Markup(styled).substr(0, 25), "<p>plain <strong>bold <i>");

    // The code font marks code, unless it is the text font.
    StyledText code("call ");
    TextStyle mono;
    mono.font = "Monaco";
    code.Append("f(x)", mono);
    note->Set("CodeFont", "Monaco");
    EXPECT_EQ(Markup(code), "<p>call <code>f(x)</code></p>");
    note->Set("TextFont", "Monaco");
    EXPECT_EQ(Markup(code), "<p>call f(x)</p>");
}

TEST_F(NoteTextHTML, WebLinksInHTMLAndMarkdown) {
    StyledText styled("see the ");
    TextStyle linked;
    linked.link = "https://example.org/a?b=1";
    linked.underline = true;
    styled.Append("site", linked);
    styled.Append(" now");
    EXPECT_EQ(Markup(styled), "<p>see the <u><a href=\"https://example.org/a?b=1\">site</a></u> now</p>");
    note->Set("HTMLMarkdown", "true");
    EXPECT_EQ(Markup(styled), "see the [site](https://example.org/a?b=1)  now");
}

TEST_F(NoteTextHTML, TextLinksBetweenNotes) {
    NodeText(note).SetText("Read the other plan first.");
    LinkRecord toOther(note, 9, 5);   // "other"
    toOther.destNode = other;
    ASSERT_NE(NodeLinks(note).CreateLink(toOther), nullptr);
    LinkRecord web(note, 20, 5);       // "first"
    web.url = "https://example.org";
    web.title = "Example";
    web.target = "_blank";
    web.linkClass = "out";
    ASSERT_NE(NodeLinks(note).CreateLink(web), nullptr);
    // A second link on the same anchor joins the first one's cluster; one
    // overlapping an anchor already marked is left out.
    LinkRecord alsoTop(note, 9, 5);
    alsoTop.destNode = top;
    ASSERT_NE(NodeLinks(note).CreateLink(alsoTop), nullptr);
    LinkRecord overlapping(note, 11, 8);   // "her plan"
    overlapping.destNode = top;
    ASSERT_NE(NodeLinks(note).CreateLink(overlapping), nullptr);

    RecordingHost host;
    EXPECT_EQ(HTMLMarkup(note, note, &host).ToString(),
              "<p>Read the <a href=\"Other.html\">other</a> plan <a href=\"https://example.org\" class=\"out\"  "
              "title=\"Example\" target=\"_blank\">first</a>.</p>");
    // Without text links in the export, only links in the styled text count.
    host.textLinks = false;
    EXPECT_EQ(HTMLMarkup(note, note, &host).ToString(), "<p>Read the other plan first.</p>");
    // The export's link index, when it has one, decides which links there are.
    host.textLinks = true;
    host.useIndex = true;
    host.index = NodeLinks(note).OutboundTextLinks().OmitWebLinks();
    host.index.erase(host.index.begin() + 1, host.index.end());
    EXPECT_EQ(HTMLMarkup(note, note, &host).ToString(), "<p>Read the <a href=\"Other.html\">other</a> plan first.</p>");

    host.useIndex = false;
    EXPECT_EQ(HTMLMarkup(note, note, &host, 0, true).ToString(),
              "Read the [other](/" + other->GetString("Path").substr(1) + ")  plan [first](https://example.org) .");
}

TEST_F(NoteTextHTML, PicturesBecomeImagesWrittenByTheExport) {
    StyledText styled("Look:");
    TextAttachment picture;
    picture.fileName = "cat.png";
    picture.data = "PNGDATA";
    styled.InsertAttachment(styled.Length(), picture);
    styled.Append(" done");
    RecordingHost host;
    EXPECT_EQ(Markup(styled, &host), "<p>Look:\n<img src=\"Plan.png\"  alt=\"\" >\n done</p>");
    EXPECT_EQ(host.written, std::vector<std::string>{"Plan.png=PNGDATA"});
    // Without an export the picture is left out.
    EXPECT_EQ(Markup(styled), "<p>Look: done</p>");
}

TEST_F(NoteTextHTML, LimitCutsTheTextAndMarksTheCut) {
    StyledText styled("Hello ");
    TextStyle bold;
    bold.bold = true;
    styled.Append("brave new", bold);
    styled.Append(" world");
    EXPECT_EQ(Markup(styled, nullptr, 10), "<p>Hello <b>brav</b>...</p>");
    EXPECT_EQ(Markup(styled, nullptr, 100), "<p>Hello <b>brave new</b> world</p>");
}

TEST_F(NoteTextHTML, WholeTextStringsAndEntityFlags) {
    note->Set("HTMLExportBefore", "<section>");
    note->Set("HTMLExportAfter", "</section>");
    EXPECT_EQ(Markup("AT&T <b>x</b>"), "<section><p>AT&T <b>x</b></p></section>");
    note->Set("HTMLEntities", "true");
    EXPECT_EQ(Markup("AT&T <b>x</b> caf\xC3\xA9"), "<section><p>AT&amp;T <b>x</b> caf&#xE9;</p></section>");
    note->Set("HTMLQuoteHTML", "true");
    EXPECT_EQ(Markup("a<b"), "<section><p>a&lt;b</p></section>");
}

TEST_F(NoteTextHTML, MarkdownKeepsTextAndTranslatesThroughCommonMark) {
    note->Set("HTMLMarkdown", "true");
    std::string markdown = Markup("# Title\n\nSome *em* text\n\n* one\n* two");
    EXPECT_EQ(markdown, "# Title\n\nSome *em* text\n\n* one\n* two");
    EXPECT_EQ(RylCommonMark::Translate(markdown),
              "<h1>Title</h1>\n<p>Some <em>em</em> text</p>\n<ul>\n<li>one</li>\n<li>two</li>\n</ul>\n");
    EXPECT_EQ(RylCommonMark::Translate("[x](https://e.org) <span>raw</span>"),
              "<p><a href=\"https://e.org\">x</a> <span>raw</span></p>\n");
    EXPECT_EQ(RylCommonMark::Translate(std::string("bad \xFF byte")), "<p>bad \xEF\xBF\xBD byte</p>\n");
    EXPECT_EQ(RylCommonMark::Translate(""), "");
}

TEST(HTMLMarkupParagraphs, SplittingKindsAndLevels) {
    HTMLMarkupParagraphList list;
    list.FromText(u"  one\r\n\n two  \n<pre>\na\r\nb\n</pre> tail\nlast");
    ASSERT_EQ(list.size(), 4u);
    EXPECT_EQ(list[0]->Start(), 2);
    EXPECT_EQ(list[0]->End(), 5);
    EXPECT_EQ(list[1]->Text(), u"two");
    EXPECT_FALSE(list[1]->IsPreformatted());
    EXPECT_EQ(list[2]->Text(), u"<pre>\na\r\nb\n</pre> tail");
    EXPECT_TRUE(list[2]->IsPreformatted());
    EXPECT_EQ(list[3]->Text(), u"last");
    // An unclosed <pre> runs to the end of the text.
    list.FromText(u"x\n<PRE>a\nb");
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[1]->Text(), u"<PRE>a\nb");

    HTMLMarkupParagraph markup(0, 0, u"^a^", false);
    EXPECT_FALSE(markup.IsMarkup());   // too short
    EXPECT_TRUE(HTMLMarkupParagraph(0, 0, u"^ab^", false).IsMarkup());
    EXPECT_TRUE(HTMLMarkupParagraph(0, 0, u"^if($A)^", false).IsMarkup());
    EXPECT_FALSE(HTMLMarkupParagraph(0, 0, u"^1ab^", false).IsMarkup());
    EXPECT_FALSE(HTMLMarkupParagraph(0, 0, u"^value($Name) and more", false).IsMarkup());
    EXPECT_TRUE(HTMLMarkupParagraph(0, 0, u"<img src=\"a\">  ", false).IsHTMLMarkup());
    EXPECT_FALSE(HTMLMarkupParagraph(0, 0, u"<b>bold</b> text", false).IsHTMLMarkup());
    std::vector<std::u16string> macros{u"^do("};
    EXPECT_TRUE(HTMLMarkupParagraph(0, 0, u"^do(x)", false).IsMacro(macros));
    EXPECT_TRUE(HTMLMarkupParagraph(0, 0, u"^do(x)^", false).IsMacro(macros));
    EXPECT_FALSE(HTMLMarkupParagraph(0, 0, u"^do(x", false).IsMacro(macros));
    EXPECT_FALSE(HTMLMarkupParagraph(0, 0, u"^da(x)", false).IsMacro(macros));

    HTMLMarkupParagraph item(0, 0, u"#*\u2022 x", false);
    item.FindListLevel(true, HTMLMarkup::kMaxListLevel);
    EXPECT_EQ(item.ListLevel(), 3);
    EXPECT_TRUE(item.IsOrdered());
    item.FindListLevel(false, HTMLMarkup::kMaxListLevel);
    EXPECT_EQ(item.ListLevel(), 0);
}

namespace {

// An export that gives no paragraph tags of its own.
class BareParagraphHost : public RecordingHost {
public:
    std::string OpenParagraphMarkup(const Node*, int, char16_t) const override { return std::string(); }
    std::string CloseParagraphMarkup(const Node*, int, char16_t) const override { return std::string(); }
};

// Remembers the pages links were made for.
class CurrentRecordingHost : public RecordingHost {
public:
    std::string LinkURLFor(const Node* target, const Node* current) const override {
        pages.push_back(current ? current->Name() : std::string("none"));
        return RecordingHost::LinkURLFor(target, current);
    }
    mutable std::vector<std::string> pages;
};

}  // namespace

TEST_F(NoteTextHTML, SizesCountOnlyWhereTheExportHasParagraphTags) {
    StyledText styled("Title\n", Sized(8));
    styled.Append("Body");
    EXPECT_EQ(Markup(styled), "<h1>Title</h1>\n<p>Body</p>");
    BareParagraphHost bare;
    EXPECT_EQ(Markup(styled, &bare), "<p>Title</p>\n<p>Body</p>");
}

TEST_F(NoteTextHTML, AliasesLinkFromTheOriginalsTextInTheExportingPage) {
    NodeText(note).SetText("See other.");
    LinkRecord toOther(note, 4, 5);
    toOther.destNode = other;
    ASSERT_NE(NodeLinks(note).CreateLink(toOther), nullptr);
    Node* alias = NodeMaker(&doc).MakeAlias(note, other, nullptr);
    ASSERT_NE(alias, nullptr);
    CurrentRecordingHost host;
    EXPECT_EQ(HTMLMarkup(alias, top, &host).ToString(), "<p>See <a href=\"Other.html\">other</a>.</p>");
    EXPECT_EQ(host.pages, std::vector<std::string>{"Top"});
    EXPECT_EQ(HTMLMarkup(nullptr, top, &host).ToString(), "");
}

TEST_F(NoteTextHTML, CutsNeverSplitACharacter) {
    // The emoji takes two UTF-16 units; a cut inside it falls before it.
    EXPECT_EQ(Markup("ab\xF0\x9F\x98\x80" "cd", nullptr, 3), "<p>ab...</p>");
    EXPECT_EQ(Markup("ab\xF0\x9F\x98\x80" "cd", nullptr, 4), "<p>ab\xF0\x9F\x98\x80...</p>");
    EXPECT_EQ(Markup("one\ntwo\nthree", nullptr, 5), "<p>one</p>\n<p>t...</p>");
}
