#include "support/TestRig.h"

#include "app/Main.h"

namespace velmora {

TestRig::TestRig() {
    Services services;
    services.settings = &settings;
    services.clock = &clock;
    services.events = &pump;
    services.files = &files;
    services.pop = &pop;
    services.profiles = &profiles;
    services.locale = QLocale::c();
    headless.fillBlanks(services);
    ctx = std::make_unique<AppContext>(services);
    ctx->view = &view;
}

bool TestRig::start() {
    return Main(*ctx);
}

void TestRig::addAccount(int n, const QString& name, bool enabled) {
    const QString s = QStringLiteral("Settings\\");
    settings.set(s + "AcntName" + QString::number(n), name);
    settings.set(s + "AcntEnabled" + QString::number(n), enabled ? "1" : "0");
    settings.set(s + "AcntServer" + QString::number(n), name + ".example");
    if (n > settings.get(s + "AcntNum").toInt())
        settings.set(s + "AcntNum", QString::number(n));
}

void TestRig::addLoopbackAccount(quint16 port, const QString& login, const QString& password) {
    const QString s = QStringLiteral("Settings\\");
    addAccount(1, "Home");
    settings.set(s + "AcntServer1", "127.0.0.1");
    settings.set(s + "AcntPort1", QString::number(port));
    settings.set(s + "AcntLoginID1", login);
    settings.set(s + "AcntPassword1", password);
    settings.set(s + "Options\\ConnectTimeOut", "5");
}

} // namespace velmora
