#pragma once
// Compiled actions waiting to be destroyed. An action compiled from a value
// may still be running (on another thread, or further up this one: a rule
// that rewrites its own text) when the value dies, so the value hands the
// action to its document's pool instead of destroying it. The pool destroys
// what it holds once it holds kCleanupSize actions or more, keeping any that
// are still running, and everything when the document ends.
#include <memory>
#include <mutex>
#include <vector>

#include "Hypertext.h"

class Action;

class ActionPool : public DocumentPart {
public:
    static constexpr size_t kCleanupSize = 5000;

    ActionPool() = default;
    ~ActionPool() override;

    // The pool of a document, made on first use; null without a document.
    static ActionPool* For(Hypertext* document);
    // Where actions of values that belong to no document go.
    static ActionPool& Orphans();

    // Takes the action; null is ignored.
    void Add(Action* action);
    // Destroys the held actions that are not running, once there are
    // kCleanupSize or more.
    void Cleanup();
    size_t Size() const;

private:
    mutable std::mutex mutex;
    std::vector<std::unique_ptr<Action>> actions;
};
