#include "RylThrottledQueue.h"

#include <boost/asio/strand.hpp>

RylThrottledQueue::RylThrottledQueue(RylRunLoop& loop, double interval)
    : loop(loop), interval(interval),
      queue(std::make_unique<RylOperationQueue>("Throttled", boost::asio::make_strand(loop.Context()))) {}

RylThrottledQueue::~RylThrottledQueue() { Clear(); }

void RylThrottledQueue::AddOperationWithBlock(std::function<void()> block) {
    RylOperationQueue* q = queue.get();
    queue->AddOperation([q, block = std::move(block)] {
        block();
        // The next one waits for the tick.
        q->SetSuspended(true);
    });
    if (!timerValid)
        StartTimer();
}

void RylThrottledQueue::StartTimer() {
    timerValid = true;
    timer = loop.Schedule(interval, [this] { Tick(); });
}

void RylThrottledQueue::Tick() {
    timerValid = false;
    queue->SetSuspended(false);
    if (queue->OperationCount() > 0)
        StartTimer();
}

void RylThrottledQueue::Clear() {
    if (timerValid)
        loop.Cancel(timer);
    timerValid = false;
    queue->CancelAllOperations();
    queue->SetSuspended(false);
}
