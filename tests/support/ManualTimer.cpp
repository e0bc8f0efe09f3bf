#include "support/ManualTimer.h"

namespace velmora {

void ManualTimer::fire() {
    if (enabled && onTick)
        onTick();
}

} // namespace velmora
