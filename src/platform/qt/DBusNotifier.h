#pragma once

#include "platform/DesktopNotifier.h"

namespace velmora {

// The freedesktop notification service on the session bus.
class DBusNotifier : public DesktopNotifier {
public:
    bool available() override;
    // Posted without waiting for the service's answer.
    void notify(const QString& title, const QString& body) override;
};

} // namespace velmora
