#pragma once
// The running loop of a document: one Boost.Asio io_context, run by one
// thread, on which the timers fire and the document's queues run their
// operations. Its clock is either the real one (steady_timer) or a simulated
// one, which jumps to the next timer as soon as nothing else is ready, so
// that an hour of ticks takes as long as the work they do.
#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <thread>
#include <unordered_map>

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

class RylRunLoop {
public:
    explicit RylRunLoop(bool simulated);
    ~RylRunLoop();
    RylRunLoop(const RylRunLoop&) = delete;
    RylRunLoop& operator=(const RylRunLoop&) = delete;

    boost::asio::io_context& Context() { return context; }
    bool Simulated() const { return simulated; }
    // Seconds since the loop was made, on its clock.
    double Now() const;

    using TimerID = uint64_t;
    // Runs the block once, `seconds` from now, on the loop's thread.
    TimerID Schedule(double seconds, std::function<void()> block);
    void Cancel(TimerID id);

    // Runs until `seconds` have passed on the loop's clock, or Stop. The
    // thread that calls it is the loop's thread.
    void RunFor(double seconds);
    // Ends RunFor soon; safe from any thread and from a signal handler's
    // handler (it only sets a flag and wakes the loop).
    void Stop();
    bool Stopped() const { return stopping.load(); }
    // Whether the caller runs on the loop's thread.
    bool IsLoopThread() const { return std::this_thread::get_id() == loopThread.load(); }

private:
    // Runs every handler that is ready; answers how many ran.
    size_t Poll();

    bool simulated;
    boost::asio::io_context context;
    std::chrono::steady_clock::time_point start;
    std::atomic<bool> stopping{false};
    std::atomic<std::thread::id> loopThread;
    TimerID nextID = 1;
    // The simulated clock and its timers, by due time.
    double simulatedNow = 0;
    std::multimap<double, std::pair<TimerID, std::function<void()>>> simulatedTimers;
    // The real clock's timers.
    std::unordered_map<TimerID, std::shared_ptr<boost::asio::steady_timer>> realTimers;
};
