#pragma once

#include "platform/Timer.h"

#include <QObject>
#include <QTimer>

namespace velmora {

// A QTimer whose tick is dropped while the handler of an earlier tick still
// runs, also when that handler spins a nested event loop.
class GuardedTimer : public QObject, public Timer {
    Q_OBJECT
public:
    GuardedTimer();
    ~GuardedTimer() override;

    void setInterval(int milliseconds) override { timer.setInterval(milliseconds); }
    int interval() const override { return timer.interval(); }
    void setEnabled(bool enabled) override;
    bool isEnabled() const override { return timer.isActive(); }
    void setHandler(std::function<void()> handler) override { onTick = std::move(handler); }

private:
    void tick();

    QTimer timer;
    std::function<void()> onTick;
    bool running = false;
    // Cleared when the timer goes, so a handler may delete its own timer.
    std::shared_ptr<bool> alive = std::make_shared<bool>(true);
};

class GuardedTimerFactory : public TimerFactory {
public:
    std::unique_ptr<Timer> create() override { return std::make_unique<GuardedTimer>(); }
};

} // namespace velmora
