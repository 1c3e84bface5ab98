#include "RylRateLimiter.h"

RylRateLimiter::RylRateLimiter(RylRunLoop& loop, std::function<void()> run, double interval)
    : loop(loop), view(std::move(run)), interval(interval) {}

RylRateLimiter::~RylRateLimiter() { Cancel(); }

bool RylRateLimiter::InProgress() {
    if (timerValid) {
        needsUpdate = true;
        return true;
    }
    return false;
}

void RylRateLimiter::Limit() {
    if (timerValid)
        return;
    timerValid = true;
    // Each timer carries its generation, so that a stale tick is ignored.
    unsigned long mine = ++generation;
    timer = loop.Schedule(interval, [this, mine] { Tick(mine); });
}

void RylRateLimiter::Tick(unsigned long which) {
    if (!timerValid || which != generation)
        return;
    timerValid = false;
    if (needsUpdate) {
        needsUpdate = false;
        if (view)
            Run();
        Limit();
    }
}

void RylRateLimiter::Run() { view(); }

void RylRateLimiter::Cancel() {
    if (timerValid)
        loop.Cancel(timer);
    timerValid = false;
    needsUpdate = false;
    view = nullptr;
}
