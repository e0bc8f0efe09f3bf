#pragma once

#include <functional>
#include <memory>

namespace velmora {

// A periodic timer in the manner of a form's timer control. A tick is never
// delivered while the handler of an earlier tick is still running, even when
// that handler runs a nested event loop: the check walks depend on it.
class Timer {
public:
    virtual ~Timer() = default;

    virtual void setInterval(int milliseconds) = 0;
    virtual int interval() const = 0;
    // Enabling a stopped timer starts the interval from now.
    virtual void setEnabled(bool enabled) = 0;
    virtual bool isEnabled() const = 0;
    virtual void setHandler(std::function<void()> handler) = 0;
};

class TimerFactory {
public:
    virtual ~TimerFactory() = default;
    virtual std::unique_ptr<Timer> create() = 0;
};

} // namespace velmora
