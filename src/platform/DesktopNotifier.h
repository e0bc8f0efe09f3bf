#pragma once

#include <QString>

namespace velmora {

// Notifications of the desktop, where the desktop has a service for them.
class DesktopNotifier {
public:
    virtual ~DesktopNotifier() = default;
    virtual bool available() = 0;
    virtual void notify(const QString& title, const QString& body) = 0;
};

} // namespace velmora
