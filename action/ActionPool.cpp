#include "ActionPool.h"

#include "Action.h"

namespace {

bool IsRunning(const Action& action) {
    auto* agentAction = dynamic_cast<const AgentAction*>(&action);
    return agentAction && agentAction->IsRunning();
}

}  // namespace

ActionPool::~ActionPool() = default;

ActionPool* ActionPool::For(Hypertext* document) {
    if (!document)
        return nullptr;
    return static_cast<ActionPool*>(
        document->Part("ActionPool", [] { return std::make_unique<ActionPool>(); }));
}

ActionPool& ActionPool::Orphans() {
    // Lives for the whole run: values of no document may die at any time.
    static ActionPool* pool = new ActionPool();
    return *pool;
}

void ActionPool::Add(Action* action) {
    if (!action)
        return;
    {
        std::lock_guard<std::mutex> guard(mutex);
        actions.emplace_back(action);
    }
    Cleanup();
}

void ActionPool::Cleanup() {
    std::vector<std::unique_ptr<Action>> retired;
    {
        std::lock_guard<std::mutex> guard(mutex);
        if (actions.size() < kCleanupSize)
            return;
        std::vector<std::unique_ptr<Action>> kept;
        for (auto& action : actions) {
            if (IsRunning(*action))
                kept.push_back(std::move(action));
            else
                retired.push_back(std::move(action));
        }
        actions.swap(kept);
    }
    // Destroyed outside the lock: destroying an action may end values that
    // hand further actions to this pool.
    retired.clear();
}

size_t ActionPool::Size() const {
    std::lock_guard<std::mutex> guard(mutex);
    return actions.size();
}
