#include "Change.h"

#include <algorithm>

void Change::Changed(Node* node, unsigned long mask) {
    if (!node || mask == 0 || !hasListeners.load(std::memory_order_relaxed))
        return;
    {
        std::lock_guard<std::recursive_mutex> guard(mutex);
        if (stopped)
            return;
        auto [it, fresh] = pending.emplace(node, 0);
        if (fresh)
            order.push_back(node);
        it->second |= mask;
        if (holds > 0)
            return;
    }
    Flush();
}

void Change::Forget(Node* node) {
    std::lock_guard<std::recursive_mutex> guard(mutex);
    pending.erase(node);
    order.erase(std::remove(order.begin(), order.end(), node), order.end());
}

void Change::Hold() {
    std::lock_guard<std::recursive_mutex> guard(mutex);
    ++holds;
}

void Change::Release() {
    bool deliver = false;
    {
        std::lock_guard<std::recursive_mutex> guard(mutex);
        if (holds > 0)
            --holds;
        deliver = holds == 0;
    }
    if (deliver)
        Flush();
}

void Change::Flush() {
    Batch batch;
    std::vector<Listener> to;
    {
        std::lock_guard<std::recursive_mutex> guard(mutex);
        if (pending.empty())
            return;
        for (Node* n : order)
            batch.emplace_back(n, pending[n]);
        pending.clear();
        order.clear();
        to = listeners;
    }
    for (auto& l : to)
        l(batch);
}

void Change::Stop() {
    std::lock_guard<std::recursive_mutex> guard(mutex);
    stopped = true;
    pending.clear();
    order.clear();
}

void Change::AddListener(Listener listener) {
    std::lock_guard<std::recursive_mutex> guard(mutex);
    listeners.push_back(std::move(listener));
    hasListeners = true;
}

unsigned long Change::Pending(const Node* node) const {
    std::lock_guard<std::recursive_mutex> guard(mutex);
    auto it = pending.find(const_cast<Node*>(node));
    return it == pending.end() ? 0 : it->second;
}

