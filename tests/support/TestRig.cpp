#include "support/TestRig.h"

#include "app/Main.h"
#include "app/UiScript.h"
#include "app/frmMainEvents.h"
#include "support/ScratchFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

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

bool TestRig::runScript(const QString& lines) {
    ScratchFile file("script.txt");
    file.write(lines.toUtf8());
    frmMainEvents events(*ctx);
    QString out, err;
    QTextStream o(&out), e(&err);
    const int status = RunUiScript({*ctx, view, headless, events}, file.path(), false, o, e);
    o.flush();
    e.flush();
    if (status != 0)
        qWarning("%s", qPrintable(err));
    // A refused click is a fault of the test's script.
    const QJsonArray refused = QJsonDocument::fromJson(out.toUtf8()).object()["refused"].toArray();
    if (!refused.isEmpty())
        qWarning("%s", QJsonDocument(refused).toJson().constData());
    return status == 0 && refused.isEmpty();
}

} // namespace velmora
