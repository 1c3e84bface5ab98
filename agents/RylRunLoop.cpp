#include "RylRunLoop.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/post.hpp>

RylRunLoop::RylRunLoop(bool simulated) : simulated(simulated), start(std::chrono::steady_clock::now()) {
    loopThread = std::this_thread::get_id();
}

RylRunLoop::~RylRunLoop() {
    for (auto& [id, timer] : realTimers)
        timer->cancel();
}

double RylRunLoop::Now() const {
    if (simulated)
        return simulatedNow;
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

RylRunLoop::TimerID RylRunLoop::Schedule(double seconds, std::function<void()> block) {
    TimerID id = nextID++;
    if (seconds < 0)
        seconds = 0;
    if (simulated) {
        simulatedTimers.emplace(simulatedNow + seconds, std::make_pair(id, std::move(block)));
        return id;
    }
    // The clock counts nanoseconds in 64 bits: a wait of "forever" (a run
    // without --for) is held to about thirty years, which it never reaches.
    constexpr double kLongestWait = 1e9;
    if (!(seconds < kLongestWait))
        seconds = kLongestWait;
    auto timer = std::make_shared<boost::asio::steady_timer>(
        context, std::chrono::duration_cast<std::chrono::steady_clock::duration>(std::chrono::duration<double>(seconds)));
    realTimers[id] = timer;
    timer->async_wait([this, id, block = std::move(block)](const boost::system::error_code& error) {
        realTimers.erase(id);
        if (!error && !stopping)
            block();
    });
    return id;
}

void RylRunLoop::Cancel(TimerID id) {
    if (simulated) {
        for (auto it = simulatedTimers.begin(); it != simulatedTimers.end(); ++it) {
            if (it->second.first == id) {
                simulatedTimers.erase(it);
                return;
            }
        }
        return;
    }
    auto it = realTimers.find(id);
    if (it != realTimers.end())
        it->second->cancel();
}

size_t RylRunLoop::Poll() {
    if (context.stopped())
        context.restart();
    return context.poll();
}

void RylRunLoop::RunFor(double seconds) {
    loopThread = std::this_thread::get_id();
    double end = Now() + seconds;
    if (simulated) {
        while (!stopping) {
            // Everything ready runs before the clock moves.
            while (!stopping && Poll() > 0) {
            }
            if (stopping || simulatedTimers.empty())
                break;
            auto first = simulatedTimers.begin();
            if (first->first > end)
                break;
            simulatedNow = std::max(simulatedNow, first->first);
            std::function<void()> block = std::move(first->second.second);
            simulatedTimers.erase(first);
            block();
        }
        if (!stopping)
            simulatedNow = std::max(simulatedNow, end);
        return;
    }
    auto guard = boost::asio::make_work_guard(context);
    TimerID endTimer = Schedule(seconds, [this] { context.stop(); });
    if (context.stopped())
        context.restart();
    while (!stopping && !context.stopped())
        context.run_one();
    Cancel(endTimer);
    // Cancelled timers' handlers run, so that none is left holding the loop.
    guard.reset();
    context.restart();
    context.poll();
}

void RylRunLoop::Stop() {
    stopping = true;
    context.stop();
}
