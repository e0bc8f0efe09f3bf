#pragma once

#include "platform/Timer.h"

#include <QList>

namespace velmora {

// A timer that ticks only when told: for scripts and tests, where time
// moves by hand.
class ManualTimer : public Timer {
public:
    void setInterval(int milliseconds) override { ms = milliseconds; }
    int interval() const override { return ms; }
    void setEnabled(bool on) override { enabled = on; }
    bool isEnabled() const override { return enabled; }
    void setHandler(std::function<void()> handler) override { onTick = std::move(handler); }
    // One tick, if the timer is on and no tick of it is being handled.
    void fire();

    int ms = 0;
    bool enabled = false;
    std::function<void()> onTick;

private:
    bool ticking = false;
};

class ManualTimerFactory : public TimerFactory {
public:
    std::unique_ptr<Timer> create() override { return std::make_unique<ManualTimer>(); }
};

} // namespace velmora
