// The running loop: dispatchers on a simulated clock, the document queues
// and the agents, rules and edicts they run.
#include <gtest/gtest.h>

#include <thread>

#include "Agent.h"
#include "AgentHooks.h"
#include "AgentManager.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "Hypertext.h"
#include "HypertextQueues.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "RuleManager.h"
#include "RylDispatcherList.h"
#include "RylRateLimiter.h"
#include "RylRunLoop.h"
#include "RylThrottledQueue.h"

namespace {

class DispatchTest : public ::testing::Test {
protected:
    void SetUp() override {
        InstallAgentHooks();
        AttributeInfo(&doc).CreateBasicAttribute("Count", "User", true, AttributeType::kNumber);
    }
    Node* Make(const std::string& name, Node* parent = nullptr, Node* after = nullptr) {
        return NodeMaker(&doc).MakeNode(name, parent, after, 0, 0);
    }
    long FiredOf(RylDispatcherList& list, const char* kind, long priority = -1) {
        for (const auto& d : list.Dispatchers()) {
            if (std::string(d->Kind()) != kind)
                continue;
            auto* agent = dynamic_cast<RylAgentDispatcher*>(d.get());
            if (priority < 0 || (agent && agent->Priority() == priority))
                return d->Fired();
        }
        return -1;
    }

    Hypertext doc;
    RylRunLoop loop{true};
};

TEST_F(DispatchTest, NineTimersFireAtTheirIntervalsOnTheSimulatedClock) {
    HypertextQueues queues(&doc, loop);
    RylDispatcherList list;
    list.ForDocument(queues);
    EXPECT_EQ(list.Count(), 9u);
    loop.RunFor(3600);
    EXPECT_EQ(FiredOf(list, "rule"), 3600);
    EXPECT_EQ(FiredOf(list, "agent", 0), 720);
    EXPECT_EQ(FiredOf(list, "agent", 1), 327);
    EXPECT_EQ(FiredOf(list, "agent", 4), 59);
    EXPECT_EQ(FiredOf(list, "agent", 10), 11);
    EXPECT_EQ(FiredOf(list, "agent", 20), 1);
    EXPECT_EQ(FiredOf(list, "edict"), 1);
    EXPECT_EQ(FiredOf(list, "error"), 720);
    EXPECT_EQ(FiredOf(list, "simplenote"), 600);
    EXPECT_EQ(loop.Now(), 3600);
}

TEST_F(DispatchTest, SuspendSparesTheExtraAgentDispatchersAndBackgroundStretchesShortIntervals) {
    HypertextQueues queues(&doc, loop);
    RylDispatcherList list;
    list.ForDocument(queues);
    list.Suspend();
    EXPECT_TRUE(list.RuleDispatcher()->Suspended());
    EXPECT_TRUE(list.AgentDispatcher()->Suspended());
    int running = 0;
    for (const auto& d : list.Dispatchers())
        running += d->Suspended() ? 0 : 1;
    EXPECT_EQ(running, 4);
    list.Resume();
    EXPECT_FALSE(list.RuleDispatcher()->Suspended());

    RylDispatcher::SetApplicationActive(false);
    EXPECT_EQ(list.RuleDispatcher()->NextDelay(), 10);
    for (const auto& d : list.Dispatchers()) {
        if (d->NormalInterval() == 307 || d->NormalInterval() == 1801) {
            EXPECT_EQ(d->NextDelay(), d->NormalInterval());
        }
    }
    RylDispatcher::SetApplicationActive(true);
    EXPECT_EQ(list.RuleDispatcher()->NextDelay(), 1);
}

TEST_F(DispatchTest, AgentsRulesAndEdictsRunFromTheTimersAndBusyQueuesSkipAgentTicks) {
    Node* a = Make("apple");
    a->Set("Rule", "$Count = $Count + 1");
    a->Set("Edict", "$Width = 9");
    Node* slow = Agent::Create(&doc, "Slow", nullptr, a, "$Name == \"apple\"");
    slow->SetLong("AgentPriority", 20);
    Node* quick = Agent::Create(&doc, "Quick", nullptr, slow, "$Name == \"apple\"");
    quick->SetLong("AgentPriority", 0);
    HypertextQueues queues(&doc, loop);
    RylDispatcherList list;
    list.ForDocument(queues);
    loop.RunFor(10);
    EXPECT_EQ(NodeFacade(quick).Children().size(), 1u);
    EXPECT_EQ(NodeFacade(slow).Children().size(), 0u);
    EXPECT_GE(a->GetLong("Count"), 10 * 25 - 25);
    // The edict waits for its hour.
    EXPECT_EQ(a->GetDouble("Width"), 3);
    loop.RunFor(3600);
    EXPECT_EQ(a->GetDouble("Width"), 9);

    // With the agent queue flooded, agent ticks queue nothing, rules still do.
    queues.AgentQueue().SetSuspended(true);
    for (long i = 0; i <= HypertextQueues::kBusyLimit; ++i)
        queues.AgentQueue().AddOperation([] {});
    EXPECT_TRUE(queues.AgentsAreBusy());
    long before = queues.AgentQueue().OperationCount();
    list.AgentDispatcher()->Run();
    EXPECT_EQ(queues.AgentQueue().OperationCount(), before);
    list.RuleDispatcher()->Run();
    EXPECT_EQ(queues.AgentQueue().OperationCount(), before + 1);
    queues.CancelAll();
    queues.AgentQueue().SetSuspended(false);
}

TEST_F(DispatchTest, QueuesRunByPriorityOneAtATimeAndMainQueueCallsFromThreadsWait) {
    HypertextQueues queues(&doc, loop);
    std::string order;
    queues.AgentQueue().AddOperation([&] { order += "a"; }, -4);
    queues.AgentQueue().AddOperation([&] { order += "b"; }, 0);
    queues.EdictQueue().AddOperation([&] { order += "e"; }, -4);
    queues.AgentQueue().AddOperation([&] { order += "c"; }, 0);
    loop.Schedule(1, [] {});
    loop.RunFor(1);
    // The queue runs its highest priority first, in order of arrival among equals.
    EXPECT_EQ(order.find('b') < order.find('c'), true);
    EXPECT_EQ(order.find('c') < order.find('a'), true);
    EXPECT_EQ(order.size(), 4u);

    // From another thread, a block for the main queue runs on the loop's
    // thread while the caller waits (on the real clock).
    RylRunLoop real(false);
    HypertextQueues realQueues(&doc, real);
    bool ranOnLoop = false;
    std::thread other([&] {
        EXPECT_TRUE(realQueues.OnMainQueueWithTimeout(5, [&] { ranOnLoop = real.IsLoopThread(); }));
        real.Stop();
    });
    real.RunFor(30);
    other.join();
    EXPECT_TRUE(ranOnLoop);
    EXPECT_LT(real.Now(), 10);
}

} // namespace

