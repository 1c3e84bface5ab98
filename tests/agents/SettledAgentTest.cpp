// Settled agents: a pass over a document in which nothing changed since the
// last one is skipped when its query reads nothing but the notes, and runs
// again after any change, or always when the query reads the clock.
#include <gtest/gtest.h>

#include "Action.h"
#include "Agent.h"
#include "AgentHooks.h"
#include "AgentManager.h"
#include "AgentQuery.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "NodeLinks.h"

namespace {

class SettledAgentTest : public ::testing::Test {
protected:
    void SetUp() override {
        InstallAgentHooks();
        // A user attribute: its changes reach no change listener.
        AttributeInfo(&doc).CreateBasicAttribute("Count", "User", true, AttributeType::kNumber);
        box = Make("Box");
        apple = Make("apple", box);
        banana = Make("banana", box, apple);
        manager = AgentManager::For(&doc);
    }

    Node* Make(const std::string& name, Node* parent = nullptr, Node* after = nullptr) {
        return NodeMaker(&doc).MakeNode(name, parent, after, 0, 0);
    }

    static std::string Results(Node* agent) {
        std::string names;
        for (Node* c = agent->Son(); c; c = c->Brother())
            names += (names.empty() ? "" : ",") + c->GetOriginal()->Name();
        return names;
    }

    // Runs the agent once and answers whether the pass was skipped.
    bool Skipped(Node* agent) {
        manager->Update(agent);
        return manager->AgentFor(agent)->LastPassSkipped();
    }

    static bool OnlyNotes(const std::string& query) {
        AAValuePtr tree = Action::ParseExpression(query, true);
        return AgentQuery::TreeDependsOnlyOnNotes(tree.get());
    }

