// File names of an export, relative links between pages, which notes make
// pages, and when a page is rewritten.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "ExportFileManager.h"
#include "HTMLExportSaver.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeExport.h"
#include "NodeHelpers.h"
#include "Props.h"

namespace {

class FileNames : public ::testing::Test {
protected:
    Node* Make(const std::string& name, Node* parent = nullptr, Node* after = nullptr) {
        return NodeMaker(&doc).MakeNode(name, parent, after, 0, 0);
    }
    Hypertext doc;
};

TEST_F(FileNames, NamesAreFileSafeUniqueAndCut) {
    Node* odd = Make("A/B: c!");
    EXPECT_EQ(NodeExport(odd).DefaultFileName(), "A_B_c");
    odd->Set("HTMLExportFileNameSpacer", "-");
    odd->SetBoolean("HTMLFileNameLowerCase", true);
    EXPECT_EQ(NodeExport(odd).DefaultFileName(), "a-b-c");
    Node* accented = Make("Caf\xC3\xA9 au lait", nullptr, odd);
    EXPECT_EQ(NodeExport(accented).DefaultFileName(), "Caf_au_lait");
    Node* longName = Make("A rather long name for a note indeed", nullptr, accented);
    EXPECT_EQ(NodeExport(longName).FileName(), "A_rather_long_name_for_a.html");
    longName->SetDouble("HTMLFileNameMaxLength", 3);
    EXPECT_EQ(NodeExport(longName).FileName(), "A_rather.html");
    longName->Set("HTMLExportFileName", "given");
    EXPECT_EQ(NodeExport(longName).FileName(), "given.html");
    longName->Set("HTMLExportExtension", "txt");
    EXPECT_EQ(NodeExport(longName).FileName(), "given.txt");

    Node* same = Make("Same", nullptr, longName);
    Node* again = Make("Same", nullptr, same);
    Node* third = Make("Same", nullptr, again);
    ExportFileManager files(&doc);
    EXPECT_EQ(files.FileNameFor(same), "Same.html");
    EXPECT_EQ(files.FileNameFor(again), "Same_1.html");
    EXPECT_EQ(files.FileNameFor(third), "Same_2.html");
    EXPECT_EQ(files.ShortNameFor(again), "Same_1");
}

TEST_F(FileNames, ChildrenLiveInTheirParentsFolder) {
    Node* a = Make("a");
    Node* child = Make("child", a);
    Node* grandchild = Make("deeper", child);
    Node* b = Make("b", nullptr, a);
    ExportFileManager files(&doc);
    EXPECT_EQ(files.FileNameFor(child), "a/child.html");
    EXPECT_EQ(files.FileNameFor(grandchild), "a/child/deeper.html");
    EXPECT_EQ(files.LocalFolderPath(a), "a/");
    EXPECT_EQ(files.RelativeURL(a, a, ".html"), "#");
    EXPECT_EQ(files.RelativeURL(a, child, ".html"), "../a.html");
    EXPECT_EQ(files.RelativeURL(child, a, ".html"), "a/child.html");
    EXPECT_EQ(files.RelativeURL(b, grandchild, ".html"), "../../b.html");
    EXPECT_EQ(files.RelativeURL(grandchild, b, ".html"), "a/child/deeper.html");
    EXPECT_EQ(ExportFileManager::StripExtension("/a/b.html/"), "/a/b/");
    EXPECT_EQ(ExportFileManager::StripExtension(""), "/");
}

TEST_F(FileNames, WhichNotesExport) {
    Node* a = Make("a");
    Node* hidden = Make("hidden", a);
    Node* inside = Make("inside", hidden);
    EXPECT_TRUE(NodeExport(inside).WillBeExported());
    hidden->SetBoolean("HTMLDontExport", true);
    EXPECT_FALSE(NodeExport(hidden).CanBeExported());
    EXPECT_TRUE(NodeExport(inside).WillBeExported());
    hidden->SetBoolean("HTMLExportChildren", false);
    EXPECT_FALSE(NodeExport(inside).WillBeExported());
    EXPECT_FALSE(NodeExport(doc.Root()).CanBeExported());
    Node* separator = Make("", nullptr, a);
    separator->SetBoolean("Separator", true);
    EXPECT_FALSE(NodeExport(separator).IsExportable());
    Make("under", separator);
    EXPECT_TRUE(NodeExport(separator).IsExportable());
    EXPECT_EQ(NodeExport(inside).GetSectionNumber(), "1.1.1");
}

// Each export names the notes through a table the document keeps while
// nothing changes: whatever changes a name must make the next export name
// anew, and what one export adds must not reach the next.
TEST_F(FileNames, AnExportOfAnUnchangedDocumentNamesAsTheLastDid) {
    Node* a = Make("Alpha");
    Node* child = Make("Child", a);
    EXPECT_EQ(ExportFileManager(&doc).FileNameFor(child), "Alpha/Child.html");

    // Auxiliary files take names in their own export only.
    EXPECT_EQ(ExportFileManager(&doc).AuxFileName(child), "Alpha/Child");
    EXPECT_EQ(ExportFileManager(&doc).AuxFileName(child), "Alpha/Child");

    a->SetName("Beta");
    EXPECT_EQ(ExportFileManager(&doc).FileNameFor(child), "Beta/Child.html");

    // A default is no note's value: the document's change count does not
    // see it change.
    doc.AttributeStorage()->GetAttribute("HTMLFileNameLowerCase")->SetDefaultBoolean(true);
    EXPECT_EQ(ExportFileManager(&doc).FileNameFor(child), "beta/child.html");
    doc.AttributeStorage()->GetAttribute("HTMLExportExtension")->SetDefault("htm");
    EXPECT_EQ(ExportFileManager(&doc).FileNameFor(child), "beta/child.htm");

    // A forced extension names every page with it, and does not stay.
    EXPECT_EQ(ExportFileManager(&doc, ".md").FileNameFor(child), "beta/child.md");
    EXPECT_EQ(ExportFileManager(&doc).FileNameFor(child), "beta/child.htm");

    // A note made later, first in the outline, takes the name first.
    Node* twin = Make("Beta");
    ExportFileManager after(&doc);
    EXPECT_EQ(after.FileNameFor(twin), "beta.htm");
    EXPECT_EQ(after.FileNameFor(a), "beta_1.htm");
    EXPECT_EQ(after.FileNameFor(child), "beta_1/child.htm");
}

TEST(HTMLExportSaverTest, RewritesOnlyChangedPages) {
    std::string path = (std::filesystem::temp_directory_path() /
                        ("rylvane-saver-" + std::to_string(::getpid()) + ".html")).string();
    std::filesystem::remove(path);
    std::string error;
    EXPECT_TRUE(HTMLExportSaver::NothingToExport(path, " \n"));
    EXPECT_EQ(HTMLExportSaver::Export(nullptr, path, "  \n", error), HTMLExportSaver::kSkipped);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(HTMLExportSaver::Export(nullptr, path, "<p>a b</p>", error), HTMLExportSaver::kWritten);
    EXPECT_EQ(HTMLExportSaver::Export(nullptr, path, "<p>a b</p>", error), HTMLExportSaver::kUnchanged);
    // A difference only where the new text has white space does not count.
    EXPECT_EQ(HTMLExportSaver::Export(nullptr, path, "<p>a\nb</p>", error), HTMLExportSaver::kUnchanged);
    EXPECT_EQ(HTMLExportSaver::Export(nullptr, path, "<p>a c</p>", error), HTMLExportSaver::kWritten);
    EXPECT_EQ(HTMLExportSaver::Export(nullptr, path, "<p>a c</p>!", error), HTMLExportSaver::kWritten);
    std::ifstream in(path);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(text, "<p>a c</p>!");
    std::filesystem::remove(path);
}

}  // namespace
