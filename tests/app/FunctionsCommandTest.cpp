// `rylvane functions` and the family table behind it: every spelling the
// parser knows has a family, and the command lists each once.
#include "CommandHarness.h"

#include <set>
#include <sstream>
#include <string>

#include "Action.h"
#include "ElementTables.h"
#include "FunctionFamilies.h"

using namespace cmdtest;

namespace {

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

TEST(FunctionFamilies, EverySpellingOfTheParserHasAFamily) {
    for (const FunctionEntry& entry : FunctionTable())
        EXPECT_NE(FunctionFamilies::Find(entry.spelling, false), nullptr) << entry.spelling;
    for (const DotOperatorEntry& entry : DotOperatorTable())
        EXPECT_NE(FunctionFamilies::Find(entry.name, true), nullptr) << "." << entry.name;
    // A function and a dot operator of the same spelling are told apart.
    ASSERT_NE(FunctionFamilies::Find("contains", false), nullptr);
    EXPECT_STREQ(FunctionFamilies::Find("contains", false)->family, "note test");
    EXPECT_STREQ(FunctionFamilies::Find("contains", true)->family, "string");
    EXPECT_EQ(FunctionFamilies::Find("nosuch", false), nullptr);
}

TEST(FunctionFamilies, NoRowNamesWhatTheParserDoesNotKnow) {
    std::set<std::string> functions;
    for (const FunctionEntry& entry : FunctionTable())
        functions.insert(entry.spelling);
    for (const FunctionFamilyRow& row : FunctionFamilies::Rows()) {
        if (row.dot) {
            EXPECT_NE(FindDotOperator(row.spelling), nullptr) << "." << row.spelling;
        } else if (!functions.count(row.spelling)) {
            // A form the parser reads by hand: a call of it is no pattern
            // query on an attribute of that name, nor a plain word.
            AAValuePtr tree = Action::ParseExpression(std::string(row.spelling) + "(x)", true);
            ASSERT_NE(tree, nullptr) << row.spelling;
            EXPECT_STRNE(tree->ClassName(), "AARegexValue") << row.spelling;
            EXPECT_STRNE(tree->ClassName(), "AAStringValue") << row.spelling;
        }
    }
}

class FunctionsCommand : public Commands {};

TEST_F(FunctionsCommand, ListsEverySpellingOnceWithItsFamily) {
    RunResult run = R({"functions"});
    ASSERT_EQ(run.code, 0) << run.err;
    std::vector<std::string> lines = Lines(run.out);
    std::set<std::string> spellings;
    for (const std::string& line : lines) {
        std::string spelling = line.substr(0, line.find('\t'));
        EXPECT_TRUE(spellings.insert(spelling).second) << "twice: " << line;
        EXPECT_EQ(line.find("\tunknown"), std::string::npos) << line;
    }
    EXPECT_EQ(lines.size(), FunctionFamilies::Rows().size());
    for (const char* expected : {".sort\tlist", "rgb\tcolour", ".red\tcolour", "format\tformat",
                                 ".format\tformat", "isbn13\tinformation", "find\tgroup", "log\tnumeric",
                                 "speak\tsystem\tservice", ".nounList\tstring\tservice",
                                 "drivingTimeTo\tlink\tservice", "covid\tinformation\tservice",
                                 // Computed here: listed without the mark.
                                 "wordsRelatedTo\tword", "distanceTo\tlink", "neighborsWithin\tlink",
                                 "neighbors2Within\tlink", "guard\tnote test"})
        EXPECT_TRUE(spellings.count(std::string(expected).substr(0, std::string(expected).find('\t'))) &&
                    run.out.find(std::string(expected) + "\n") != std::string::npos)
            << expected;
}

TEST_F(FunctionsCommand, FiltersByFamilyAndRefusesAnUnknownOne) {
    RunResult run = R({"functions", "--family", "colour"});
    ASSERT_EQ(run.code, 0) << run.err;
    std::vector<std::string> lines = Lines(run.out);
    EXPECT_EQ(lines.size(), 11u);
    for (const std::string& line : lines)
        EXPECT_NE(line.find("\tcolour"), std::string::npos) << line;
    EXPECT_NE(run.out.find(".brightness\tcolour\n"), std::string::npos);

    RunResult notes = R({"functions", "--family", "note test"});
    EXPECT_NE(notes.out.find("#inside\tnote test\n"), std::string::npos);

    ExpectFailure(R({"functions", "--family", "colours"}), "colours");
}

}  // namespace
