#include "platform/qt/DBusNotifier.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
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
    // A plain message: an interface object would first ask the service to
    // describe itself and wait for the answer.
    QDBusMessage call =
        QDBusMessage::createMethodCall(kService, QStringLiteral("/org/freedesktop/Notifications"),
                                       kService, QStringLiteral("Notify"));
    call << QStringLiteral("Velmora") << uint(0) << QStringLiteral("mail-unread") << title << body
         << QStringList() << QVariantMap() << int(-1);
    // Sent, not called: the id it answers with is of no use to us.
    QDBusConnection::sessionBus().send(call);
}

} // namespace velmora
