// Runs the `rylvane` program on document files and checks what it prints,
// what it leaves on disk and how it fails.
#include "CommandHarness.h"

using namespace cmdtest;

TEST_F(Commands, BuildAndQueryADocument) {
    ASSERT_EQ(R({"new", file}).code, 0);
    EXPECT_EQ(R({"add", file, "/", "Projects"}).out, "/Projects\n");
    EXPECT_EQ(R({"add", file, "/Projects", "Ideas", "--text", "Grow more beans"}).out, "/Projects/Ideas\n");
    R({"add", file, "/", "Prototypes"});
    R({"add", file, "/Prototypes", "Person"});
    EXPECT_EQ(R({"set", file, "/Prototypes/Person", "IsPrototype", "true"}).code, 0);
    EXPECT_EQ(R({"set", file, "/Prototypes/Person", "Color", "red"}).code, 0);
    EXPECT_EQ(R({"add", file, "/Projects", "Ann", "--proto", "Person"}).out, "/Projects/Ann\n");
    EXPECT_EQ(R({"add", file, "/Projects", "a/b"}).out, "/Projects/a\\/b\n");
    EXPECT_EQ(R({"get", file, "/Projects/a\\/b", "Name"}).out, "a/b\n");

    // Values are read as the attribute's type reads typing.
    EXPECT_EQ(R({"get", file, "/Projects/Ann", "Color"}).out, "red\n");
    EXPECT_EQ(R({"get", file, "/Projects/Ann", "Prototype"}).out, "Person\n");
    EXPECT_EQ(R({"get", file, "/Projects/Ideas", "Text"}).out, "Grow more beans\n");
    EXPECT_EQ(R({"set", file, "/Projects/Ideas", "Xpos", "1,250.5"}).code, 0);
    EXPECT_EQ(R({"get", file, "/Projects/Ideas", "Xpos"}).out, "1250.5\n");
    EXPECT_EQ(R({"set", file, "/Projects/Ideas", "Ypos", "--", "-3"}).code, 0);
    EXPECT_EQ(R({"get", file, "/Projects/Ideas", "$Ypos"}).out, "-3\n");
    EXPECT_EQ(R({"set", file, "/Projects/Ideas", "Name", "Plans"}).code, 0);

    EXPECT_EQ(R({"link", file, "/Projects/Plans", "/Projects/Ann", "--type", "agree"}).code, 0);
    EXPECT_EQ(R({"link", file, "/Projects/Ann", "/Projects/Plans"}).code, 0);
    EXPECT_EQ(R({"links", file, "/Projects/Ann"}).out,
              "-> /Prototypes/Person (*prototype)\n-> /Projects/Plans (*untitled)\n<- /Projects/Plans (agree)\n");
    EXPECT_EQ(R({"tree", file}).out, "Projects\n  Plans\n  Ann\n  a/b\nPrototypes\n  Person\n");

    EXPECT_EQ(R({"mv", file, "/Projects/Ann", "/Prototypes"}).code, 0);
    EXPECT_EQ(R({"tree", file, "/Prototypes"}).out, "Prototypes\n  Person\n  Ann\n");
    EXPECT_EQ(R({"rm", file, "/Projects/Plans"}).code, 0);
    EXPECT_EQ(R({"links", file, "/Prototypes/Ann"}).out, "-> /Prototypes/Person (*prototype)\n");
    std::string info = R({"info", file}).out;
    EXPECT_NE(info.find("notes: 5\n"), std::string::npos) << info;
    EXPECT_NE(info.find("links: 0\n"), std::string::npos) << info;
    EXPECT_NE(info.find("version: 2\n"), std::string::npos) << info;
    // Nothing of the saving is left beside the file.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir), {}), 2);   // the file and stderr
}

TEST_F(Commands, FailuresSayWhatAndTouchNothing) {
    ExpectFailure(R({"tree", file}), file + ": no such file");
    ASSERT_EQ(R({"new", file}).code, 0);
    R({"add", file, "/", "A"});
    const std::string before = Slurp(file);
    ExpectFailure(R({"new", file}), "already exists");
    ExpectFailure(R({"get", file, "/Nope", "Name"}), file + ": no note at /Nope");
    ExpectFailure(R({"set", file, "/A", "NoSuchAttr", "1"}), file + ": no attribute named NoSuchAttr");
    ExpectFailure(R({"set", file, "/A", "ChildCount", "1"}), "cannot be set");
    ExpectFailure(R({"rm", file, "/"}), "root");
    ExpectFailure(R({"mv", file, "/A", "/A"}), "into itself");
    ExpectFailure(R({"add", file, "/", "B", "--proto", "Ghost"}), "Ghost");
    EXPECT_EQ(Slurp(file), before);

    std::string bad = (dir / "bad.ryl").string();
    std::ofstream(bad) << "<?xml version=\"1.0\"?>\n<rylvane version=\"2\">\n<item ID=\"1\">\n</rylvane>\n";
    ExpectFailure(R({"set", bad, "/", "Name", "x"}), bad + ": line 4, column 3: mismatched tag");
    std::string newer = (dir / "newer.ryl").string();
    std::ofstream(newer) << "<?xml version=\"1.0\"?>\n<rylvane version=\"3\" revision=\"0\"></rylvane>\n";
    ExpectFailure(R({"info", newer}), newer + ": line 2, column 1: version 3 files are not supported");
    std::string other = (dir / "other.ryl").string();
    std::ofstream(other) << "just some text, not a document\n";
    ExpectFailure(R({"add", other, "/", "X"}), other + ": not a Rylvane document");
    EXPECT_EQ(Slurp(other), "just some text, not a document\n");
}

TEST_F(Commands, DemoOpensTheSample) {
    RunResult run = R({"demo"});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_NE(run.out.find("Sow peas  (prototype Task, styled text with 1 picture(s))"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("  Ann  (alias)"), std::string::npos);
}
