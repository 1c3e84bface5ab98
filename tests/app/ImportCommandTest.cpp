#include "CommandHarness.h"

namespace cmdtest {

namespace {

void Write(const std::filesystem::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

} // namespace

TEST_F(Commands, ImportReadsFilesAndChangesNothingOnFailure) {
    ASSERT_EQ(R({"new", file}).code, 0);
    ASSERT_EQ(R({"add", file, "/", "Inbox"}).code, 0);
    Write(dir / "s.csv", "Name,Cost,Done\nAlpha,\"1,200\",true\nBeta,$3,false\n");
    RunResult run = R({"import", file, (dir / "s.csv").string(), "--into", "/Inbox"});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out, "3\n");
    EXPECT_EQ(R({"get", file, "/Inbox/imported spreadsheet/Alpha", "Cost"}).out, "1200\n");
    EXPECT_EQ(R({"get", file, "/Inbox/imported spreadsheet/Beta", "Done"}).out, "false\n");

    const std::string before = Slurp(file);
    Write(dir / "bad.csv", "a,b\n1,\"open\n");
    ExpectFailure(R({"import", file, (dir / "bad.csv").string()}), "bad.csv: line 2: a quoted field is not closed");
    Write(dir / "f.pdf", "%PDF-1.4");
    ExpectFailure(R({"import", file, (dir / "f.pdf").string()}), "PDF text cannot be imported here");
    Write(dir / "plan.txt", "Plan\n\tOne\n\tTwo\n");
    ExpectFailure(R({"import", file, (dir / "plan.txt").string(), "--format", "ris"}), "the text is not RIS");
    ExpectFailure(R({"import", file, (dir / "plan.txt").string(), "--format", "nope"}), "unknown format nope");
    ExpectFailure(R({"import", file, (dir / "missing.txt").string()}), "missing.txt: no such file");
    ExpectFailure(R({"import", file, (dir / "plan.txt").string(), "--into", "/Nowhere"}), "no note at /Nowhere");
    EXPECT_EQ(Slurp(file), before) << "failed imports leave the document as it was";

    // A bad OPML file is kept as one note, and still reported.
    Write(dir / "bad.opml", "<opml><body><outline text=\"a\">\n<outline text=\"b\"></body></opml>");
    ExpectFailure(R({"import", file, (dir / "bad.opml").string()}), "bad.opml: line 2, column");
    EXPECT_EQ(R({"tree", file, "/Imported OPML"}).code, 0);

    run = R({"import", file, (dir / "plan.txt").string()});
    EXPECT_EQ(run.out, "4\n") << run.err;
    EXPECT_EQ(R({"tree", file, "/imported outline"}).out, "imported outline\n  Plan\n    One\n    Two\n");
}

TEST_F(Commands, SimilarAndWords) {
    ASSERT_EQ(R({"new", file}).code, 0);
    R({"add", file, "/", "Boats", "--text", "river boat sailing on the river"});
    R({"add", file, "/", "Ships", "--text", "boat sailing the open sea"});
    R({"add", file, "/", "Peaks", "--text", "mountain snow and ice"});
    R({"add", file, "/", "Hints"});
    R({"add", file, "/Hints", "stopList", "--text", "the and on"});
    RunResult run = R({"similar", file, "/Boats"});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out.rfind("/Ships\t", 0), 0u) << run.out;
    EXPECT_EQ(run.out.find("/Peaks"), std::string::npos) << "nothing in common, no score";
    EXPECT_EQ(R({"words", file, "/Boats", "--count", "1"}).out, "river\t2\n");
    EXPECT_EQ(R({"words", file, "/Boats", "--alphabetical"}).out, "boat\t1\nboats\t1\nriver\t2\nsailing\t1\n");
    run = R({"words", file, "--count", "2", "--alphabetical"});
    EXPECT_EQ(run.out, "boat\t2\nsailing\t2\n") << "the document counts the notes holding each word";
    ExpectFailure(R({"similar", file, "/Missing"}), "no note at /Missing");
    ExpectFailure(R({"words", (dir / "none.ryl").string()}), "none.ryl: no such file");
}

} // namespace cmdtest
