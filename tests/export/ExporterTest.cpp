// The drivers in-process: which template a page uses, the folder they
// write, links between the pages, the single-file outline as text and as
// RTF, and the
// encoders and cloud sizes the elements rely on.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "ActionHooks.h"
#include "ExportHooks.h"
#include "HTMLExporter.h"
#include "Hypertext.h"
#include "MarkupCloud.h"
#include "MarkupEncode.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "Attribute.h"
#include "Props.h"
#include "StyledText.h"
#include "TextExporter.h"

namespace {

namespace fs = std::filesystem;

class Drivers : public ::testing::Test {
protected:
    void SetUp() override {
        InstallActionHooks();
        InstallExportHooks();
        folder = fs::temp_directory_path() /
                 ("rylvane-exporter-" + std::to_string(::getpid()) + "-" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(folder);
        top = Make("Top");
        child = Make("Child", top);
        other = Make("Other", nullptr, top);
        templates = Make("Templates", nullptr, other);
        templates->SetBoolean("HTMLDontExport", true);
        templates->SetBoolean("HTMLExportChildren", false);
        page = Make("Page", templates);
        page->SetBoolean("IsTemplate", true);
        NodeText(page).SetText("[^title^|^childlinks(\"\",\"\",\";\",\"\")^|^url(/Other)^]");
    }
    void TearDown() override { fs::remove_all(folder); }

    Node* Make(const std::string& name, Node* parent = nullptr, Node* after = nullptr) {
        return NodeMaker(&doc).MakeNode(name, parent, after, 0, 0);
    }
    static std::string Read(const fs::path& path) {
        std::ifstream in(path, std::ios::binary);
        return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    }

    Hypertext doc;
    fs::path folder;
    Node* top = nullptr;
    Node* child = nullptr;
    Node* other = nullptr;
    Node* templates = nullptr;
    Node* page = nullptr;
};

TEST_F(Drivers, FolderOfPagesWithRelativeLinks) {
    HTMLExporter exporter(&doc, folder.string());
    EXPECT_FALSE(exporter.HasTemplate());
    doc.Root()->Set("HTMLExportTemplate", "/Templates/Page");
    ASSERT_TRUE(exporter.HasTemplate());
    ASSERT_TRUE(exporter.Export(true)) << exporter.Error();
    EXPECT_EQ(exporter.Written(), 3);
    EXPECT_EQ(Read(folder / "Top.html"), "[Top|<a href=\"Top/Child.html\">Child</a>;|Other.html]");
    EXPECT_EQ(Read(folder / "Top" / "Child.html"), "[Child||../Other.html]");
    EXPECT_FALSE(fs::exists(folder / "Templates.html"));
    EXPECT_FALSE(fs::exists(folder / "Templates"));

    // A note naming a template of its own uses it; the others keep the
    // default. Only the changed page is written again.
    Node* own = Make("Own", templates, page);
    own->SetBoolean("IsTemplate", true);
    NodeText(own).SetText("own:^title^");
    child->Set("HTMLExportTemplate", "/Templates/Own");
    HTMLExporter again(&doc, folder.string());
    ASSERT_TRUE(again.Export(true));
    EXPECT_EQ(again.Written(), 1);
    EXPECT_EQ(again.Unchanged(), 2);
    EXPECT_EQ(Read(folder / "Top" / "Child.html"), "own:Child");
}

TEST_F(Drivers, NoTemplateAndChosenTemplates) {
    DummyHTMLExporter none(&doc);
    EXPECT_EQ(none.ExportOne(top), "Unable to find this template");
    DummyHTMLExporter chosen(&doc);
    chosen.ChooseTemplate("markdown-item");
    // The page's link to itself.
    EXPECT_EQ(chosen.ExportOne(child), "- [Child](#)\n");
    // A template note of the document comes before a built-in one of the
    // same name.
    Node* item = Make("markdown-item", templates, page);
    item->SetBoolean("IsTemplate", true);
    NodeText(item).SetText("mine");
    DummyHTMLExporter shadowed(&doc);
    shadowed.ChooseTemplate("/Templates/markdown-item");
    EXPECT_EQ(shadowed.ExportOne(child), "mine");
}

TEST_F(Drivers, OutlineOfTheWholeDocument) {
    OutlineExporter outline(&doc);
    std::string path = (folder.string() + ".txt");
    std::string error;
    ASSERT_TRUE(outline.ExportToPath(path, error)) << error;
    // The walk passes over notes that make no page (Templates) but not over
    // their children that would (Page).
    EXPECT_EQ(Read(path), "Top\n\tChild\nOther\n\tPage\n");
    fs::remove(path);
}

// Each paragraph of an outline read back: its text, indent and style.
struct Paragraph {
    std::string text;
    TextStyle style;
};

std::vector<Paragraph> ParagraphsOf(const StyledText& text) {
    std::vector<Paragraph> paragraphs;
    for (int at = 0; at < text.Length();) {
        int end = text.ParagraphEnd(at);
        paragraphs.push_back({text.Substring(at, end - at - 1).Text(), text.StyleAt(at)});
        // One style across the paragraph.
        for (int i = at; i < end - 1; ++i)
            EXPECT_TRUE(text.StyleAt(i) == text.StyleAt(at)) << paragraphs.back().text << " at " << i - at;
        at = end;
    }
    return paragraphs;
}

TEST_F(Drivers, OutlineAsTextAndAsRtfFromOneWalk) {
    Node* grandchild = Make("Grand", child);
    child->SetColor("Color", "#ff8000");
    Node* hidden = Make("Hidden", top, child);
    hidden->SetBoolean("HTMLDontExport", true);
    Make("Under hidden", hidden);
    // The default colour set on the note itself, and "automatic", are no
    // colour of the note's own.
    Node* usual = Make("R&D", nullptr, other);
    usual->SetColor("Color", doc.AttributeStorage()->GetAttribute("Color")->GetDefaultValueAsString());
    grandchild->SetColor("Color", "automatic");
    // A note asking for entities has its title encoded, as the outline
    // template has always written it.
    usual->SetBoolean("HTMLEntities", true);

    const std::string expected = "Top\n\tChild\n\t\tGrand\n\t\tUnder hidden\nOther\nR&amp;D\n\tPage\n";
    TextExporter byTemplate(&doc, "outline");
    EXPECT_EQ(byTemplate.ExportedString(), expected);
    std::string text = folder.string() + ".txt";
    std::string rtf = folder.string() + ".Rtf";
    OutlineExporter outline(&doc);
    std::string error;
    ASSERT_TRUE(outline.ExportToPath(text, error)) << error;
    ASSERT_TRUE(outline.ExportToPath(rtf, error)) << error;
    EXPECT_EQ(Read(text), expected);
    std::string written = Read(rtf);
    ASSERT_EQ(written.rfind("{\\rtf1", 0), 0u) << written;
    EXPECT_NE(written.find("\\li1440"), std::string::npos) << written;

    struct Want {
        std::string title;
        int depth;
        std::optional<TextRGB> colour;
    };
    const std::vector<Want> wanted = {{"Top", 0, {}},   {"Child", 1, TextRGB{255, 128, 0}},
                                      {"Grand", 2, {}}, {"Under hidden", 2, {}},
                                      {"Other", 0, {}}, {"R&amp;D", 0, {}},
                                      {"Page", 1, {}}};
    std::vector<Paragraph> back = ParagraphsOf(StyledText::FromRTF(written));
    ASSERT_EQ(back.size(), wanted.size()) << written;
    for (size_t i = 0; i < wanted.size(); ++i) {
        SCOPED_TRACE(wanted[i].title);
        EXPECT_EQ(back[i].text, wanted[i].title);
        EXPECT_EQ(back[i].style.leftIndent, wanted[i].depth * OutlineExporter::kIndentStep);
        EXPECT_EQ(back[i].style.bold, wanted[i].depth == 0);
        EXPECT_EQ(back[i].style.foreground, wanted[i].colour);
        EXPECT_FALSE(back[i].style.italic);
    }

    // Nothing changed: neither file is written again.
    OutlineExporter again(&doc);
    ASSERT_TRUE(again.ExportToPath(text, error) && again.ExportToPath(rtf, error)) << error;
    EXPECT_EQ(again.Written(), 0);
    EXPECT_EQ(again.Unchanged(), 2);
    // A place that cannot be written is an error, for either form.
    std::string nowhere = (folder / "no folder" / "x").string();
    EXPECT_FALSE(again.ExportToPath(nowhere + ".rtf", error));
    EXPECT_NE(error.find("cannot write " + nowhere + ".rtf"), std::string::npos) << error;
    error.clear();
    EXPECT_FALSE(again.ExportToPath(nowhere + ".txt", error));
    EXPECT_NE(error.find("cannot write"), std::string::npos) << error;

    // The document's own outline template replaces the text form only.
    Node* own = Make("Outline", templates, page);
    own->SetBoolean("IsTemplate", true);
    NodeText(own).SetText("mine");
    OutlineExporter templated(&doc);
    ASSERT_TRUE(templated.ExportToPath(text, error) && templated.ExportToPath(rtf, error)) << error;
    EXPECT_EQ(Read(text), "mine");
    EXPECT_EQ(StyledText::FromRTF(Read(rtf)).Text(),
              "Top\nChild\nGrand\nUnder hidden\nOther\nR&amp;D\nPage\nOutline\n");
    fs::remove(text);
    fs::remove(rtf);
}

TEST_F(Drivers, DeepOutlineEndsWithinBounds) {
    // Far deeper than any stack would allow for a walk by recursion; past
    // 100 levels the text form writes no tabs, as the template does.
    Node* at = child;
    for (int i = 0; i < 3000; ++i)
        at = Make("n" + std::to_string(i), at);
    OutlineExporter outline(&doc);
    StyledText styled = outline.OutlineText();
    std::string text = OutlineExporter::PlainText(styled);
    EXPECT_EQ(text, TextExporter(&doc, "outline").ExportedString());
    EXPECT_NE(text.find("\n" + std::string(100, '\t') + "n98\nn99\nn100\n"), std::string::npos);
    int deepest = static_cast<int>(styled.Unicode().find(u"n2999\n"));
    ASSERT_GT(deepest, 0);
    EXPECT_EQ(styled.StyleAt(deepest).leftIndent,
              OutlineExporter::kMaxIndentLevels * OutlineExporter::kIndentStep);
    StyledText back = StyledText::FromRTF(styled.ToRTF());
    EXPECT_TRUE(back == styled);
}

TEST(MarkupHelpers, EncodersAndCloudTiers) {
    EXPECT_EQ(MarkupEncode::IdentifierFor("3 blind mice"), "_3_blind_mice");
    EXPECT_EQ(MarkupEncode::IdentifierFor("a--b"), "a_b");
    EXPECT_EQ(MarkupEncode::IdentifierFor("#x"), "_x");
    EXPECT_EQ(MarkupEncode::OPMLEncode("a\n\"b\"&'<>'"), "a&#10;&quot;b&quot;&amp;&apos;&lt;&gt;&apos;");
    EXPECT_EQ(MarkupEncode::URLEncode("\xC3\xA9 /?"), "%C3%A9%20/?");
    std::vector<WordRecord> words = {{"rare", 1}, {"mid", 9}, {"common", 100}};
    EXPECT_EQ(MarkupCloud::Tiers(words), (std::vector<int>{0, 1, 4}));
    EXPECT_TRUE(MarkupCloud::Tiers({}).empty());
}

}  // namespace
