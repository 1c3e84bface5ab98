// The document commands on documents that use text links, web links,
// aliases and prototypes, on values typed as a user types them, and on
// every way they can fail.
#include "CommandHarness.h"

#include <regex>

#include "Hypertext.h"
#include "Link.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "NodeLinks.h"
#include "TalvikWriter.h"

using namespace cmdtest;

namespace {

Node* AddNote(Hypertext& doc, const std::string& name, Node* parent = nullptr) {
    Node* after = parent ? parent->YoungestSon() : doc.Root()->YoungestSon();
    return NodeMaker(&doc).MakeNode(name, parent, after, 0, 0);
}

void WriteFile(const Hypertext& doc, const std::string& path) {
    std::ofstream out(path, std::ios::binary);
    ASSERT_TRUE(TalvikWriter(&doc).Write(out));
}

} // namespace

TEST_F(Commands, LinksAliasesAndPrototypesAsTheCommandsShowThem) {
    {
        Hypertext doc;
        Node* protos = AddNote(doc, "Prototypes");
        Node* place = AddNote(doc, "Place", protos);
        place->SetBoolean("IsPrototype", true);
        place->Set("Color", "green");
        Node* garden = AddNote(doc, "Garden");
        garden->SetPrototype(place, false);
        NodeText(garden).SetText("Beds and paths");
        Node* plan = AddNote(doc, "Plan");
        NodeText(plan).SetText("see \xF0\x9F\x8C\xB1 the garden first");
        LinkRecord text(plan, 11, 6);   // "garden", behind a character of two UTF-16 units
        text.destNode = garden;
        text.type = "example";
        ASSERT_TRUE(NodeLinks(plan).CreateLink(text));
        LinkRecord web(plan);
        web.url = "https://example.org/seeds?kind=pea&x=1";
        ASSERT_TRUE(NodeLinks(plan).CreateLink(web));
        Node* elsewhere = AddNote(doc, "Elsewhere");
        ASSERT_TRUE(NodeMaker(&doc).MakeAlias(garden, elsewhere, nullptr));
        WriteFile(doc, file);
    }
    EXPECT_EQ(R({"links", file, "/Plan"}).out,
              "-> /Garden (example) [garden]\n-> https://example.org/seeds?kind=pea&x=1 (*untitled)\n");
    EXPECT_EQ(R({"links", file, "/Garden"}).out, "-> /Prototypes/Place (*prototype)\n<- /Plan (example) [garden]\n");
    EXPECT_EQ(R({"tree", file}).out, "Prototypes\n  Place\nGarden\nPlan\nElsewhere\n  Garden (alias)\n");
    std::string info = R({"info", file}).out;
    EXPECT_NE(info.find("notes: 6\naliases: 1\nlinks: 2\nprototype links: 1\n"), std::string::npos) << info;

    // The alias shares the original's text and inherited values, keeps its own place.
    EXPECT_EQ(R({"get", file, "/Elsewhere/Garden", "Text"}).out, "Beds and paths\n");
    EXPECT_EQ(R({"get", file, "/Elsewhere/Garden", "Color"}).out, "green\n");
    EXPECT_EQ(R({"set", file, "/Elsewhere/Garden", "Color", "blue"}).code, 0);
    EXPECT_EQ(R({"set", file, "/Elsewhere/Garden", "Xpos", "9"}).code, 0);
    EXPECT_EQ(R({"get", file, "/Garden", "Color"}).out, "blue\n");
    EXPECT_EQ(R({"get", file, "/Garden", "Xpos"}).out, "0\n");
    EXPECT_EQ(R({"get", file, "/Elsewhere/Garden", "Xpos"}).out, "9\n");
    // A note cannot be added under an alias.
    ExpectFailure(R({"add", file, "/Elsewhere/Garden", "Bed"}), "cannot hold notes");

    // A prototype set by name shows as a link and gives its values; an
    // empty name takes it away again.
    EXPECT_EQ(R({"set", file, "/Plan", "Prototype", "Place"}).code, 0);
    EXPECT_EQ(R({"get", file, "/Plan", "Color"}).out, "green\n");
    EXPECT_EQ(R({"links", file, "/Plan"}).out.find("-> /Prototypes/Place (*prototype)\n"), 0u);
    EXPECT_EQ(R({"set", file, "/Plan", "Prototype", ""}).code, 0);
    EXPECT_EQ(R({"get", file, "/Plan", "Prototype"}).out, "\n");
    EXPECT_EQ(R({"links", file, "/Plan"}).out.find("*prototype"), std::string::npos);

    // Moving keeps the links; deleting the original takes its alias and links along.
    EXPECT_EQ(R({"mv", file, "/Garden", "/Prototypes"}).code, 0);
    EXPECT_EQ(R({"links", file, "/Plan"}).out.find("-> /Prototypes/Garden (example) [garden]\n"), 0u);
    EXPECT_EQ(R({"rm", file, "/Prototypes/Garden"}).code, 0);
    EXPECT_EQ(R({"tree", file}).out, "Prototypes\n  Place\nPlan\nElsewhere\n");
    EXPECT_EQ(R({"links", file, "/Plan"}).out, "-> https://example.org/seeds?kind=pea&x=1 (*untitled)\n");
    info = R({"info", file}).out;
    EXPECT_NE(info.find("notes: 4\naliases: 0\nlinks: 1\nprototype links: 0\n"), std::string::npos) << info;
}

