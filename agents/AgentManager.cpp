#include "AgentManager.h"

#include <unordered_set>

#include "ActionPool.h"
#include "Agent.h"
#include "Log.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeID.h"
#include "NodeIndex.h"
#include "NotificationCenter.h"
#include "WorkQueue.h"

std::atomic<bool> AgentManager::sEnabled{true};

AgentManager::AgentManager(Hypertext* document) : document(document) {}

AgentManager::~AgentManager() = default;

AgentManager* AgentManager::For(Hypertext* document) {
    if (!document)
        return nullptr;
    return static_cast<AgentManager*>(
        document->Part("AgentManager", [document] { return std::make_unique<AgentManager>(document); }));
}

std::vector<Agent*> AgentManager::Agents() {
    std::lock_guard<std::recursive_mutex> guard(mutex);
    // Which notes are agents changes only with the notes: while the
    // document's change count stands still, the last walk's list holds (a
    // tick of a large settled document then walks no notes at all).
    uint64_t changeCount = document->ChangeCount();
    if (listedAt == changeCount)
        return listed;
    std::vector<Agent*> list;
    std::unordered_set<Node*> seen;
    HypertextFacade(document).Apply([&](Node* note) {
        if (!Agent::IsAgentNote(note))
            return;
        seen.insert(note);
        list.push_back(AgentFor(note));
    });
    // Agents whose notes are gone (or are agents no more) are forgotten
    // without touching their notes.
    for (auto it = agents.begin(); it != agents.end();) {
        if (seen.count(it->first))
            ++it;
        else
            it = agents.erase(it);
    }
    listed = list;
    listedAt = changeCount;
    return list;
}

Agent* AgentManager::AgentFor(Node* note) {
    if (!note)
        return nullptr;
    std::lock_guard<std::recursive_mutex> guard(mutex);
    auto& slot = agents[note];
    // A note made where a deleted agent's note was gets an agent of its own.
    if (!slot || slot->NoteID() != note->GetID().GetID()) {
        // The agent the slot held may be in the listed agents.
        listedAt = 0;
        slot = std::make_unique<Agent>(note);
        slot->Loaded();
    }
    return slot.get();
}

void AgentManager::Loaded() {
    for (Agent* agent : Agents())
        agent->Loaded();
}

bool AgentManager::RunAgent(Agent* agent) {
    ++passes;
    bool changed = agent->Do(false);
    if (changed)
        ++changedPasses;
    if (agent->LastPassSkipped())
        ++skippedPasses;
    return changed;
}

namespace {

Notification AgentNotification(Hypertext* document, const std::string& name, long number, long max) {
    Notification n;
    n.name = AgentManager::kAgentNotification;
    n.object = document;
    n.userInfo["name"] = name;
    n.userInfo["hypertext"] = static_cast<const void*>(document);
    n.userInfo["number"] = number;
    n.userInfo["max"] = max;
    return n;
}

} // namespace

void AgentManager::NotifyObservers(Node* agent, long number, long max) {
    if (!agent)
        return;
    NotificationCenter::Default().Post(AgentNotification(document, agent->Name(), number, max));
}

bool AgentManager::NotifyWhenUpdating(Node* note) {
    if (!note)
        return false;
    if (Agent::IsAgentNote(note) || NodeFacade(note).IsSmartAdornment())
        return true;
    std::lock_guard<std::recursive_mutex> guard(mutex);
    auto now = std::chrono::steady_clock::now();
    if (notificationTimerSet && now < notificationTimerEnds)
        return false;
    notificationTimerSet = true;
    notificationTimerEnds = now + std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                                      std::chrono::duration<double>(kNotificationInterval));
    return true;
}

void AgentManager::ResetNotification() {
    Node* root = document ? document->Root() : nullptr;
    NotificationCenter::Default().Post(AgentNotification(document, root ? root->Name() : std::string(), 0, 0));
}

void AgentManager::ManualUpdateNotification() {
    Node* root = document ? document->Root() : nullptr;
    NotificationCenter::Default().Post(AgentNotification(document, root ? root->Name() : std::string(), 0, 100));
}

long AgentManager::ScheduleUpdates(WorkQueue& queue, long priority) {
    if (!CanRun())
        return 0;
    lastQueue = &queue;
    if (queue.OperationCount() > kPendingLimit) {
        LogFormat("Agent queue pending: %ld", queue.OperationCount());
        return 0;
    }
    std::vector<uint32_t> ids;
    for (Agent* agent : Agents()) {
        if (agent->Priority() == priority)
            ids.push_back(agent->NoteID());
    }
    long queued = 0;
    long max = static_cast<long>(ids.size());
    for (uint32_t id : ids) {
        long number = ++queued;
        queue.AddOperation([this, id, number, max] {
            if (!CanRun() || document->IsClosing())
                return;
            // The agent may have been deleted since it was queued.
            Node* note = document->GetIndex() ? document->GetIndex()->Find(id) : nullptr;
            if (!note || !Agent::IsAgentNote(note))
                return;
            {
                StChanges batch(document);
                RunAgent(AgentFor(note));
            }
            // The agent's action may have deleted the agent.
            if (document->GetIndex() && document->GetIndex()->Find(id) == note)
                NotifyObservers(note, number, max);
        });
    }
    queue.AddOperation([this] {
        if (ActionPool* pool = ActionPool::For(document))
            pool->Cleanup();
        ResetNotification();
    });
    return queued;
}

long AgentManager::UpdateAll() {
    if (!CanRun())
        return 0;
    long changed = 0;
    StChanges batch(document);
    for (Agent* agent : Agents()) {
        if (document->IsClosing())
            break;
        if (RunAgent(agent))
            ++changed;
    }
    if (ActionPool* pool = ActionPool::For(document))
        pool->Cleanup();
    return changed;
}

long AgentManager::UpdateNow() {
    document->UpdateOutlineOrder();
    bool was = enabled;
    enabled = true;
    long changed = UpdateAll();
    enabled = was;
    return changed;
}

bool AgentManager::Update(Node* note) {
    if (!CanRun() || !Agent::IsAgentNote(note))
        return false;
    StChanges batch(document);
    bool changed = RunAgent(AgentFor(note));
    if (changed)
        note->AddChange(2);
    return changed;
}

StDisableAgents::StDisableAgents(Hypertext* document) : manager(AgentManager::For(document)) {
    was = manager && manager->IsEnabled();
    if (manager)
        manager->Enable(false);
}

StDisableAgents::~StDisableAgents() {
    if (manager)
        manager->Enable(was);
}
