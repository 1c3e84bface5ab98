#pragma once
// A document's operation queues: agent work, manual agent updates and
// edicts, each of width 1 and all three on one serial executor, so that
// note changes from them never overlap; and the way work reaches the loop's
// own thread (the main queue).
#include <functional>
#include <memory>

#include "RylOperationQueue.h"

class Hypertext;
class RylRunLoop;

class HypertextQueues {
public:
    // Operations waiting on the agent queue beyond which agents are busy.
    static constexpr long kBusyLimit = 2500;

    HypertextQueues(Hypertext* document, RylRunLoop& loop);
    ~HypertextQueues();

    Hypertext* Document() const { return document; }
    RylOperationQueue& AgentQueue() { return *agentQueue; }
    RylOperationQueue& UpdateQueue() { return *updateQueue; }
    RylOperationQueue& EdictQueue() { return *edictQueue; }
    RylRunLoop& Loop() { return loop; }

    bool AgentsAreBusy() const { return agentQueue->OperationCount() > kBusyLimit; }
    // `dispatch:`: a block to the agent queue.
    void Dispatch(std::function<void()> block) { agentQueue->AddOperation(std::move(block)); }
    // The manual update (every agent, then every edict) on the update queue.
    void UpdateAgentsNow();
    // On the loop's thread runs the block at once; elsewhere hands it to the
    // loop and waits up to `seconds`. False when it timed out.
    bool OnMainQueueWithTimeout(double seconds, std::function<void()> block);
    bool IsMainQueue() const;
    // Waiting operations of all three queues.
    long Pending() const;
    // Drops what waits on every queue.
    void CancelAll();

private:
    Hypertext* document;
    RylRunLoop& loop;
    RylOperationQueue::Executor work;
    std::unique_ptr<RylOperationQueue> agentQueue, updateQueue, edictQueue;
};
