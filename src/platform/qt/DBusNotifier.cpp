#include "platform/qt/DBusNotifier.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QStringList>
#include <QVariantMap>

namespace velmora {

namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");

} // namespace

bool DBusNotifier::available() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() && bus.interface() &&
           bus.interface()->isServiceRegistered(kService).value();
}

void DBusNotifier::notify(const QString& title, const QString& body) {
    QDBusInterface service(kService, QStringLiteral("/org/freedesktop/Notifications"), kService,
                           QDBusConnection::sessionBus());
    service.asyncCall(QStringLiteral("Notify"), QStringLiteral("Velmora"), uint(0),
                      QStringLiteral("mail-unread"), title, body, QStringList(), QVariantMap(),
                      int(-1));
}

} // namespace velmora
