#include "RylOperationQueue.h"

#include <boost/asio/post.hpp>

RylOperationQueue::RylOperationQueue(std::string name, Executor executor)
    : name(std::move(name)), executor(std::move(executor)), alive(std::make_shared<std::atomic<bool>>(true)) {}

RylOperationQueue::~RylOperationQueue() { *alive = false; }

void RylOperationQueue::AddOperation(std::function<void()> block, int priority) {
    {
        std::lock_guard<std::mutex> guard(mutex);
        waiting.emplace(std::make_pair(-priority, sequence++), std::move(block));
    }
    PostPump();
}

long RylOperationQueue::OperationCount() const {
    std::lock_guard<std::mutex> guard(mutex);
    return long(waiting.size()) + (running ? 1 : 0);
}

void RylOperationQueue::CancelAllOperations() {
    std::lock_guard<std::mutex> guard(mutex);
    waiting.clear();
}

void RylOperationQueue::SetSuspended(bool s) {
    suspended = s;
    if (!s)
        PostPump();
}

void RylOperationQueue::PostPump() {
    {
        std::lock_guard<std::mutex> guard(mutex);
        if (pumpPosted || running || waiting.empty() || suspended)
            return;
        pumpPosted = true;
    }
    auto flag = alive;
    boost::asio::post(executor, [this, flag] {
        if (*flag)
            Pump();
    });
}

void RylOperationQueue::Pump() {
    std::function<void()> block;
    {
        std::lock_guard<std::mutex> guard(mutex);
        pumpPosted = false;
        if (waiting.empty() || suspended)
            return;
        auto first = waiting.begin();
        block = std::move(first->second);
        waiting.erase(first);
        running = true;
    }
    block();
    {
        std::lock_guard<std::mutex> guard(mutex);
        running = false;
    }
    PostPump();
}
