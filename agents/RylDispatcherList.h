#pragma once
// The timers that keep an open document alive. Each dispatcher is a
// one-shot timer that, on firing, asks for its kind of work (an agent
// priority, rules, edicts, the error scan) and sets itself again. Work goes
// onto the document's queues; the timers themselves run on the loop's thread.
#include <memory>
#include <string>
#include <vector>

#include "RylRunLoop.h"

class Hypertext;
class HypertextQueues;

class RylDispatcher {
public:
    RylDispatcher(double interval, HypertextQueues& queues);
    virtual ~RylDispatcher();
    RylDispatcher(const RylDispatcher&) = delete;
    RylDispatcher& operator=(const RylDispatcher&) = delete;

    virtual const char* Kind() const = 0;
    double NormalInterval() const { return normalInterval; }
    double BackgroundDelayFactor() const { return backgroundDelayFactor; }
    void SetBackgroundDelayFactor(double f) { backgroundDelayFactor = f; }
    bool Suspended() const { return suspended; }
    void SetSuspended(bool s) { suspended = s; }
    long Fired() const { return fired; }

    // Starts the timer with the first delay.
    void Start();
    void Cancel();
    bool CanRun() const;
    // The timer's work: willRun, perform when it can run, didRun, reschedule.
    void Run();
    // The delay before the next firing.
    double NextDelay() const;

    // Whether the application is in front; behind, short intervals stretch.
    static void SetApplicationActive(bool active);
    static bool ApplicationActive();

protected:
    virtual void Perform() = 0;
    Hypertext* Document() const;

    HypertextQueues& queues;

private:
    void Reschedule();

    double normalInterval;
    double backgroundDelayFactor = 10.0;
    bool suspended = false;
    bool cancelled = false;
    bool timerSet = false;
    RylRunLoop::TimerID timer = 0;
    long fired = 0;
};

class RylAgentDispatcher : public RylDispatcher {
public:
    RylAgentDispatcher(double interval, long priority, HypertextQueues& queues)
        : RylDispatcher(interval, queues), priority(priority) {}
    const char* Kind() const override { return "agent"; }
    long Priority() const { return priority; }

protected:
    void Perform() override;

private:
    long priority;
};

class RylRuleDispatcher : public RylDispatcher {
public:
    using RylDispatcher::RylDispatcher;
    const char* Kind() const override { return "rule"; }

protected:
    void Perform() override;
};

class RylEdictDispatcher : public RylDispatcher {
public:
    using RylDispatcher::RylDispatcher;
    const char* Kind() const override { return "edict"; }

protected:
    void Perform() override;
};

// Exchanging notes with an outside service has no place in this program:
// the dispatcher keeps its slot and its timer and does nothing.
class RylSimplenoteDispatcher : public RylDispatcher {
public:
    using RylDispatcher::RylDispatcher;
    const char* Kind() const override { return "simplenote"; }

protected:
    void Perform() override {}
};

// The periodic error scan: a block on the agent queue. The document keeps
// no error list yet, so the block has nothing to look at.
class RylErrorDispatcher : public RylDispatcher {
public:
    using RylDispatcher::RylDispatcher;
    const char* Kind() const override { return "error"; }

protected:
    void Perform() override;
};

class RylDispatcherList {
public:
    RylDispatcherList() = default;
    ~RylDispatcherList();
    RylDispatcherList(const RylDispatcherList&) = delete;
    RylDispatcherList& operator=(const RylDispatcherList&) = delete;

    // Cancels what runs, then makes and starts the document's nine dispatchers.
    void ForDocument(HypertextQueues& queues);
    void Add(std::unique_ptr<RylDispatcher> dispatcher);
    void Remove(RylDispatcher* dispatcher);
    size_t Count() const { return dispatchers.size(); }
    void Cancel();
    // Suspends the five named dispatchers only; the agent dispatchers of
    // priorities 0, 4, 10 and 20 go on.
    void Suspend();
    void Resume();

    const std::vector<std::unique_ptr<RylDispatcher>>& Dispatchers() const { return dispatchers; }
    RylDispatcher* AgentDispatcher() const { return agentDispatcher; }
    RylDispatcher* RuleDispatcher() const { return ruleDispatcher; }
    RylDispatcher* EdictDispatcher() const { return edictDispatcher; }
    RylDispatcher* SimplenoteDispatcher() const { return simplenoteDispatcher; }
    RylDispatcher* ErrorDispatcher() const { return errorDispatcher; }

private:
    void SetNamedSuspended(bool suspended);

    std::vector<std::unique_ptr<RylDispatcher>> dispatchers;
    RylDispatcher* agentDispatcher = nullptr;
    RylDispatcher* ruleDispatcher = nullptr;
    RylDispatcher* edictDispatcher = nullptr;
    RylDispatcher* simplenoteDispatcher = nullptr;
    RylDispatcher* errorDispatcher = nullptr;
};