TEST_F(Commands, SetReadsTextTheWayEachTypeReadsTyping) {
    ASSERT_EQ(R({"new", file}).code, 0);
    ASSERT_EQ(R({"add", file, "/", "N"}).code, 0);
    struct Case {
        std::string attribute, typed, shown;
    };
    const std::vector<Case> cases = {
        {"Xpos", "1,250", "1250"},           {"Xpos", "1,250.5", "1250.5"},
        {"Xpos", "#ff", "255"},              {"Xpos", "2.5e3", "2500"},
        {"Xpos", "no number", "0"},          {"ClusterTerms", "pear;apple;pear", "apple;pear"},
        {"Flags", "pear;apple;pear", "pear;apple;pear"},
        {"Color", "light blue", "light blue"}, {"Color", "#12aBcD", "#12aBcD"},
        {"Checked", "yes", "true"},          {"Checked", "0", "false"},
        {"Checked", "", "false"},            {"StartDate", "2026-03-05 14:30", "2026-03-05T14:30:00Z"},
        {"StartDate", "never", "never"},     {"$Subtitle", "with $dollar", "with $dollar"},
    };
    for (const Case& c : cases) {
        RunResult set = R({"set", file, "/N", c.attribute, c.typed});
        EXPECT_EQ(set.code, 0) << c.attribute << " " << c.typed << ": " << set.err;
        EXPECT_EQ(R({"get", file, "/N", c.attribute}).out, c.shown + "\n") << c.attribute << " " << c.typed;
    }

    // The text of a note is its text, not a value among its attributes.
    ASSERT_EQ(R({"set", file, "/N", "Text", "first line\nsecond & <third>"}).code, 0);
    EXPECT_EQ(R({"get", file, "/N", "Text"}).out, "first line\nsecond & <third>\n");
    std::string bytes = Slurp(file);
    EXPECT_NE(bytes.find("<text>first line\nsecond &amp; &lt;third&gt;</text>"), std::string::npos);
    EXPECT_EQ(bytes.find("name=\"Text\""), std::string::npos);

    // "--" ends the options, so that names and values may begin with "-".
    EXPECT_EQ(R({"add", file, "/", "--", "-minus"}).out, "/-minus\n");
    EXPECT_EQ(R({"set", file, "/-minus", "Subtitle", "--", "--text"}).code, 0);
    EXPECT_EQ(R({"get", file, "/-minus", "Subtitle"}).out, "--text\n");
    EXPECT_EQ(R({"set", file, "/-minus", "Xpos", "--", "-1,000.5"}).code, 0);
    EXPECT_EQ(R({"get", file, "/-minus", "Xpos"}).out, "-1000.5\n");

    // A renamed note is found under its new name; the path printed for an
    // odd name finds it again.
    ASSERT_EQ(R({"set", file, "/N", "Name", "back\\slash/and slash"}).code, 0);
    EXPECT_EQ(R({"get", file, "/N", "Name"}).code, 1);
    EXPECT_EQ(R({"get", file, "/back\\\\slash\\/and slash", "Name"}).out, "back\\slash/and slash\n");
    RunResult added = R({"add", file, "/back\\\\slash\\/and slash", "trailing\\"});
    // A printed path, with its escapes, reaches the note again.
    EXPECT_EQ(added.out, "/back\\\\slash\\/and slash/trailing\\\\\n");
    std::string printed = added.out.substr(0, added.out.size() - 1);
    EXPECT_EQ(R({"get", file, printed, "Name"}).out, "trailing\\\n");
    EXPECT_EQ(R({"tree", file, printed}).out, "trailing\\\n");
}

