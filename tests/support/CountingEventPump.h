#pragma once

#include "platform/EventPump.h"

namespace velmora {

class CountingEventPump : public EventPump {
public:
    void DoEvents() override { ++count; }
    int count = 0;
};

} // namespace velmora
