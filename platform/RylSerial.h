#pragma once
// Serial executors, object locks and operation queues.
//
// A RylSerial is a labelled serial queue. Its synchronous call runs the block on
// the calling thread while holding the queue's recursive lock, so blocks never
// overlap and a block may call back into its own queue. Asynchronous blocks run
// on a shared Boost.Asio pool, serialised through a strand and the same lock.
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include <boost/asio/io_context.hpp>
#include <boost/asio/strand.hpp>

// The process-wide pool that runs asynchronous blocks.
boost::asio::io_context& RylBackgroundContext();

class RylSerial {
public:
    explicit RylSerial(std::string label);
    RylSerial(const RylSerial&) = delete;
    RylSerial& operator=(const RylSerial&) = delete;

    const std::string& Label() const { return label; }

    template <typename F>
    decltype(auto) Sync(F&& block) {
        std::lock_guard<std::recursive_mutex> guard(lock);
        return block();
    }

    // Queues the block; it runs later, after every block queued before it.
    void Async(std::function<void()> block);

    // Waits until every block queued so far has run.
    void Drain();

private:
    std::string label;
    std::recursive_mutex lock;
    boost::asio::strand<boost::asio::io_context::executor_type> strand;
    std::atomic<long> pending{0};
};

// The lock a note or other model object holds: a recursive mutex.
using ObjectLock = std::recursive_mutex;
using StObjectLock = std::lock_guard<std::recursive_mutex>;

// A counter that any thread may read while the main thread writes it.
class RylThreadSafeCount {
public:
    RylThreadSafeCount(long v = 0) : value(v) {}
    RylThreadSafeCount(const RylThreadSafeCount& other) : value(other.Get()) {}
    RylThreadSafeCount& operator=(const RylThreadSafeCount& other) {
        value.store(other.Get());
        return *this;
    }
    long Get() const { return value.load(std::memory_order_relaxed); }
    void Set(long v) { value.store(v, std::memory_order_relaxed); }

private:
    std::atomic<long> value;
};

// An operation queue that runs at most `width` blocks at once. Threads are
// made only when the first operation arrives.
class OperationQueue {
public:
    OperationQueue(std::string name, int width);
    ~OperationQueue();
    OperationQueue(const OperationQueue&) = delete;
    OperationQueue& operator=(const OperationQueue&) = delete;

    const std::string& Name() const { return name; }
    int MaxConcurrentOperationCount() const { return width; }

    // Higher priorities run first among waiting operations.
    void AddOperation(std::function<void()> block, int priority = 0);
    // Drops the operations that have not started yet.
    void CancelAllOperations();
    void WaitUntilAllOperationsAreFinished();
    long OperationCount() const;
    bool IsCancelled() const { return cancelled.load(); }

private:
    struct Impl;
    std::string name;
    int width;
    std::atomic<bool> cancelled{false};
    std::unique_ptr<Impl> impl;
};
