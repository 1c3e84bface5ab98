// Writing the pages of a folder export: what a failed write or folder
// leaves and reports, which pages a second export rewrites (in folders that
// it makes and in folders that are there already), the page count and when
// the templates' actions run.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

#include "ActionHooks.h"
#include "ExportHooks.h"
#include "HTMLExporter.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "NodeLinks.h"
#include "Props.h"
#include "STemplateFile.h"

namespace {

namespace fs = std::filesystem;

class PageWrites : public ::testing::Test {
protected:
    void SetUp() override {
        InstallActionHooks();
        InstallExportHooks();
        folder = fs::temp_directory_path() /
                 ("rylvane-writes-" + std::to_string(::getpid()) + "-" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(folder);
    }
    void TearDown() override { fs::remove_all(folder); }

    Node* Make(const std::string& name, Node* parent = nullptr, Node* after = nullptr) {
        return NodeMaker(&doc).MakeNode(name, parent, after, 0, 0);
    }
    // Exports; answers whether it succeeded.
    bool Export(const fs::path& to, std::string* error = nullptr, long* written = nullptr,
                long* unchanged = nullptr) {
        HTMLExporter exporter(&doc, to.string());
        exporter.SetTemplateText("^title^|^text(plain)^");
        bool done = exporter.Export(true);
        if (error)
            *error = exporter.Error();
        if (written)
            *written = exporter.Written();
        if (unchanged)
            *unchanged = exporter.Unchanged();
        return done;
    }
    static std::map<std::string, std::string> Tree(const fs::path& root) {
        std::map<std::string, std::string> files;
        for (const auto& entry : fs::recursive_directory_iterator(root)) {
            std::string name = fs::relative(entry.path(), root).string();
            if (entry.is_directory()) {
                files[name + "/"] = "";
                continue;
            }
            std::ifstream in(entry.path(), std::ios::binary);
            files[name] = std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        }
        return files;
    }
    // A: A1, A2; B: B1; C.
    void MakeSmallDocument() {
        Node* a = Make("A");
        Make("A1", a);
        Make("A2", a, a->Son());
        Node* b = Make("B", nullptr, a);
        Make("B1", b);
        Make("C", nullptr, b);
    }

    Hypertext doc;
    fs::path folder;
};

TEST_F(PageWrites, FailuresAreOneLineAndStopTheSubtree) {
    MakeSmallDocument();
    // Something that is not a file where B's page goes.
    fs::create_directories(folder / "B.html");
    std::string error;
    EXPECT_FALSE(Export(folder, &error));
    EXPECT_EQ(error, "cannot write " + (folder / "B.html").string() + ": Is a directory");
    EXPECT_TRUE(fs::is_regular_file(folder / "A" / "A2.html"));
    // The walk stops below B (its folder is made before the walk looks at
    // the error); the pages of the other top-level notes are still written.
    EXPECT_FALSE(fs::exists(folder / "B" / "B1.html"));
    EXPECT_TRUE(fs::is_regular_file(folder / "C.html"));

    // A pipe at a page's path neither holds the export up nor takes the page.
    fs::remove_all(folder);
    fs::create_directories(folder);
    ASSERT_EQ(::mkfifo((folder / "C.html").c_str(), 0600), 0);
    EXPECT_FALSE(Export(folder, &error));
    EXPECT_EQ(error, "cannot write " + (folder / "C.html").string() + ": No such device or address");
    EXPECT_TRUE(fs::is_regular_file(folder / "B" / "B1.html"));

    // A file where a folder of pages goes.
    fs::remove_all(folder);
    fs::create_directories(folder);
    std::ofstream(folder / "A") << "x";
    EXPECT_FALSE(Export(folder, &error));
    EXPECT_EQ(error, "cannot make the folder " + (folder / "A").string() + "/: File exists");
    EXPECT_TRUE(fs::is_regular_file(folder / "A.html"));
    EXPECT_TRUE(fs::is_regular_file(folder / "C.html"));
    EXPECT_FALSE(fs::exists(folder / "B" / "B1.html"));
}

TEST_F(PageWrites, OnlyChangedPagesAreRewrittenInNewAndOldFolders) {
    MakeSmallDocument();
    long written = 0, unchanged = 0;
    ASSERT_TRUE(Export(folder, nullptr, &written, &unchanged));
    EXPECT_EQ(written, 6);
    EXPECT_EQ(unchanged, 0);
    EXPECT_EQ(Tree(folder), (std::map<std::string, std::string>{{"A/", ""},
                                                                 {"A.html", "A|"},
                                                                 {"A/A1.html", "A1|"},
                                                                 {"A/A2.html", "A2|"},
                                                                 {"B/", ""},
                                                                 {"B.html", "B|"},
                                                                 {"B/B1.html", "B1|"},
                                                                 {"C.html", "C|"}}));
    auto stamp = fs::last_write_time(folder / "A" / "A1.html");
    NodeText(doc.Root()->Son()->Son()->Brother()).SetText("new");
    // A folder made again holds nothing: its pages are all written; a stale
    // page in a folder that is there is found and rewritten.
    fs::remove_all(folder / "B");
    std::ofstream(folder / "C.html") << "C|old";
    ASSERT_TRUE(Export(folder, nullptr, &written, &unchanged));
    EXPECT_EQ(written, 3);
    EXPECT_EQ(unchanged, 3);
    EXPECT_EQ(fs::last_write_time(folder / "A" / "A1.html"), stamp);
    std::map<std::string, std::string> files = Tree(folder);
    EXPECT_EQ(files["A/A2.html"], "A2|new");
    EXPECT_EQ(files["B/B1.html"], "B1|");
    EXPECT_EQ(files["C.html"], "C|");

    // Two pages at one path (names may collide when a note's extension
    // differs from the document's): the second finds the first even in a
    // folder made by this export.
    Node* d = Make("D", nullptr, doc.Root()->Son()->Brother()->Brother());
    Node* first = Make("Same", d);
    Node* second = Make("Same", d, first);
    for (Node* same : {first, second})
        same->Set("HTMLExportExtension", ".htm");
    fs::remove_all(folder);
    ASSERT_TRUE(Export(folder, nullptr, &written, &unchanged));
    EXPECT_EQ(written, 8);
    EXPECT_EQ(unchanged, 1);
    NodeText(second).SetText("two");
    fs::remove_all(folder);
    ASSERT_TRUE(Export(folder, nullptr, &written, &unchanged));
    EXPECT_EQ(written, 9);
    EXPECT_EQ(Tree(folder)["D/Same.htm"], "Same|two");
}

// An export reads the document and writes files: it must leave the
// document's change count where it was, or a second export of the same
// document would name every note again, and agents would run again.
TEST_F(PageWrites, ExportingTheBuiltInPagesChangesNothingInTheDocument) {
    MakeSmallDocument();
    Node* a = doc.Root()->Son();
    NodeText(a).SetText("R&D and more, see B");
    NodeLinks(a).CreateLink(a->Brother());
    doc.AttributeStorage()->GetAttribute("HTMLEntities")->SetDefaultBoolean(true);
    uint64_t changes = doc.ChangeCount();
    for (int pass = 0; pass < 2; ++pass) {
        HTMLExporter exporter(&doc, folder.string());
        exporter.SetTemplateText(STemplateFile::BuiltInTemplate("html"));
        ASSERT_TRUE(exporter.Export(true)) << exporter.Error();
        EXPECT_EQ(exporter.Written() + exporter.Unchanged(), 6);
        EXPECT_EQ(exporter.Unchanged(), pass == 0 ? 0 : 6);
        EXPECT_EQ(doc.ChangeCount(), changes) << "pass " << pass;
    }
}

TEST_F(PageWrites, ProgressCountsThePagesTheWalkWrites) {
    MakeSmallDocument();
    Node* a = doc.Root()->Son();
    Node* b = a->Brother();
    a->SetBoolean("HTMLDontExport", true);     // A1 and A2 still are
    b->SetBoolean("HTMLExportChildren", false);  // B1 is not
    Make("A21", a->Son()->Brother());
    HTMLExporter exporter(&doc, folder.string());
    exporter.SetTemplateText("^title^");
    long total = -1;
    exporter.OnProgress([&](long, long all) { total = all; });
    ASSERT_TRUE(exporter.Export(true)) << exporter.Error();
    EXPECT_EQ(exporter.Written(), 5);
    EXPECT_EQ(total, 5);
    EXPECT_EQ(exporter.CountExportedNotes(), 5);
}

TEST_F(PageWrites, ActionsRunAfterTheWholeExport) {
    MakeSmallDocument();
    HTMLExporter exporter(&doc, folder.string());
    // Every page changes B's text; B's page, written after A's, still shows
    // the text from before the export.
    exporter.SetTemplateText("^title^|^text(plain)^^action($Text(/B)=$Text(/B)+\"x\")^");
    ASSERT_TRUE(exporter.Export(true)) << exporter.Error();
    EXPECT_EQ(Tree(folder)["B.html"], "B|");
    EXPECT_EQ(NodeText(doc.Root()->Son()->Brother()).GetText(), "xxxxxx");
}

}  // namespace
