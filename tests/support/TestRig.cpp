#include "support/TestRig.h"

#include "app/Main.h"

namespace velmora {

TestRig::TestRig() {
    Services services;
    services.settings = &settings;
    services.boxes = &boxes;
    services.clock = &clock;
    services.timers = &timers;
    services.events = &pump;
    services.autoStart = &autoStart;
    services.files = &files;
    services.instance = &instance;
    services.pop = &pop;
    services.profiles = &profiles;
    services.windows = &windows;
    services.sound = &sounds;
    services.locale = QLocale::c();
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

} // namespace velmora
