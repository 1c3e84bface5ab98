// `rylvane export` and `rylvane render`: the sample document exported to a
// site that a browser reads without fault, incremental export, the refusals
// and the single-file drivers (the outline as text and as RTF).
#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>

#include "CommandHarness.h"
#include "ExportFileManager.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeExport.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "StyledText.h"
#include "TalvikReader.h"

namespace {

namespace fs = std::filesystem;
using cmdtest::Commands;
using cmdtest::Quote;
using cmdtest::Slurp;

class ExportCommands : public Commands {
protected:
    std::string Sample() const { return std::string(RYL_SOURCE_DIR) + "/samples/demo.ryl"; }

    // Runs the site checker; fills `pages` with each page's visible text.
    int CheckSite(const fs::path& site, std::map<std::string, std::string>& pages, std::string& problems) {
        std::string errFile = (dir / "check.err").string();
        std::string command = "/usr/bin/python3 " + Quote(std::string(RYL_SOURCE_DIR) + "/tests/export/check_site.py") +
                              " " + Quote(site.string()) + " 2>" + Quote(errFile);
        FILE* pipe = ::popen(command.c_str(), "r");
        std::string out;
        char buffer[4096];
        size_t n;
        while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0)
            out.append(buffer, n);
        int status = ::pclose(pipe);
        problems = Slurp(errFile);
        std::istringstream lines(out);
        std::string line;
        while (std::getline(lines, line))
            if (size_t tab = line.find('\t'); tab != std::string::npos)
                pages[line.substr(0, tab)] = line.substr(tab + 1);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    static std::string Collapse(const std::string& text) {
        std::istringstream words(text);
        std::string word, out;
        while (words >> word)
            out += (out.empty() ? "" : " ") + word;
        return out;
    }
};

TEST_F(ExportCommands, SampleSiteIsWellFormedLinkedAndComplete) {
    fs::path site = dir / "site";
    auto run = R({"export", Sample(), site.string(), "--template", "html"});
    ASSERT_EQ(run.code, 0) << run.err;
    std::map<std::string, std::string> pages;
    std::string problems;
    ASSERT_EQ(CheckSite(site, pages, problems), 0) << problems;

    // Every note that makes a page is on its page: its name, and the first
    // words of its text.
    auto doc = std::make_unique<Hypertext>();
    TalvikReader reader(doc->Root());
    ASSERT_TRUE(reader.Read(Slurp(Sample())));
    ExportFileManager files(doc.get());
    long expected = 0;
    HypertextFacade(doc.get()).Apply([&](Node* note) {
        if (!NodeExport(note).WillBeExported())
            return;
        ++expected;
        std::string file = files.FileNameFor(note);
        ASSERT_TRUE(pages.count(file)) << file;
        const std::string& page = pages[file];
        EXPECT_NE(page.find(Collapse(note->Name())), std::string::npos) << file;
        std::string text = NodeText(note).GetText();
        std::string firstLine = Collapse(text.substr(0, text.find_first_of("\r\n")));
        std::istringstream words(firstLine);
        std::string word, start;
        for (int i = 0; i < 5 && words >> word; ++i)
            start += (start.empty() ? "" : " ") + word;
        if (!start.empty() && start.find_first_of("*#<>&^") == std::string::npos) {
            EXPECT_NE(page.find(start), std::string::npos) << file << ": " << start;
        }
    });
    EXPECT_GT(expected, 5);
    EXPECT_EQ(static_cast<long>(pages.size()), expected);
    long written = 0;
    for (const auto& entry : fs::recursive_directory_iterator(site))
        written += entry.is_regular_file() ? 1 : 0;
    EXPECT_GE(written, expected);
    EXPECT_EQ(run.out, std::to_string(written) + " written, 0 unchanged\n");

    // A second export of the unchanged document touches no file.
    std::map<std::string, fs::file_time_type> times;
    for (const auto& entry : fs::recursive_directory_iterator(site))
        if (entry.is_regular_file())
            times[entry.path().string()] = entry.last_write_time();
    auto again = R({"export", Sample(), site.string(), "--template", "html"});
    ASSERT_EQ(again.code, 0) << again.err;
    EXPECT_EQ(again.out, "0 written, " + std::to_string(written) + " unchanged\n");
    for (const auto& [path, time] : times)
        EXPECT_EQ(fs::last_write_time(path), time) << path;
}

TEST_F(ExportCommands, RefusalsAreOneLine) {
    fs::path site = dir / "site";
    auto run = R({"export", Sample(), site.string()});
    ExpectFailure(run, "built-in templates: html, markdown, outline, opml");
    EXPECT_FALSE(fs::exists(site / "Projects.html"));
    ExpectFailure(R({"export", Sample(), site.string(), "--template", "nosuch"}), "no template named nosuch");
    ExpectFailure(R({"render", Sample(), "/Nowhere", "--text", "^title^"}), "no note at /Nowhere");
    ExpectFailure(R({"export", dir.string() + "/missing.ryl", site.string(), "--template", "html"}), "missing.ryl");
}

TEST_F(ExportCommands, NamesFromNotesStayInsideTheFolder) {
    ASSERT_EQ(R({"new", file}).code, 0);
    ASSERT_EQ(R({"add", file, "/", "Escape"}).code, 0);
    ASSERT_EQ(R({"set", file, "/Escape", "HTMLExportFileName", "../../outside"}).code, 0);
    ASSERT_EQ(R({"add", file, "/", "a/b: c!"}).code, 0);
    fs::path site = dir / "deep" / "site";
    auto run = R({"export", file, site.string(), "--template", "html"});
    ExpectFailure(run, "outside the export folder");
    EXPECT_FALSE(fs::exists(dir / "outside.html"));
    EXPECT_FALSE(fs::exists(dir / "deep" / "outside.html"));
    // The other note still has its page, its name made file-safe.
    EXPECT_TRUE(fs::exists(site / "a_b_c.html"));
}

TEST_F(ExportCommands, RenderAndSingleFileDrivers) {
    auto render = R({"render", Sample(), "/Projects", "--text", "[^title^|^value($Name)^^^]"});
    ASSERT_EQ(render.code, 0) << render.err;
    EXPECT_EQ(render.out, "[Projects|Projects^]\n");

    fs::path outline = dir / "outline.txt";
    auto run = R({"export", Sample(), outline.string(), "--outline"});
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out, "1 written, 0 unchanged\n");
    std::string text = Slurp(outline.string());
    EXPECT_EQ(text.rfind("Prototypes\n", 0), 0u) << text.substr(0, 80);
    EXPECT_NE(text.find("\nProjects\n"), std::string::npos);
    EXPECT_NE(text.find("\n\t"), std::string::npos);
    EXPECT_EQ(R({"export", Sample(), outline.string(), "--outline"}).out, "0 written, 1 unchanged\n");

