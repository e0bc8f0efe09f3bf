#pragma once

#include "platform/Timer.h"

#include <QList>

namespace velmora {

// A timer that ticks only when the test says so.
class ManualTimer : public Timer {
public:
    void setInterval(int milliseconds) override { ms = milliseconds; }
    int interval() const override { return ms; }
    void setEnabled(bool on) override { enabled = on; }
    bool isEnabled() const override { return enabled; }
    void setHandler(std::function<void()> handler) override { onTick = std::move(handler); }

    // One tick, if the timer is on.
    void fire();

    int ms = 0;
    bool enabled = false;
    std::function<void()> onTick;
};

class ManualTimerFactory : public TimerFactory {
public:
    std::unique_ptr<Timer> create() override { return std::make_unique<ManualTimer>(); }
};

// The test's view of a timer the logic made.
inline ManualTimer& Manual(const std::unique_ptr<Timer>& timer) {
    return static_cast<ManualTimer&>(*timer);
}

} // namespace velmora
