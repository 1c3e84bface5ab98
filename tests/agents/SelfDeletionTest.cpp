// Action code that deletes the note it runs on, or the agent that runs it:
// the rest of the code is not run on the deleted note, the walks of rules
// and agents go on over the live notes, and nothing freed is touched.
#include <gtest/gtest.h>

#include "Agent.h"
#include "AgentHooks.h"
#include "AgentManager.h"
#include "Action.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeActions.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "RuleManager.h"

namespace {

class SelfDeletionTest : public ::testing::Test {
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

    // The names of the live top-level notes, in order.
    std::string TopLevel() {
        std::string names;
        for (Node* n = doc.Root()->Son(); n; n = n->Brother())
            names += (names.empty() ? "" : ",") + n->Name();
        return names;
    }

    Hypertext doc;
    RuleManager* rules = nullptr;
};

TEST_F(SelfDeletionTest, RuleThatDeletesItsOwnNoteStopsThereAndTheScanGoesOn) {
    Node* first = Make("first");
    Node* doomed = Make("doomed", nullptr, first);
    Node* last = Make("last", nullptr, doomed);
    Node* child = Make("child", doomed);
    first->Set("Rule", "$Count = $Count + 1");
    doomed->Set("Rule", "$Count = $Count + 1; delete(this); $Count = 99; $Log(/first) = \"after\"");
    child->Set("Rule", "$Count = $Count + 1");
    last->Set("Rule", "$Count = $Count + 1");

    rules->RunAll();
    EXPECT_TRUE(doomed->IsHidden());
    EXPECT_TRUE(child->IsHidden());
    // The statements after the deletion did not run.
    EXPECT_EQ(doomed->GetLong("Count"), 1);
    EXPECT_EQ(first->GetString("Log"), "");
    // The notes before and after it ran their rules; the deleted child did
    // not. The cursor's note went, so the walk started again from the top:
    // the first note ran twice.
    EXPECT_EQ(first->GetLong("Count"), 2);
    EXPECT_EQ(last->GetLong("Count"), 1);
    EXPECT_EQ(child->GetLong("Count"), 0);
    EXPECT_EQ(TopLevel(), "first,last");

    // Later scans and ticks see only the live notes.
    rules->RunAll();
    rules->Run(RuleManager::kRulesPerTick);
    EXPECT_EQ(doomed->GetLong("Count"), 1);
    EXPECT_GE(last->GetLong("Count"), 2);
}

TEST_F(SelfDeletionTest, RuleThatDeletesItsContainerOrALaterNote) {
    Node* box = Make("box");
    Node* inner = Make("inner", box);
    Node* next = Make("next", nullptr, box);
    Node* victim = Make("victim", nullptr, next);
    inner->Set("Rule", "delete(parent); $Count = 5");
    next->Set("Rule", "delete(/victim); $Count = 7");
    victim->Set("Rule", "$Count = 1");

    rules->RunAll();
    EXPECT_TRUE(box->IsHidden());
    EXPECT_TRUE(inner->IsHidden());
    EXPECT_EQ(inner->GetLong("Count"), 0);
    // Deleting another note does not end the action that did it.
    EXPECT_EQ(next->GetLong("Count"), 7);
    EXPECT_TRUE(victim->IsHidden());
    EXPECT_EQ(victim->GetLong("Count"), 0);
    EXPECT_EQ(TopLevel(), "next");
    // The root cannot be deleted.
    EXPECT_EQ(Action::Evaluate(next, "delete(/)"), "");
    EXPECT_FALSE(doc.Root()->IsHidden());
}

TEST_F(SelfDeletionTest, AgentWhoseActionDeletesTheAgent) {
    Node* box = Make("Box");
    for (Node* after = nullptr; const char* name : {"apple", "banana", "cherry"})
        (after = Make(name, box, after))->Set("Log", "fruit");
    Node* agent = Agent::Create(&doc, "Fruit", nullptr, box, "$Log==\"fruit\"");
    // Every alias the action reaches counts itself on Box; the first one
    // deletes the agent, and with it the other aliases.
    agent->Set("AgentAction", "$Count(/Box) = $Count(/Box) + 1; delete(agent); $Log(/Box) = \"after\"");
    AgentManager* manager = AgentManager::For(&doc);
    manager->Update(agent);
    EXPECT_TRUE(agent->IsHidden());
    EXPECT_EQ(box->GetLong("Count"), 1);
    EXPECT_EQ(box->GetString("Log"), "");
    EXPECT_EQ(TopLevel(), "Box");
    // The originals stay; another pass finds no live agent to run.
    EXPECT_EQ(NodeFacade(box).Children().size(), 3u);
    manager->Update(agent);
    manager->UpdateAll();
    EXPECT_EQ(box->GetLong("Count"), 1);
}

TEST_F(SelfDeletionTest, AgentWhoseActionDeletesTheOriginalsItFound) {
    Node* box = Make("Box");
    Node* apple = Make("apple", box);
    Node* banana = Make("banana", box, apple);
    apple->Set("Log", "fruit");
    banana->Set("Log", "fruit");
    Node* agent = Agent::Create(&doc, "Sweep", nullptr, box, "$Log==\"fruit\"");
    agent->Set("AgentAction", "delete(original); $Count(/Box) = $Count(/Box) + 1");
    AgentManager* manager = AgentManager::For(&doc);
    manager->Update(agent);
    EXPECT_TRUE(apple->IsHidden());
    EXPECT_TRUE(banana->IsHidden());
    EXPECT_FALSE(agent->IsHidden());
    // The original's aliases went with it, so each action ended at the deletion.
    EXPECT_EQ(box->GetLong("Count"), 0);
    EXPECT_EQ(agent->Son(), nullptr);
    manager->Update(agent);
    EXPECT_EQ(agent->Son(), nullptr);
}

}  // namespace
