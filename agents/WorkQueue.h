#pragma once
// A serial queue of operations, as the agent manager and the rule manager
// see it: blocks added with a priority (higher runs first among waiting
// ones) and a count of what waits.
#include <functional>

class WorkQueue {
public:
    virtual ~WorkQueue() = default;
    virtual void AddOperation(std::function<void()> block, int priority = 0) = 0;
    virtual long OperationCount() const = 0;
};
