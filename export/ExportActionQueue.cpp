#include "ExportActionQueue.h"

#include <deque>
#include <exception>

#include "Action.h"
#include "MatchList.h"
#include "Node.h"

namespace {

struct Waiting {
    Node* note;
    MatchList matches;
    std::string code;
    int generation;
};

struct Queue {
    int depth = 0;
    // The generation of the action running from the queue; -1 when none is.
    int running = -1;
    std::deque<Waiting> waiting;
};

thread_local Queue tQueue;

void Run(Waiting& action) {
    // A note deleted since (by an earlier action) is hidden, not freed:
    // its action no longer runs.
    if (!action.note || action.note->IsHidden())
        return;
    try {
        Action::Do(action.note, action.matches, action.code);
    } catch (const ActionDeletedException&) {
    }
}

}  // namespace

ExportActionQueue::Scope::Scope() { ++tQueue.depth; }

ExportActionQueue::Scope::~Scope() {
    if (tQueue.depth > 1) {
        --tQueue.depth;
        return;
    }
    if (std::uncaught_exceptions() > 0) {
        // The work failed: its actions are dropped with it.
        tQueue.waiting.clear();
        tQueue.depth = 0;
        return;
    }
    // Still inside a scope while they run: what their expansions queue
    // waits behind them.
    while (!tQueue.waiting.empty()) {
        Waiting action = std::move(tQueue.waiting.front());
        tQueue.waiting.pop_front();
        if (action.generation > kMaxGenerations)
            continue;
        tQueue.running = action.generation;
        Run(action);
    }
    tQueue.running = -1;
    tQueue.depth = 0;
}

void ExportActionQueue::Defer(Node* note, const MatchList& matches, const std::string& code) {
    Waiting action{note, matches, code, tQueue.running + 1};
    if (tQueue.depth == 0) {
        Run(action);
        return;
    }
    tQueue.waiting.push_back(std::move(action));
}

size_t ExportActionQueue::Pending() { return tQueue.waiting.size(); }
