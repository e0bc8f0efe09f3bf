#include "platform/qt/GuardedTimer.h"

namespace velmora {

GuardedTimer::GuardedTimer() {
    timer.setTimerType(Qt::CoarseTimer);
    connect(&timer, &QTimer::timeout, this, &GuardedTimer::tick);
}

GuardedTimer::~GuardedTimer() {
    *alive = false;
}

void GuardedTimer::setEnabled(bool enabled) {
    if (!enabled)
        timer.stop();
    else if (!timer.isActive())
        timer.start();
}

void GuardedTimer::tick() {
    if (running || !onTick)
        return;
    const std::shared_ptr<bool> stillAlive = alive;
    // A copy on the stack outlives the timer, should the handler delete it.
    const std::function<void()> handler = onTick;
    running = true;
    handler();
    if (*stillAlive)
        running = false;
}

} // namespace velmora
