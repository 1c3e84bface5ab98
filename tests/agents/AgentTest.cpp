// Agents: what an agent holds after a pass, and how it follows its query,
// its priority and the notes it finds.
#include <gtest/gtest.h>

#include "Agent.h"
#include "AgentHooks.h"
#include "AgentManager.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "Hypertext.h"
#include "WorkQueue.h"
#include <set>
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"

namespace {

class AgentTest : public ::testing::Test {
protected:
    void SetUp() override {
        InstallAgentHooks();
        AttributeInfo(&doc).CreateBasicAttribute("Count", "User", true, AttributeType::kNumber);
        AttributeInfo(&doc).CreateBasicAttribute("Label", "User", true, AttributeType::kString);
        box = Make("Box");
        apple = Make("apple pie", box);
        banana = Make("banana split", box, apple);
        cherry = Make("cherry tart", box, banana);
        manager = AgentManager::For(&doc);
    }

    Node* Make(const std::string& name, Node* parent = nullptr, Node* after = nullptr) {
        return NodeMaker(&doc).MakeNode(name, parent, after, 0, 0);
    }

    // The originals of the agent's children, by name, in order.
    static std::string Results(Node* agent) {
        std::string names;
        for (Node* c = agent->Son(); c; c = c->Brother())
            names += (names.empty() ? "" : ",") + c->GetOriginal()->Name() + (c->IsAlias() ? "" : "!");
        return names;
    }

