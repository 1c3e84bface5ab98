#include "RylDispatcherList.h"

#include <algorithm>
#include <atomic>

#include "AgentManager.h"
#include "Hypertext.h"
#include "HypertextQueues.h"
#include "Log.h"
#include "NodeActions.h"
#include "NodeFacade.h"
#include "RuleManager.h"

namespace {
std::atomic<bool> sApplicationActive{true};
} // namespace

RylDispatcher::RylDispatcher(double interval, HypertextQueues& queues) : queues(queues), normalInterval(interval) {
    if (!queues.IsMainQueue())
        LogLine("RylDispatcher must be initialized on the main thread.");
}

RylDispatcher::~RylDispatcher() { Cancel(); }

void RylDispatcher::SetApplicationActive(bool active) { sApplicationActive = active; }
bool RylDispatcher::ApplicationActive() { return sApplicationActive; }

Hypertext* RylDispatcher::Document() const { return queues.Document(); }

void RylDispatcher::Start() {
    cancelled = false;
    Reschedule();
}

void RylDispatcher::Cancel() {
    cancelled = true;
    if (timerSet)
        queues.Loop().Cancel(timer);
    timerSet = false;
}

bool RylDispatcher::CanRun() const {
    Hypertext* document = Document();
    return !suspended && document && document->IsValid();
}

void RylDispatcher::Run() {
    timerSet = false;
    ++fired;
    if (CanRun())
        Perform();
    Reschedule();
}

double RylDispatcher::NextDelay() const {
    if (!ApplicationActive() && normalInterval <= 300)
        return backgroundDelayFactor * normalInterval;
    return normalInterval;
}

void RylDispatcher::Reschedule() {
    if (cancelled)
        return;
    timer = queues.Loop().Schedule(NextDelay(), [this] { Run(); });
    timerSet = true;
}

void RylAgentDispatcher::Perform() {
    if (queues.AgentsAreBusy())
        return;
    Hypertext* document = Document();
    AgentManager* manager = AgentManager::For(document);
    // With automatic updates off, the tick only keeps containers sorted.
    if (!manager->IsEnabled() || !AgentManager::Enabled()) {
        manager->ManualUpdateNotification();
        HypertextFacade(document).Apply([](Node* note) {
            if (note->SortAttribute())
                NodeActions(note).SortNow();
        });
        return;
    }
    long p = priority;
    HypertextQueues* q = &queues;
    queues.Dispatch([q, document, p] {
        StChanges batch(document);
        AgentManager::For(document)->ScheduleUpdates(q->AgentQueue(), p);
    });
}

void RylRuleDispatcher::Perform() {
    Hypertext* document = Document();
    HypertextQueues* q = &queues;
    queues.Dispatch(
        [q, document] { RuleManager::For(document)->ScheduleRules(RuleManager::kRulesPerTick, q->AgentQueue()); });
}

void RylEdictDispatcher::Perform() {
    Hypertext* document = Document();
    RuleManager* rules = RuleManager::For(document);
    rules->PostDocumentNotification(RuleManager::kEdictsWillRunNotification);
    rules->ScheduleEdicts(queues.EdictQueue());
    queues.EdictQueue().AddOperation([] {}, RuleManager::kQueuePriority);
    rules->PostDocumentNotification(RuleManager::kEdictsDidRunNotification);
}

void RylErrorDispatcher::Perform() {
    queues.Dispatch([] {});
}

RylDispatcherList::~RylDispatcherList() { Cancel(); }

void RylDispatcherList::ForDocument(HypertextQueues& queues) {
    Cancel();
    struct AgentTimer {
        double interval;
        long priority;
    };
    const AgentTimer agentTimers[] = {{5, 0}, {11, 1}, {61, 4}, {307, 10}, {1801, 20}};
    for (const AgentTimer& t : agentTimers) {
        auto dispatcher = std::make_unique<RylAgentDispatcher>(t.interval, t.priority, queues);
        if (t.priority == 1)
            agentDispatcher = dispatcher.get();
        Add(std::move(dispatcher));
    }
    auto rules = std::make_unique<RylRuleDispatcher>(1, queues);
    rules->SetBackgroundDelayFactor(10.0);
    ruleDispatcher = rules.get();
    Add(std::move(rules));
    auto edicts = std::make_unique<RylEdictDispatcher>(3600, queues);
    edictDispatcher = edicts.get();
    Add(std::move(edicts));
    auto simplenote = std::make_unique<RylSimplenoteDispatcher>(6, queues);
    simplenoteDispatcher = simplenote.get();
    Add(std::move(simplenote));
    auto errors = std::make_unique<RylErrorDispatcher>(5, queues);
    errorDispatcher = errors.get();
    Add(std::move(errors));
    for (auto& d : dispatchers)
        d->Start();
}

void RylDispatcherList::Add(std::unique_ptr<RylDispatcher> dispatcher) {
    if (dispatcher)
        dispatchers.push_back(std::move(dispatcher));
}

void RylDispatcherList::Remove(RylDispatcher* dispatcher) {
    for (RylDispatcher** named :
         {&agentDispatcher, &ruleDispatcher, &edictDispatcher, &simplenoteDispatcher, &errorDispatcher}) {
        if (*named == dispatcher)
            *named = nullptr;
    }
    dispatchers.erase(std::remove_if(dispatchers.begin(), dispatchers.end(),
                                     [dispatcher](const auto& d) { return d.get() == dispatcher; }),
                      dispatchers.end());
}

void RylDispatcherList::Cancel() {
    for (auto& d : dispatchers)
        d->Cancel();
    dispatchers.clear();
    agentDispatcher = ruleDispatcher = edictDispatcher = simplenoteDispatcher = errorDispatcher = nullptr;
}

void RylDispatcherList::SetNamedSuspended(bool suspended) {
    for (RylDispatcher* d : {agentDispatcher, ruleDispatcher, edictDispatcher, simplenoteDispatcher, errorDispatcher}) {
        if (d)
            d->SetSuspended(suspended);
    }
}

void RylDispatcherList::Suspend() { SetNamedSuspended(true); }
void RylDispatcherList::Resume() { SetNamedSuspended(false); }
