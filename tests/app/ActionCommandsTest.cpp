// The commands that run action code: eval, do and find.
#include <set>

#include "CommandHarness.h"

using namespace cmdtest;

namespace {

class ActionCommands : public Commands {
protected:
    void SetUp() override {
        Commands::SetUp();
        ASSERT_EQ(R({"new", file}).code, 0);
        R({"add", file, "/", "Projects"});
        R({"add", file, "/Projects", "Beans"});
        R({"add", file, "/Projects", "Peas"});
        R({"add", file, "/", "Archive"});
        R({"set", file, "/Projects/Beans", "Color", "red"});
        R({"set", file, "/Projects/Peas", "Color", "red"});
        R({"set", file, "/Projects/Peas", "Width", "1"});
    }
};

TEST_F(ActionCommands, EvalPrintsTheResultAndItsType) {
    EXPECT_EQ(R({"eval", file, "/Projects", "$ChildCount * 2"}).out, "4\n");
    EXPECT_EQ(R({"eval", file, "/Projects/Beans", "$Name + \" and \" + $Name(nextSibling)"}).out,
              "Beans and Peas\n");
    EXPECT_EQ(R({"eval", file, "/Projects", "1 < 2", "--type"}).out, "1\nboolean\n");
    EXPECT_EQ(R({"eval", file, "/Projects", "\"a\" + \"b\"", "--type"}).out, "ab\nstring\n");
    ExpectFailure(R({"eval", file, "/Nowhere", "1"}), "no note at /Nowhere");
    // Each run draws its own random numbers.
    std::set<std::string> draws;
    for (int i = 0; i < 3; ++i)
        draws.insert(R({"eval", file, "/", "rand()"}).out);
    EXPECT_GT(draws.size(), 1u);
}

TEST_F(ActionCommands, DoChangesAndSavesOnlyWhenSomethingChanged) {
    const std::string before = Slurp(file);
    // A dry run prints the change and writes nothing.
    RunResult dry = R({"do", file, "/Projects/Beans", "$Color = \"green\"; $Subtitle = \"fresh\"", "--dry-run"});
    EXPECT_EQ(dry.code, 0);
    EXPECT_NE(dry.out.find("/Projects/Beans\tColor\tred → green\n"), std::string::npos) << dry.out;
    EXPECT_NE(dry.out.find("/Projects/Beans\tSubtitle\t → fresh\n"), std::string::npos) << dry.out;
    EXPECT_EQ(Slurp(file), before);
    // Code that changes nothing leaves the file as it was.
    EXPECT_EQ(R({"do", file, "/Projects/Beans", "$Color = \"red\""}).code, 0);
    EXPECT_EQ(Slurp(file), before);
    // Designators reach other notes; the change is saved.
    EXPECT_EQ(R({"do", file, "/Projects", "$Color(children) = \"blue\""}).code, 0);
    EXPECT_EQ(R({"get", file, "/Projects/Peas", "Color"}).out, "blue\n");
    EXPECT_EQ(R({"get", file, "/Projects/Beans", "Color"}).out, "blue\n");
    EXPECT_NE(Slurp(file), before);
}

TEST_F(ActionCommands, FindListsMatchingNotesInOutlineOrder) {
    EXPECT_EQ(R({"find", file, "$Color == \"red\""}).out, "/Projects/Beans\n/Projects/Peas\n");
    EXPECT_EQ(R({"find", file, "$Color == \"red\" & $Width > 2"}).out, "/Projects/Beans\n");
    EXPECT_EQ(R({"find", file, "$Color == \"red\"", "--count"}).out, "2\n");
    EXPECT_EQ(R({"find", file, "Name(^P)"}).out, "/Projects\n/Projects/Peas\n");
    EXPECT_EQ(R({"find", file, "Name(^p)"}).out, "");
    EXPECT_EQ(R({"find", file, "Name(^p)", "--ignore-case"}).out, "/Projects\n/Projects/Peas\n");
    // A note that refuses searches is not found.
    R({"set", file, "/Projects/Peas", "Searchable", "false"});
    EXPECT_EQ(R({"find", file, "$Color == \"red\""}).out, "/Projects/Beans\n");
}

}  // namespace
