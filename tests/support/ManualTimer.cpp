#include "support/ManualTimer.h"

namespace velmora {

void ManualTimer::fire() {
    if (!enabled || !onTick)
        return;
    // A copy, as the handler may delete this timer.
    const std::function<void()> handler = onTick;
    handler();
}

} // namespace velmora
