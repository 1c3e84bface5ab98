#pragma once
// Coalesces updates of a view to at most one per `interval` (four a second
// by default). The caller asks InProgress first: false means it updates now
// and calls Limit; true means the update is remembered and made at the tick.
#include <functional>

#include "RylRunLoop.h"

class RylRateLimiter {
public:
    // `run` is the view's update; an empty function stands for no view.
    RylRateLimiter(RylRunLoop& loop, std::function<void()> run, double interval = 0.25);
    virtual ~RylRateLimiter();

    bool InProgress();
    void Limit();
    void Cancel();
    bool NeedsUpdate() const { return needsUpdate; }

protected:
    virtual void Run();

private:
    void Tick(unsigned long which);

    RylRunLoop& loop;
    std::function<void()> view;
    double interval;
    bool needsUpdate = false;
    bool timerValid = false;
    RylRunLoop::TimerID timer = 0;
    unsigned long generation = 0;
};
