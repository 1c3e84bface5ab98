#include "RylSerial.h"

#include <condition_variable>
#include <map>
#include <thread>
#include <vector>

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/post.hpp>

namespace {

struct Background {
    boost::asio::io_context context;
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> work{context.get_executor()};
    std::vector<std::thread> threads;
    Background() {
        for (int i = 0; i < 2; ++i)
            threads.emplace_back([this] { context.run(); });
    }
    ~Background() {
        work.reset();
        context.stop();
        for (auto& t : threads)
            t.join();
    }
};

} // namespace

boost::asio::io_context& RylBackgroundContext() {
    static Background background;
    return background.context;
}

RylSerial::RylSerial(std::string l)
    : label(std::move(l)), strand(boost::asio::make_strand(RylBackgroundContext())) {}

void RylSerial::Async(std::function<void()> block) {
    ++pending;
    boost::asio::post(strand, [this, block = std::move(block)] {
        {
            std::lock_guard<std::recursive_mutex> guard(lock);
            block();
        }
        --pending;
    });
}

void RylSerial::Drain() {
    while (pending.load() > 0)
        std::this_thread::yield();
}

struct OperationQueue::Impl {
    std::mutex mutex;
    std::condition_variable changed;
    std::multimap<int, std::function<void()>, std::greater<int>> waiting;
    std::vector<std::thread> threads;
    long running = 0;
    bool stopping = false;

    void Worker() {
        std::unique_lock<std::mutex> lock(mutex);
        for (;;) {
            changed.wait(lock, [this] { return stopping || !waiting.empty(); });
            if (waiting.empty() && stopping)
                return;
            auto it = waiting.begin();
            auto block = std::move(it->second);
            waiting.erase(it);
            ++running;
            lock.unlock();
            block();
            lock.lock();
            --running;
            changed.notify_all();
        }
    }
};

OperationQueue::OperationQueue(std::string n, int w) : name(std::move(n)), width(w < 1 ? 1 : w), impl(new Impl) {}

OperationQueue::~OperationQueue() {
    {
        std::lock_guard<std::mutex> lock(impl->mutex);
        impl->waiting.clear();
        impl->stopping = true;
    }
    impl->changed.notify_all();
    for (auto& t : impl->threads)
        t.join();
}

void OperationQueue::AddOperation(std::function<void()> block, int priority) {
    std::lock_guard<std::mutex> lock(impl->mutex);
    if (impl->stopping)
        return;
    cancelled = false;
    impl->waiting.emplace(priority, std::move(block));
    if (static_cast<int>(impl->threads.size()) < width)
        impl->threads.emplace_back([this] { impl->Worker(); });
    impl->changed.notify_one();
}

void OperationQueue::CancelAllOperations() {
    std::lock_guard<std::mutex> lock(impl->mutex);
    cancelled = true;
    impl->waiting.clear();
    impl->changed.notify_all();
}

void OperationQueue::WaitUntilAllOperationsAreFinished() {
    std::unique_lock<std::mutex> lock(impl->mutex);
    impl->changed.wait(lock, [this] { return impl->waiting.empty() && impl->running == 0; });
}

long OperationQueue::OperationCount() const {
    std::lock_guard<std::mutex> lock(impl->mutex);
    return static_cast<long>(impl->waiting.size()) + impl->running;
}
