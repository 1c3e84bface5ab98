#include "ValueRecyclingPool.h"

#include "Value.h"
#include "Hooks.h"

ValueRecyclingPool::ValueRecyclingPool() : queue("com.morvent.rylvane.valueRecyclingPool") {}

ValueRecyclingPool::~ValueRecyclingPool() {
    std::vector<const Value*> old;
    queue.Sync([&] { old.swap(pool); });
    for (const Value* value : old) value->Release();
}

void ValueRecyclingPool::Add(const Value* value) {
    if (!value) return;
    queue.Sync([&] { pool.push_back(value); });
}

size_t ValueRecyclingPool::PoolSize() {
    return queue.Sync([&] { return pool.size(); });
}

void ValueRecyclingPool::DrainIfNeeded() {
    if (PoolSize() >= kDrainThreshold) Drain();
}

void ValueRecyclingPool::Drain() {
    auto old = std::make_shared<std::vector<const Value*>>();
    queue.Sync([&] { old->swap(pool); });
    if (old->empty()) return;
    auto release = [old] {
        for (const Value* value : *old) value->Release();
    };
    const Hooks& hooks = GetHooks();
    if (hooks.runOnMainThread) {
        hooks.runOnMainThread(release);
    } else {
        release();
    }
}
