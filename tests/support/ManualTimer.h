#pragma once

#include "platform/ManualTimer.h"

namespace velmora {

// The test's view of a timer the logic made.
inline ManualTimer& Manual(const std::unique_ptr<Timer>& timer) {
    return static_cast<ManualTimer&>(*timer);
}

} // namespace velmora