TEST_F(Commands, EveryFailureIsOneLineAndLeavesTheFileAsItWas) {
    // Wrong use of the program itself.
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"add", file, "/"}, std::vector<std::string>{"frobnicate"},
          std::vector<std::string>{"get", file, "/", "Name", "extra"}}) {
        RunResult run = R(args);
        EXPECT_NE(run.code, 0) << args[0];
        EXPECT_EQ(run.out, "") << args[0];
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
        EXPECT_EQ(run.err.rfind("rylvane: ", 0), 0u) << run.err;
    }

    ASSERT_EQ(R({"new", file}).code, 0);
    ASSERT_EQ(R({"add", file, "/", "A"}).code, 0);
    ASSERT_EQ(R({"add", file, "/", "B"}).code, 0);
    ASSERT_EQ(R({"link", file, "/A", "/B"}).code, 0);
    const std::string before = Slurp(file);
    ExpectFailure(R({"add", file, "/Missing", "C"}), file + ": no note at /Missing");
    ExpectFailure(R({"link", file, "/A", "/Missing"}), file + ": no note at /Missing");
    ExpectFailure(R({"link", file, "/Missing", "/A"}), file + ": no note at /Missing");
    ExpectFailure(R({"link", file, "/A", "/B", "--type", ""}), "needs a name");
    ExpectFailure(R({"link", file, "/A", "/B", "--type", "*prototype"}), "Prototype");
    ExpectFailure(R({"mv", file, "/A", "/Missing"}), file + ": no note at /Missing");
    ExpectFailure(R({"mv", file, "/", "/A"}), "root");
    ExpectFailure(R({"rm", file, "/Missing"}), file + ": no note at /Missing");
    ExpectFailure(R({"set", file, "/A", "$", "x"}), "no attribute named $");
    ExpectFailure(R({"set", file, "/A", "Created", "today"}), "cannot be set");
    ExpectFailure(R({"links", file, "/Missing"}), file + ": no note at /Missing");
    ExpectFailure(R({"tree", file, "/Missing"}), file + ": no note at /Missing");
    EXPECT_EQ(Slurp(file), before);

    // Files that are not documents, or broken ones: the file, the line and
    // the column, and nothing written.
    std::string folder = (dir / "folder.ryl").string();
    std::filesystem::create_directory(folder);
    ExpectFailure(R({"info", folder}), folder + ": is a folder, not a document");
    std::string empty = (dir / "empty.ryl").string();
    std::ofstream(empty).flush();
    ExpectFailure(R({"tree", empty}), empty + ": not a Rylvane document");
    std::string invalid = (dir / "invalid.ryl").string();
    std::ofstream(invalid) << "<?xml version=\"1.0\"?>\n<rylvane version=\"2\">\n"
                              "<item ID=\"1\"><attribute name=\"Name\">caf\xFF</attribute></item></rylvane>\n";
    ExpectFailure(R({"set", invalid, "/", "Name", "x"}), invalid + ": line 3, column 40: not well-formed");
    std::string truncated = (dir / "truncated.ryl").string();
    std::ofstream(truncated) << before.substr(0, before.size() / 2);
    ExpectFailure(R({"add", truncated, "/", "X"}), truncated + ": line ");
    EXPECT_EQ(Slurp(truncated), before.substr(0, before.size() / 2));
    std::string late = (dir / "late.ryl").string();
    std::ofstream(late) << std::string(1100, ' ') << before;
    ExpectFailure(R({"info", late}), late + ": not a Rylvane document");
    std::string newer = (dir / "newer.ryl").string();
    std::string v4 = before;
    v4.replace(v4.find("version=\"2\""), 11, "version=\"4\"");
    std::ofstream(newer) << v4;
    ExpectFailure(R({"rm", newer, "/A"}), newer + ": line 2, column ");
    EXPECT_EQ(Slurp(newer), v4);

    // The file names the version of the program that wrote it.
    std::string version = R({"--version"}).out;
    ASSERT_EQ(version.rfind("rylvane ", 0), 0u) << version;
    version = version.substr(8, version.size() - 9);
    EXPECT_NE(before.find("<rylvane version=\"2\" revision=\"13\" savedBy=\"" + version + "\" uuid=\""),
              std::string::npos)
        << before.substr(0, 200);

    // A document that cannot be made says why.
    ExpectFailure(R({"new", (dir / "no" / "such" / "x.ryl").string()}), "cannot write beside it");
    ExpectFailure(R({"new", file}), file + ": already exists");
    EXPECT_EQ(Slurp(file), before);
    // Nothing of a failed or finished save is left beside the files.
    for (const auto& entry : std::filesystem::directory_iterator(dir))
        EXPECT_NE(entry.path().filename().string().rfind(".", 0), 0u) << entry.path();
}