    Hypertext doc;
    Node* box = nullptr;
    Node* apple = nullptr;
    Node* banana = nullptr;
    AgentManager* manager = nullptr;
};

TEST_F(SettledAgentTest, UnchangedDocumentSkipsAndLeavesTheAliasesAsTheyWere) {
    Node* agent = Agent::Create(&doc, "Counted", nullptr, box, "$Count > 2");
    apple->SetLong("Count", 5);
    EXPECT_FALSE(Skipped(agent));
    EXPECT_EQ(Results(agent), "apple");
    Node* alias = agent->Son();
    // The pass that made the alias changed the document: one more pass runs
    // and finds nothing new; from then on passes are skipped.
    EXPECT_FALSE(Skipped(agent));
    EXPECT_TRUE(Skipped(agent));
    EXPECT_TRUE(Skipped(agent));
    EXPECT_EQ(agent->Son(), alias);
    EXPECT_EQ(Results(agent), "apple");
    EXPECT_EQ(manager->PassesSkipped(), 2);

    // The first value of a user attribute on a note is a change.
    banana->SetLong("Count", 9);
    EXPECT_FALSE(Skipped(agent));
    EXPECT_EQ(Results(agent), "apple,banana");
    EXPECT_FALSE(Skipped(agent));
    EXPECT_TRUE(Skipped(agent));
    // So are a changed value and a removed one.
    banana->SetLong("Count", 1);
    EXPECT_FALSE(Skipped(agent));
    EXPECT_EQ(Results(agent), "apple");
    Skipped(agent);
    EXPECT_TRUE(Skipped(agent));
    apple->Remove("Count");
    EXPECT_FALSE(Skipped(agent));
    EXPECT_EQ(Results(agent), "");

    // An alias deleted by hand comes back on the next pass.
    apple->SetLong("Count", 3);
    Skipped(agent);
    Skipped(agent);
    EXPECT_TRUE(Skipped(agent));
    NodeDeleter(agent->Son()).Delete();
    EXPECT_FALSE(Skipped(agent));
    EXPECT_EQ(Results(agent), "apple");

    // A new query, and a new note that matches it.
    Skipped(agent);
    ASSERT_TRUE(Skipped(agent));
    agent->Set("AgentQuery", "$Name.contains(\"e\")");
    EXPECT_FALSE(Skipped(agent));
    int passes = 1;
    while (!Skipped(agent) && passes < 5)
        ++passes;
    EXPECT_LT(passes, 5);
    EXPECT_EQ(Results(agent), "apple");
    Make("cherry", box, banana);
    EXPECT_FALSE(Skipped(agent));
    EXPECT_EQ(Results(agent), "apple,cherry");
}

TEST_F(SettledAgentTest, AQueryThatHoldsForTheRootSettlesToo) {
    // The root can have no alias under the agent; a pass that counted it
    // among the results would find a change, and redo its aliases, forever.
    doc.Root()->SetName("Everything");
    Node* agent = Agent::Create(&doc, "All", nullptr, box, "true");
    EXPECT_TRUE(manager->Update(agent));
    EXPECT_FALSE(manager->Update(agent));
    EXPECT_TRUE(Skipped(agent));
    EXPECT_EQ(Results(agent), "Box,apple,banana");
}

TEST_F(SettledAgentTest, MovesLinksRenamesAndDefaultsMakeTheNextPassRun) {
    Node* inside = Agent::Create(&doc, "Inside", nullptr, box, "descendedFrom(/Box)");
    Node* linked = Agent::Create(&doc, "Linked", nullptr, inside, "linkedTo(/Box/apple)");
    Node* other = Make("Other");
    for (int i = 0; i < 2; ++i)
        manager->UpdateAll();
    ASSERT_TRUE(Skipped(inside));
    NodePosition(banana).DoMoveTo(other, nullptr);
    EXPECT_FALSE(Skipped(inside));
    EXPECT_EQ(Results(inside), "apple");

    manager->UpdateAll();
    ASSERT_TRUE(Skipped(linked));
    NodeLinks(banana).CreateLink(apple);
    EXPECT_FALSE(Skipped(linked));
    EXPECT_EQ(Results(linked), "banana");

    manager->UpdateAll();
    manager->UpdateAll();
    ASSERT_TRUE(Skipped(inside));
    apple->SetName("apricot");
    EXPECT_FALSE(Skipped(inside));

    // Notes without a Count of their own read its default.
    Node* counted = Agent::Create(&doc, "Counted", nullptr, linked, "$Count == 7");
    Skipped(counted);
    ASSERT_TRUE(Skipped(counted));
    AttributeInfo(&doc).SetDefault("Count", "7");
    EXPECT_FALSE(Skipped(counted));
    // Every note but the root and the agent itself.
    EXPECT_EQ(NodeFacade(counted).Children().size(), 6u);
    manager->UpdateAll();
    ASSERT_TRUE(Skipped(counted));
    AttributeInfo(&doc).SetDefaultBooleanValueOf("Searchable", false);
    EXPECT_FALSE(Skipped(counted));
    EXPECT_EQ(Results(counted), "");
}

TEST_F(SettledAgentTest, QueriesThatReadTheClockOrChanceAreNeverSkipped) {
    for (const char* query : {"$Count > 2", "$Name.contains(\"a\") & !($Count == 3)", "descendedFrom(/Box)",
                              "$Name == \"apple\" | $Count >= 1", "true", "linkedTo(/Box/apple)"})
        EXPECT_TRUE(OnlyNotes(query)) << query;
    for (const char* query : {"$Created > date(\"today\")", "$Modified < \"today\"", "$DueDate > today",
                              "rand() < 2", "eval(\"$Count\") > 1", "$Name(randomChild) == \"apple\"",
                              "runCommand(\"date\") != \"\"", "$Count > 1 & $StartDate < \"next week\""})
        EXPECT_FALSE(OnlyNotes(query)) << query;

    // The created date of a note made today is "today" or later: the agent
    // finds it on every pass, and never skips one.
    Node* agent = Agent::Create(&doc, "Recent", nullptr, box, "$Name == \"apple\" & $Created >= \"yesterday\"");
    for (int i = 0; i < 4; ++i)
        EXPECT_FALSE(Skipped(agent)) << i;
    EXPECT_EQ(Results(agent), "apple");
}

} // namespace
