#pragma once

#include "platform/Clock.h"

namespace velmora {

class SystemClock : public Clock {
public:
    QDateTime now() const override { return QDateTime::currentDateTime(); }
};

} // namespace velmora
