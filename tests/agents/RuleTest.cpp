// Rules, edicts and the OnAdd and OnRemove actions of parents.
#include <gtest/gtest.h>

#include "AgentHooks.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "DocumentUpdate.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeActions.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "RuleManager.h"

namespace {

class RuleTest : public ::testing::Test {
protected:
    void SetUp() override {
        InstallAgentHooks();
        AttributeInfo(&doc).CreateBasicAttribute("Count", "User", true, AttributeType::kNumber);
        AttributeInfo(&doc).CreateBasicAttribute("Log", "User", true, AttributeType::kString);
        rules = RuleManager::For(&doc);
    }

    Node* Make(const std::string& name, Node* parent = nullptr, Node* after = nullptr) {
        return NodeMaker(&doc).MakeNode(name, parent, after, 0, 0);
    }

    Hypertext doc;
    RuleManager* rules = nullptr;
};

TEST_F(RuleTest, ADocumentWithoutRulesFindsTheFirstRuleOnTheNextTick) {
    Node* a = Make("a");
    Node* b = Make("b", nullptr, a);
    EXPECT_EQ(rules->Run(RuleManager::kRulesPerTick), 0);
    EXPECT_EQ(rules->Run(RuleManager::kRulesPerTick), 0);
    long scans = rules->ScansFinished();
    b->Set("Rule", "$Count = 4");
    EXPECT_EQ(rules->Run(1), 1);
    EXPECT_EQ(b->GetLong("Count"), 4);
    // A rule switched off, and on again.
    b->SetBoolean("RuleDisabled", true);
    EXPECT_EQ(rules->Run(1), 0);
    EXPECT_EQ(rules->Run(1), 0);
    b->SetBoolean("RuleDisabled", false);
    b->SetLong("Count", 0);
    EXPECT_EQ(rules->Run(1), 1);
    EXPECT_EQ(b->GetLong("Count"), 4);
    EXPECT_GT(rules->ScansFinished(), scans);
}

TEST_F(RuleTest, TicksRunTwentyFiveRulesAndTheCursorWrapsAround) {
    std::vector<Node*> notes;
    Node* after = nullptr;
    for (int i = 0; i < 60; ++i) {
        after = Make("n" + std::to_string(i), nullptr, after);
        notes.push_back(after);
        // Every other note has a rule; the rest are walked over.
        if (i % 2 == 0)
            after->Set("Rule", "$Count = $Count + 1");
    }
    notes[10]->SetBoolean("RuleDisabled", true);
    EXPECT_EQ(rules->Run(RuleManager::kRulesPerTick), 25);
    EXPECT_EQ(notes[0]->GetLong("Count"), 1);
    EXPECT_EQ(notes[10]->GetLong("Count"), 0);
    EXPECT_EQ(notes[50]->GetLong("Count"), 1);
    EXPECT_EQ(notes[52]->GetLong("Count"), 0);
    // The second tick runs the last four, finishes the scan and goes on
    // from the top.
    EXPECT_EQ(rules->ScansFinished(), 0);
    EXPECT_EQ(rules->Run(RuleManager::kRulesPerTick), 25);
    EXPECT_EQ(rules->ScansFinished(), 1);
    EXPECT_EQ(notes[58]->GetLong("Count"), 1);
    EXPECT_EQ(notes[0]->GetLong("Count"), 2);
    EXPECT_EQ(notes[42]->GetLong("Count"), 2);
    EXPECT_EQ(notes[44]->GetLong("Count"), 1);

    EXPECT_EQ(rules->RunAll(), 29);
    EXPECT_EQ(rules->Cursor(), nullptr);
    EXPECT_EQ(notes[58]->GetLong("Count"), 2);
}

TEST_F(RuleTest, InheritedRulesRunAndEmptyOrSwitchedOffOnesAreWalkedOver) {
    Node* prototype = Make("prototype");
    Node* heir = Make("heir", nullptr, prototype);
    Node* empty = Make("empty", nullptr, heir);
    Node* late = Make("late", nullptr, empty);
    prototype->Set("Rule", "$Log = $Name");
    heir->SetPrototype(prototype, false);
    empty->Set("Rule", "");
    EXPECT_EQ(rules->RunAll(), 2);
    EXPECT_EQ(heir->GetString("Log"), "heir");
    EXPECT_EQ(empty->GetString("Log"), "");
    heir->SetBoolean("RuleDisabled", true);
    heir->Set("Log", "");
    EXPECT_EQ(rules->RunAll(), 1);
    EXPECT_EQ(heir->GetString("Log"), "");
    // A rule written between two walks is met by the next one.
    late->Set("Rule", "$Log = \"ran\"");
    EXPECT_EQ(rules->RunAll(), 2);
    EXPECT_EQ(late->GetString("Log"), "ran");
}

TEST_F(RuleTest, DeletedCursorNotesAndRulesThatRewriteThemselves) {
    Node* a = Make("a");
    Node* b = Make("b", nullptr, a);
    Node* c = Make("c", nullptr, b);
    for (Node* n : {a, b, c})
        n->Set("Rule", "$Count = $Count + 1");
    EXPECT_EQ(rules->Run(2), 2);
    ASSERT_EQ(rules->Cursor(), b);
    // The note the cursor stands on goes away between ticks: the walk
    // starts again from the top rather than from freed memory.
    NodeDeleter(b).Delete();
    EXPECT_EQ(rules->Run(1), 1);
    EXPECT_EQ(a->GetLong("Count"), 2);

    // A rule that replaces its own text runs to the end of this run and
    // the new text from the next.
    c->Set("Rule", "$Rule = \"$Count = 100\"; $Log = \"ran\"");
    rules->RunAll();
    EXPECT_EQ(c->GetString("Log"), "ran");
    EXPECT_EQ(c->GetString("Rule"), "$Count = 100");
    rules->RunAll();
    EXPECT_EQ(c->GetLong("Count"), 100);
}

TEST_F(RuleTest, EdictsRunOnUpdateAndClearedEdictsDoNothing) {
    Node* a = Make("a");
    Node* b = Make("b", nullptr, a);
    a->Set("Edict", "$Count = $Count + 5");
    b->Set("Edict", "$Count = 1");
    b->SetBoolean("EdictDisabled", true);
    UpdateDocument(&doc);
    EXPECT_EQ(a->GetLong("Count"), 5);
    EXPECT_EQ(b->GetLong("Count"), 0);
    a->Set("Edict", "");
    EXPECT_FALSE(NodeActions(a).PerformEdict());
    EXPECT_EQ(a->GetLong("Count"), 5);
}


// Sorting happens on the loop's tick, after the values it sorts by changed:
// a new order must count as a change of its own, or whatever the document
// keeps while nothing changes (export names, agents' matches) goes stale.
TEST_F(RuleTest, ASortThatReordersChildrenCountsAChange) {
    Node* box = Make("box");
    Node* b = Make("b", box);
    Node* a = Make("a", box, b);
    box->Set("Sort", "Name");
    uint64_t before = doc.ChangeCount();
    NodeActions(box).SortNow();
    EXPECT_EQ(box->Son(), a);
    EXPECT_GT(doc.ChangeCount(), before);
    before = doc.ChangeCount();
    NodeActions(box).SortNow();
    EXPECT_EQ(doc.ChangeCount(), before);
}
TEST_F(RuleTest, OnAddAndOnRemoveRunWhenTheTreeChangesButNotWhileReading) {
    Node* inbox = Make("Inbox");
    Node* done = Make("Done", nullptr, inbox);
    inbox->Set("OnAdd", "$Log = \"added\"");
    inbox->Set("OnRemove", "$Log = $Log + \" removed\"");
    Node* task = Make("task", inbox);
    EXPECT_EQ(task->GetString("Log"), "added");
    NodePosition(task).DoMoveTo(done, nullptr);
    EXPECT_EQ(task->GetString("Log"), "added removed");
    NodePosition(task).DoMoveTo(inbox, nullptr);
    EXPECT_EQ(task->GetString("Log"), "added");

    doc.InhibitActions(true);
    Node* read = Make("read", inbox);
    doc.InhibitActions(false);
    EXPECT_EQ(read->GetString("Log"), "");
}

} // namespace
