#pragma once
// Deferred release of values. A document hands every value it replaces to its
// pool instead of deleting it, because another thread may still be reading a
// value it borrowed; the pool releases the values when it is drained, at a
// point where no borrowed value is in use any more.
#include <memory>
#include <mutex>
#include <vector>

#include "RylSerial.h"

class Value;

class ValueRecyclingPool {
public:
    ValueRecyclingPool();
    ~ValueRecyclingPool();
    ValueRecyclingPool(const ValueRecyclingPool&) = delete;
    ValueRecyclingPool& operator=(const ValueRecyclingPool&) = delete;

    // Takes over one reference; null is ignored.
    void Add(const Value* value);
    // The number of values waiting.
    size_t PoolSize();
    // Drains when 1000 or more values wait.
    void DrainIfNeeded();
    // Swaps in an empty list and releases the old one's values (on the main
    // thread when a runner for it is installed in the value hooks).
    void Drain();

    static constexpr size_t kDrainThreshold = 1000;

private:
    RylSerial queue;
    std::vector<const Value*> pool;
};
