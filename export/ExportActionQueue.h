#pragma once
// The actions that templates meet (^action(code)^) do not run while a page
// expands: each is queued with its note and match list, and the queue runs
// once the work that met them is over (a whole export, or one expansion
// outside an export), in the order they were met. The document's agent queue
// is serial and the export runs on it, so an action handed to it runs after
// the export in just this way: no page reads what another page's action
// changed, and the pages do not depend on the order of the walk.
#include <cstddef>
#include <string>

class MatchList;
class Node;

class ExportActionQueue {
public:
    // An action run from the queue may expand templates that queue more:
    // those run after it, up to this many generations, so that actions that
    // queue themselves without end stop.
    static constexpr int kMaxGenerations = 20;

    // Brackets the work whose actions wait: the outermost scope on a thread
    // runs them when it closes.
    class Scope {
    public:
        Scope();
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
    };

    // Queues `code` to run on `note` with a copy of `matches`; with no scope
    // open it runs at once.
    static void Defer(Node* note, const MatchList& matches, const std::string& code);
    // Actions waiting on this thread.
    static size_t Pending();
};
