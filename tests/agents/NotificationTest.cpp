// Notifications of the running loop: what agent, rule and edict work posts,
// with which user information, and that it reaches observers on the loop's
// thread rather than where the work runs.
#include <gtest/gtest.h>

#include <boost/asio/post.hpp>

#include "Agent.h"
#include "AgentHooks.h"
#include "AgentManager.h"
#include "Hypertext.h"
#include "HypertextQueues.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "NotificationCenter.h"
#include "RuleManager.h"
#include "RylDispatcherList.h"
#include "RylRunLoop.h"
#include "WorkQueue.h"

namespace {

struct Seen {
    std::string name;
    std::string who;
    const void* hypertext;
    long number;
    long max;
};

class NotificationTest : public ::testing::Test {
protected:
    void SetUp() override {
        InstallAgentHooks();
        doc.Root()->SetName("Notebook");
        box = Make("Box");
        apple = Make("apple", box);
        banana = Make("banana", box, apple);
        id = center.AddObserver("", &doc, [this](const Notification& n) {
            seen.push_back({n.name, n.Text("name"), n.Object("hypertext"), n.Number("number"), n.Number("max")});
        });
    }
    void TearDown() override { center.RemoveObserver(id); }

    Node* Make(const std::string& name, Node* parent = nullptr, Node* after = nullptr) {
        return NodeMaker(&doc).MakeNode(name, parent, after, 0, 0);
    }

    Hypertext doc;
    Node* box = nullptr;
    Node* apple = nullptr;
    Node* banana = nullptr;
    NotificationCenter& center = NotificationCenter::Default();
    NotificationCenter::ObserverID id = 0;
    std::vector<Seen> seen;
};

TEST_F(NotificationTest, EachScheduledAgentPostsItsNameAndPlaceThenTheUpdateResets) {
    struct ListQueue : WorkQueue {
        std::vector<std::function<void()>> blocks;
        void AddOperation(std::function<void()> block, int) override { blocks.push_back(std::move(block)); }
        long OperationCount() const override { return long(blocks.size()); }
    } queue;
    // Blocks for the main thread wait here until the test runs them.
    std::vector<std::function<void()>> mainThread;
    StMainThreadPoster poster(center, [&](std::function<void()> block) { mainThread.push_back(std::move(block)); });

    Node* first = Agent::Create(&doc, "First", nullptr, box, "$Name == \"apple\"");
    Node* other = Agent::Create(&doc, "Other", nullptr, first, "$Name == \"apple\"");
    other->SetLong("AgentPriority", 4);
    Agent::Create(&doc, "Second", nullptr, other, "$Name == \"banana\"");
    AgentManager* manager = AgentManager::For(&doc);
    EXPECT_EQ(manager->ScheduleUpdates(queue, 1), 2);
    for (auto& block : queue.blocks)
        block();
    // Nothing reached the observer on the thread that ran the agents.
    EXPECT_TRUE(seen.empty());
    EXPECT_EQ(mainThread.size(), 3u);
    for (auto& block : mainThread)
        block();
    ASSERT_EQ(seen.size(), 3u);
    const char* agentRun = AgentManager::kAgentNotification;
    EXPECT_EQ(seen[0].name, agentRun);
    EXPECT_EQ(seen[0].who, "First");
    EXPECT_EQ(seen[0].hypertext, &doc);
    EXPECT_EQ(seen[0].number, 1);
    EXPECT_EQ(seen[0].max, 2);
    EXPECT_EQ(seen[1].who, "Second");
    EXPECT_EQ(seen[1].number, 2);
    EXPECT_EQ(seen[1].max, 2);
    EXPECT_EQ(seen[2].name, agentRun);
    EXPECT_EQ(seen[2].who, "Notebook");
    EXPECT_EQ(seen[2].number, 0);
    EXPECT_EQ(seen[2].max, 0);

    // An agent that deleted itself is not reported.
    seen.clear();
    mainThread.clear();
    queue.blocks.clear();
    first->Set("AgentAction", "delete(agent);");
    first->Set("AgentQuery", "$Name == \"banana\"");
    manager->ScheduleUpdates(queue, 1);
    for (auto& block : queue.blocks)
        block();
    for (auto& block : mainThread)
        block();
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].who, "Second");
    EXPECT_EQ(seen[1].who, "Notebook");

    // Updates of agents are always worth telling; of other notes, once a while.
    EXPECT_TRUE(manager->NotifyWhenUpdating(other));
    EXPECT_TRUE(manager->NotifyWhenUpdating(other));
    EXPECT_TRUE(manager->NotifyWhenUpdating(apple));
    EXPECT_FALSE(manager->NotifyWhenUpdating(banana));
}

TEST_F(NotificationTest, RulesTellTheirNoteOutlineOrderAndTheNoteCount) {
    banana->Set("Rule", "$Color = \"red\";");
    doc.UpdateOutlineOrder();
    EXPECT_TRUE(RuleManager::For(&doc)->Run());
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0].name, RuleManager::kRuleNotification);
    EXPECT_EQ(seen[0].who, "banana");
    EXPECT_EQ(seen[0].hypertext, &doc);
    EXPECT_EQ(seen[0].number, NodeFacade(banana).OutlineOrder());
    EXPECT_GT(seen[0].number, 0);
    EXPECT_EQ(seen[0].max, HypertextFacade(&doc).NodeCount());
    EXPECT_EQ(banana->GetString("Color"), "red");
}

TEST_F(NotificationTest, DispatchedEdictsAndAgentsPostOnTheLoopThread) {
    RylRunLoop loop(true);
    StMainThreadPoster poster(center, [&loop](std::function<void()> block) {
        boost::asio::post(loop.Context(), [&loop, block = std::move(block)] {
            EXPECT_TRUE(loop.IsLoopThread());
            block();
        });
    });
    banana->Set("Edict", "$Color = \"blue\";");
    Agent::Create(&doc, "Fruit", nullptr, box, "$Name == \"apple\"");
    HypertextQueues queues(&doc, loop);
    RylDispatcherList list;
    list.ForDocument(queues);
    loop.RunFor(3601);
    auto count = [&](const std::string& name, const std::string& who = "") {
        long n = 0;
        for (const Seen& s : seen)
            n += s.name == name && (who.empty() || s.who == who);
        return n;
    };
    EXPECT_EQ(count(RuleManager::kEdictsWillRunNotification), 1);
    EXPECT_EQ(count(RuleManager::kEdictsDidRunNotification), 1);
    EXPECT_EQ(count(RuleManager::kRuleNotification, "edict: banana"), 1);
    EXPECT_EQ(banana->GetString("Color"), "blue");
    // The priority-1 agent ran on each of its 327 ticks, each followed by
    // the reset of a complete update; the other priorities have no agents
    // and post only their resets.
    EXPECT_EQ(count(AgentManager::kAgentNotification, "Fruit"), 327);
    EXPECT_EQ(count(AgentManager::kAgentNotification, "Notebook"), 720 + 327 + 59 + 11 + 1);
}

} // namespace
