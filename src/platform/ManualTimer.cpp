#include "platform/ManualTimer.h"

namespace velmora {

void ManualTimer::fire() {
    if (!enabled || !onTick || ticking)
        return;
    // A copy, as the handler may delete this timer.
    const std::function<void()> handler = onTick;
    ticking = true;
    handler();
    ticking = false;
}

} // namespace velmora
