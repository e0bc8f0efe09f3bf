#pragma once

namespace velmora {

// Lets the event loop run once, so that pending timers, clicks and repaints
// are handled before the caller goes on.
class EventPump {
public:
    virtual ~EventPump() = default;
    virtual void DoEvents() = 0;
};

} // namespace velmora
