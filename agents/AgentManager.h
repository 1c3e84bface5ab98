#pragma once
// The agents of one document: which notes are agents, when each one runs,
// and whether agents may run at all (not while the document is written, not
// while they are switched off for this document or for all of them).
#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "Hypertext.h"

class Agent;
class Node;
class WorkQueue;

class AgentManager : public DocumentPart {
public:
    // Waiting operations beyond which a tick queues nothing.
    static constexpr long kPendingLimit = 5000;
    // Posted on the main thread as each agent of a scheduled update runs,
    // with "name" (the agent's name), "hypertext" (the document), "number"
    // (the agent's place in this update, from 1) and "max" (the agents in
    // it); once more when the update is complete, with the root's name and
    // a "number" and "max" of 0; and, with a "max" of 100, on each tick of a
    // document whose automatic updates are off.
    static constexpr const char* kAgentNotification = "com.morvent.Rylvane.agentWillRun";
    // How long NotifyWhenUpdating stays quiet for notes other than agents.
    static constexpr double kNotificationInterval = 1.0;

    AgentManager(Hypertext* document);
    ~AgentManager() override;

    // The manager of a document, made on first use; null without a document.
    static AgentManager* For(Hypertext* document);

    // All agents of all documents.
    static void EnableAll(bool enable) { sEnabled = enable; }
    static bool Enabled() { return sEnabled; }
    void Enable(bool enable) { enabled = enable; }
    bool IsEnabled() const { return enabled; }
    // Whether agents may run now.
    bool CanRun() const { return sEnabled && enabled && !writing; }

    void WillWrite() { writing = true; }
    void DidWrite() { writing = false; }
    bool IsWriting() const { return writing; }

    // The document's agents in outline order; each agent note gets its
    // Agent the first time it is seen.
    std::vector<Agent*> Agents();
    Agent* AgentFor(Node* note);
    // After the document was read.
    void Loaded();

    // Queues one operation per agent whose AgentPriority is exactly
    // `priority`, and a closing one. Answers how many agents were queued.
    long ScheduleUpdates(WorkQueue& queue, long priority);
    // Every agent once, in place. Answers how many agents changed.
    long UpdateAll();
    // Every agent once, even when this document's agents are switched off.
    long UpdateNow();
    // One agent; answers whether it changed.
    bool Update(Node* note);
    // Forgets the remembered queue.
    void Reset() { lastQueue = nullptr; }

    // Posts the agent notification for one agent of an update.
    void NotifyObservers(Node* agent, long number, long max);
    // Whether an update of this note is worth a notification: always for an
    // agent or a smart adornment; for any other note once, after which it
    // answers false until kNotificationInterval seconds have passed.
    bool NotifyWhenUpdating(Node* note);
    // Posts the notification of a complete update, with the root's name.
    void ResetNotification();
    // Posts the notification of a tick that ran no agent because automatic
    // updates are off.
    void ManualUpdateNotification();

    void SetMaxTimeInterval(double seconds) { maxTimeInterval = seconds; }
    double MaxTimeInterval() const { return maxTimeInterval; }

    // Counts for progress reports: agent passes run, and passes that changed
    // an agent's results.
    long PassesRun() const { return passes.load(); }
    long PassesChanged() const { return changedPasses.load(); }
    // Passes that were skipped, as they could only have found what the
    // agent already held.
    long PassesSkipped() const { return skippedPasses.load(); }

private:
    bool RunAgent(Agent* agent);

    Hypertext* document;
    std::recursive_mutex mutex;
    std::unordered_map<Node*, std::unique_ptr<Agent>> agents;
    // The agents as the last walk of the notes found them, at that change
    // count (0: none).
    std::vector<Agent*> listed;
    uint64_t listedAt = 0;
    std::atomic<bool> enabled{true};
    std::atomic<bool> writing{false};
    double maxTimeInterval = 0.01;
    WorkQueue* lastQueue = nullptr;
    std::atomic<long> passes{0};
    std::atomic<long> changedPasses{0};
    std::atomic<long> skippedPasses{0};
    // When the quiet time of NotifyWhenUpdating ends.
    std::chrono::steady_clock::time_point notificationTimerEnds{};
    bool notificationTimerSet = false;
    static std::atomic<bool> sEnabled;
};

// Switches a document's agents off for a block, and back to what they were.
class StDisableAgents {
public:
    explicit StDisableAgents(Hypertext* document);
    ~StDisableAgents();
    StDisableAgents(const StDisableAgents&) = delete;
    StDisableAgents& operator=(const StDisableAgents&) = delete;

private:
    AgentManager* manager;
    bool was;
};
