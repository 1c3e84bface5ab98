// The drivers in-process: which template a page uses, the folder they
// write, links between the pages, the single-file outline, and the
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
