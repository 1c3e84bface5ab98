#pragma once
// A queue of width 1 whose operations start at least `interval` seconds
// apart: after each operation the queue suspends itself, and a timer on the
// loop resumes it.
#include <functional>
#include <memory>

#include "RylOperationQueue.h"
#include "RylRunLoop.h"

class RylThrottledQueue {
public:
    RylThrottledQueue(RylRunLoop& loop, double interval = 3.0);
    ~RylThrottledQueue();

    double Interval() const { return interval; }
    // Adds a block; it runs at the next tick (at once when none has run lately).
    void AddOperationWithBlock(std::function<void()> block);
    // Drops what waits and the timer.
    void Clear();
    long OperationCount() const { return queue->OperationCount(); }

private:
    void StartTimer();
    void Tick();

    RylRunLoop& loop;
    double interval;
    std::unique_ptr<RylOperationQueue> queue;
    bool timerValid = false;
    RylRunLoop::TimerID timer = 0;
};