    Hypertext doc;
    Node* box = nullptr;
    Node* apple = nullptr;
    Node* banana = nullptr;
    Node* cherry = nullptr;
    AgentManager* manager = nullptr;
};

TEST_F(AgentTest, HoldsOneAliasPerMatchInOutlineOrderAndFollowsItsQuery) {
    Node* agent = Agent::Create(&doc, "Pies", nullptr, box, "$Name.contains(\"a\")");
    EXPECT_TRUE(Agent::IsAgentNote(agent));
    EXPECT_EQ(agent->GetDouble("Width"), 3.0);
    EXPECT_TRUE(manager->Update(agent));
    // The agent's own name has an "a": it never matches itself, nor "Box".
    EXPECT_EQ(Results(agent), "apple pie,banana split,cherry tart");
    // A second pass changes nothing.
    EXPECT_FALSE(manager->Update(agent));
    EXPECT_EQ(Results(agent), "apple pie,banana split,cherry tart");

    // An original that stops matching loses its alias; one that starts is added.
    apple->SetName("plum");
    Make("date cake", box, cherry);
    EXPECT_TRUE(manager->Update(agent));
    EXPECT_EQ(Results(agent), "banana split,cherry tart,date cake");

    // A user who deletes an alias gets it back while its original matches.
    NodeDeleter(agent->Son()).Delete();
    EXPECT_EQ(Results(agent), "cherry tart,date cake");
    manager->Update(agent);
    EXPECT_EQ(Results(agent), "cherry tart,date cake,banana split");

    // A changed query empties the agent and the next pass refills it.
    agent->Set("AgentQuery", "$Name.contains(\"cake\")");
    manager->Update(agent);
    EXPECT_EQ(Results(agent), "date cake");
    // So does a changed case rule.
    NodeDeleter(agent->Son()).Delete();
    Node* stray = Make("stray", agent);
    agent->SetBoolean("AgentCaseSensitive", false);
    manager->Update(agent);
    EXPECT_EQ(Results(agent), "stray!,date cake");
    (void)stray;
}

TEST_F(AgentTest, SearchablePriorityInvalidQueriesAndWriting) {
    Node* agent = Agent::Create(&doc, "Pies", nullptr, box, "$Count > 1");
    apple->SetLong("Count", 2);
    banana->SetLong("Count", 3);
    cherry->SetLong("Count", 4);
    cherry->SetBoolean("Searchable", false);
    manager->Update(agent);
    EXPECT_EQ(Results(agent), "apple pie,banana split");

    // A negative priority switches the agent off and leaves its children.
    agent->SetLong("AgentPriority", -1);
    apple->SetLong("Count", 0);
    EXPECT_FALSE(manager->Update(agent));
    EXPECT_EQ(Results(agent), "apple pie,banana split");
    agent->SetLong("AgentPriority", 1);

    // An agent read with an invalid query does nothing: it keeps its children.
    Node* broken = Agent::Create(&doc, "Broken", nullptr, agent, "$Count > 2");
    manager->Update(broken);
    EXPECT_EQ(Results(broken), "banana split");
    broken->Set("AgentQuery", "$Count > (((");
    Agent reread(broken);
    reread.Loaded();
    EXPECT_FALSE(reread.Do(false));
    EXPECT_EQ(Results(broken), "banana split");

    // While the document is written, nothing changes; nor when switched off.
    manager->WillWrite();
    EXPECT_FALSE(manager->Update(agent));
    EXPECT_EQ(Results(agent), "apple pie,banana split");
    manager->DidWrite();
    {
        StDisableAgents off(&doc);
        EXPECT_EQ(manager->UpdateAll(), 0);
    }
    EXPECT_EQ(Results(agent), "apple pie,banana split");
    EXPECT_TRUE(manager->Update(agent));
    EXPECT_EQ(Results(agent), "banana split");
}

TEST_F(AgentTest, ActionsSeeCaptureGroupsAndSortOrders) {
    Node* agent = Agent::Create(&doc, "Fruit", nullptr, box, "$Name.contains(\"([a-z]+) (pie|split|tart)\")");
    agent->Set("AgentAction", "$Label = $1");
    agent->Set("Sort", "Name");
    agent->SetBoolean("SortBackward", true);
    manager->Update(agent);
    EXPECT_EQ(Results(agent), "cherry tart,banana split,apple pie");
    EXPECT_EQ(apple->GetString("Label"), "apple");
    EXPECT_EQ(cherry->GetString("Label"), "cherry");
}

TEST_F(AgentTest, CleanupNoneFindsFreePlacesAndOthersStayAtTheOrigin) {
    Node* spread = Agent::Create(&doc, "Spread", nullptr, box, "$Name.contains(\" \")");
    spread->Set("CleanupAction", "none");
    Node* piled = Agent::Create(&doc, "Piled", nullptr, spread, "$Name.contains(\" \")");
    manager->UpdateAll();
    ASSERT_EQ(NodeFacade(spread).Children().size(), 3u);
    std::set<std::pair<double, double>> places;
    for (Node* c : NodeFacade(spread).Children()) {
        SPoint p = NodePosition(c).GetPosition();
        places.insert({p.x, p.y});
    }
    EXPECT_EQ(places.size(), 3u);
    for (Node* c : NodeFacade(piled).Children()) {
        SPoint p = NodePosition(c).GetPosition();
        EXPECT_EQ(p.x, 0);
        EXPECT_EQ(p.y, 0);
    }
}

TEST_F(AgentTest, ScheduleByExactPriorityAndForgetDeletedAgents) {
    struct ListQueue : WorkQueue {
        std::vector<std::function<void()>> blocks;
        void AddOperation(std::function<void()> block, int) override { blocks.push_back(std::move(block)); }
        long OperationCount() const override { return long(blocks.size()); }
    } queue;
    Node* one = Agent::Create(&doc, "One", nullptr, box, "$Name.contains(\"apple\")");
    Node* four = Agent::Create(&doc, "Four", nullptr, one, "$Name.contains(\"apple\")");
    four->SetLong("AgentPriority", 4);
    Node* three = Agent::Create(&doc, "Three", nullptr, four, "$Name.contains(\"apple\")");
    three->SetLong("AgentPriority", 3);
    EXPECT_EQ(manager->ScheduleUpdates(queue, 1), 1);
    EXPECT_EQ(manager->ScheduleUpdates(queue, 4), 1);
    EXPECT_EQ(manager->ScheduleUpdates(queue, 3), 1);
    EXPECT_EQ(queue.blocks.size(), 6u);
    // An agent deleted while its operation waits is skipped.
    NodeDeleter(four).Delete();
    for (auto& block : queue.blocks)
        block();
    EXPECT_EQ(Results(one), "apple pie");
    EXPECT_EQ(Results(three), "apple pie");
    EXPECT_EQ(manager->Agents().size(), 2u);

    // Past the pending limit a tick queues nothing.
    queue.blocks.assign(AgentManager::kPendingLimit + 1, [] {});
    EXPECT_EQ(manager->ScheduleUpdates(queue, 1), 0);
    EXPECT_EQ(queue.blocks.size(), size_t(AgentManager::kPendingLimit + 1));
}

TEST_F(AgentTest, QueryMatchingEveryNoteSettlesAndEmptiesAgain) {
    Node* all = Agent::Create(&doc, "All", nullptr, box, "true");
    Node* other = Agent::Create(&doc, "Other", nullptr, all, "$Name == \"apple pie\"");
    manager->UpdateAll();
    // Every note but the root, the agent itself and the aliases.
    EXPECT_EQ(Results(all), "Box,apple pie,banana split,cherry tart,Other");
    manager->UpdateAll();
    manager->UpdateAll();
    EXPECT_EQ(NodeFacade(all).Children().size(), 5u);
    EXPECT_EQ(Results(other), "apple pie");
    all->Set("AgentQuery", "$Name == \"nothing\"");
    manager->Update(all);
    EXPECT_EQ(Results(all), "");
}

TEST_F(AgentTest, TenThousandAgentsAreQueuedOnceAndTheNextTickWaits) {
    struct ListQueue : WorkQueue {
        std::vector<std::function<void()>> blocks;
        void AddOperation(std::function<void()> block, int) override { blocks.push_back(std::move(block)); }
        long OperationCount() const override { return long(blocks.size()); }
    } queue;
    Node* after = box;
    for (int i = 0; i < 10000; ++i)
        after = Agent::Create(&doc, "agent " + std::to_string(i), nullptr, after, "$Name == \"cherry tart\"");
    EXPECT_EQ(manager->Agents().size(), 10000u);
    EXPECT_EQ(manager->ScheduleUpdates(queue, 1), 10000);
    EXPECT_EQ(manager->ScheduleUpdates(queue, 1), 0);
    EXPECT_EQ(queue.blocks.size(), 10001u);
    for (size_t i = 0; i < 3; ++i)
        queue.blocks[i]();
    EXPECT_EQ(Results(box->Brother()), "cherry tart");
}

} // namespace