    // The same outline as RTF: the titles without the tabs, the depth in
    // the indents. A template gives text, so it is refused for RTF.
    fs::path rtf = dir / "outline.rtf";
    auto rich = R({"export", Sample(), rtf.string(), "--outline"});
    ASSERT_EQ(rich.code, 0) << rich.err;
    StyledText back = StyledText::FromRTF(Slurp(rtf.string()));
    std::string untabbed = text;
    untabbed.erase(std::remove(untabbed.begin(), untabbed.end(), '\t'), untabbed.end());
    EXPECT_EQ(back.Text(), untabbed);
    int garden = static_cast<int>(back.Unicode().find(u"Garden"));
    EXPECT_EQ(back.StyleAt(garden).leftIndent, 720);
    EXPECT_TRUE(back.StyleAt(0).bold);
    fs::path refused = dir / "chosen.rtf";
    ExpectFailure(R({"export", Sample(), refused.string(), "--outline", "--template", "outline"}),
                  "--template does not apply to an RTF outline");
    EXPECT_FALSE(fs::exists(refused));

    fs::path opml = dir / "notes.opml";
    ASSERT_EQ(R({"export", Sample(), opml.string(), "--opml"}).code, 0);
    std::string xml = Slurp(opml.string());
    EXPECT_EQ(xml.rfind("<?xml", 0), 0u);
    EXPECT_NE(xml.find("<outline text=\"Projects\""), std::string::npos);

    fs::path markdown = dir / "md";
    ASSERT_EQ(R({"export", Sample(), markdown.string(), "--markdown"}).code, 0);
    EXPECT_EQ(Slurp((markdown / "Projects.md").string()).rfind("# Projects\n", 0), 0u);
}

}  // namespace
