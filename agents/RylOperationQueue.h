#pragma once
// A queue of operations of width 1 on a serial executor: operations run one
// at a time, the waiting operation of highest priority first (in the order
// added among equals). Queues that share one executor (a strand) never run
// at the same time as each other.
#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <string>

#include <boost/asio/io_context.hpp>
#include <boost/asio/strand.hpp>

#include "WorkQueue.h"

class RylOperationQueue : public WorkQueue {
public:
    using Executor = boost::asio::strand<boost::asio::io_context::executor_type>;

    RylOperationQueue(std::string name, Executor executor);
    ~RylOperationQueue() override;

    const std::string& Name() const { return name; }
    void AddOperation(std::function<void()> block, int priority = 0) override;
    // Waiting operations, and the one running.
    long OperationCount() const override;
    // Drops the operations that have not started.
    void CancelAllOperations();
    // A suspended queue starts no operation until resumed.
    void SetSuspended(bool suspended);
    bool IsSuspended() const { return suspended.load(); }

private:
    void Pump();
    void PostPump();

    std::string name;
    Executor executor;
    mutable std::mutex mutex;
    // By priority (highest first), then by order of arrival.
    std::map<std::pair<int, uint64_t>, std::function<void()>> waiting;
    uint64_t sequence = 0;
    bool pumpPosted = false;
    bool running = false;
    std::atomic<bool> suspended{false};
    // Pumps posted but not yet run hold the queue alive through this flag.
    std::shared_ptr<std::atomic<bool>> alive;
};
