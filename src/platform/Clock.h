#pragma once

#include <QDateTime>

namespace velmora {

// Local wall-clock time; tests set it.
class Clock {
public:
    virtual ~Clock() = default;
    virtual QDateTime now() const = 0;
};

} // namespace velmora
