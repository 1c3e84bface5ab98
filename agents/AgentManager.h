#pragma once
// The agents of one document: which notes are agents, when each one runs,
// and whether agents may run at all (not while the document is written, not
// while they are switched off for this document or for all of them).
#include <atomic>
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

    void SetMaxTimeInterval(double seconds) { maxTimeInterval = seconds; }
    double MaxTimeInterval() const { return maxTimeInterval; }

    // Counts for progress reports: agent passes run, and passes that changed
    // an agent's results.
    long PassesRun() const { return passes.load(); }
    long PassesChanged() const { return changedPasses.load(); }

private:
    bool RunAgent(Agent* agent);

    Hypertext* document;
    std::recursive_mutex mutex;
    std::unordered_map<Node*, std::unique_ptr<Agent>> agents;
    std::atomic<bool> enabled{true};
    std::atomic<bool> writing{false};
    double maxTimeInterval = 0.01;
    WorkQueue* lastQueue = nullptr;
    std::atomic<long> passes{0};
    std::atomic<long> changedPasses{0};
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