namespace {

TEST(ThrottleQueue, OperationsStartAnIntervalApartAndClearDropsTheRest) {
    RylRunLoop loop(true);
    RylThrottledQueue queue(loop, 3.0);
    std::vector<double> started;
    for (int i = 0; i < 4; ++i)
        queue.AddOperationWithBlock([&] { started.push_back(loop.Now()); });
    loop.RunFor(7);
    ASSERT_EQ(started.size(), 3u);
    EXPECT_EQ(started[0], 0);
    EXPECT_EQ(started[1], 3);
    EXPECT_EQ(started[2], 6);
    queue.Clear();
    loop.RunFor(10);
    EXPECT_EQ(started.size(), 3u);
}

TEST(RateLimiterDispatch, UpdatesCoalesceToOnePerInterval) {
    RylRunLoop loop(true);
    int runs = 0;
    RylRateLimiter limiter(loop, [&] { ++runs; });
    // The first update is the caller's own; the next ones within the
    // interval become one update at the tick.
    EXPECT_FALSE(limiter.InProgress());
    limiter.Limit();
    for (int i = 0; i < 10; ++i)
        EXPECT_TRUE(limiter.InProgress());
    EXPECT_EQ(runs, 0);
    loop.RunFor(0.25);
    EXPECT_EQ(runs, 1);
    // Nothing asked since: the next tick runs nothing and the limiter opens.
    loop.RunFor(0.25);
    EXPECT_EQ(runs, 1);
    EXPECT_FALSE(limiter.InProgress());
    limiter.Limit();
    EXPECT_TRUE(limiter.InProgress());
    limiter.Cancel();
    loop.RunFor(1);
    EXPECT_EQ(runs, 1);
}

} // namespace
