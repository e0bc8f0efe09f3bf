#pragma once

#include "platform/EventPump.h"

#include <QCoreApplication>

namespace velmora {

class QtEventPump : public EventPump {
public:
    void DoEvents() override { QCoreApplication::processEvents(); }
};

} // namespace velmora