// A date typed as words is stored as the instant it meant when typed: `get`
// and the file give its ISO 8601 text, so the file means the same day
// whenever it is read again.
TEST_F(Commands, DatesTypedAsWordsAreStoredAsTheirInstant) {
    ASSERT_EQ(R({"new", file}).code, 0);
    ASSERT_EQ(R({"add", file, "/", "N"}).code, 0);
    const std::regex iso(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ)");
    for (const char* typed : {"tomorrow", "friday", "now", "1066", "3/15", "7/2000", "1500000000"}) {
        ASSERT_EQ(R({"set", file, "/N", "DueDate", typed}).code, 0) << typed;
        std::string got = R({"get", file, "/N", "DueDate"}).out;
        ASSERT_FALSE(got.empty()) << typed;
        got.pop_back();
        EXPECT_TRUE(std::regex_match(got, iso)) << typed << " gave " << got;
        // Texts that do not hang on the clock read as `date` reads them.
        if (std::string(typed) == "1066" || std::string(typed) == "1500000000") {
            EXPECT_EQ(R({"date", typed}).out, got + "\n") << typed;
        }
        std::string saved = Slurp(file);
        EXPECT_NE(saved.find("<attribute name=\"DueDate\">" + got + "</attribute>"), std::string::npos) << typed;
        EXPECT_EQ(saved.find(std::string(">") + typed + "<"), std::string::npos) << typed;
    }
    ASSERT_EQ(R({"set", file, "/N", "DueDate", "never"}).code, 0);
    EXPECT_EQ(R({"get", file, "/N", "DueDate"}).out, "never\n");
}

// Opening a document gives its root the document's name: a copy of a file
// under another name is that name, also in what is saved.
TEST_F(Commands, TheRootTakesTheNameOfTheFileItIsOpenedFrom) {
    ASSERT_EQ(R({"new", file}).code, 0);
    ASSERT_EQ(R({"add", file, "/", "N"}).code, 0);
    EXPECT_EQ(R({"get", file, "/", "Name"}).out, "notes\n");
    std::string copy = (dir / "Field Notes.ryl").string();
    std::filesystem::copy_file(file, copy);
    EXPECT_EQ(R({"get", copy, "/", "Name"}).out, "Field Notes\n");
    ASSERT_EQ(R({"set", copy, "/N", "Color", "red"}).code, 0);
    EXPECT_NE(Slurp(copy).find("<attribute name=\"Name\">Field Notes</attribute>"), std::string::npos);
    EXPECT_EQ(R({"get", file, "/", "Name"}).out, "notes\n");
    // Action code learns where the document lies.
    EXPECT_EQ(R({"eval", copy, "/N", "document(\"file\")"}).out, "Field Notes.ryl\n");
    EXPECT_EQ(R({"eval", copy, "/N", "document(\"folder\")"}).out,
              std::filesystem::absolute(dir).lexically_normal().string() + "\n");
}
