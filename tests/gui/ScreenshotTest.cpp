#include "DemoMailbox.h"
#include "app/frmMainEvents.h"
#include "checking/CheckCycle.h"
#include "platform/qt/QtPopClient.h"
#include "platform/qt/widgets/MainWindow.h"
#include "support/TestRig.h"

#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

using namespace velmora;

// The Email page after a real check of the demonstration mailboxes, saved
// as the picture the README and the AppStream metadata show.
class ScreenshotTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void emailPageAfterACheck();
};

void ScreenshotTest::emailPageAfterACheck() {
    // The mail arrived before the rig's fixed clock, so each picture is the same.
    TestRig rig;
    const QDateTime now = rig.clock.moment;
    ScriptedPopServer home, work;
    QVERIFY(home.listen());
    QVERIFY(work.listen());
    home.setMessages(demo::HomeMailbox(now));
    work.setMessages(demo::WorkMailbox(now));

    QTemporaryDir program;
    rig.files.programFolder = program.path();
    QFile rules(program.path() + "/Rules.ini");
    QVERIFY(rules.open(QIODevice::WriteOnly));
    rules.write(demo::DemoRules());
    rules.close();
    const QString s = "Settings\\";
    const std::pair<const char*, quint16> accounts[] = {{"Home", home.port()},
                                                        {"Work", work.port()}};
    for (int n = 1; n <= 2; ++n) {
        const QString i = QString::number(n);
        rig.addAccount(n, accounts[n - 1].first);
        rig.settings.set(s + "AcntServer" + i, "127.0.0.1");
        rig.settings.set(s + "AcntPort" + i, QString::number(accounts[n - 1].second));
        rig.settings.set(s + "AcntLoginID" + i, "user");
        rig.settings.set(s + "AcntPassword" + i, "secret");
    }
    rig.settings.set(s + "FirstUse", "1");
    QtPopClientFactory pop;
    rig.ctx->svc.pop = &pop;

    MainWindow window;
    window.setTaskbarFallback(false);
    rig.ctx->view = &window;
    frmMainEvents events(*rig.ctx);
    window.setEvents(&events);
    QVERIFY(rig.start());
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    CheckAllAccounts(*rig.ctx);
    QVERIFY2(rig.boxes.boxes.isEmpty(), qPrintable(rig.boxes.boxes.value(0).text));

    auto* table = window.findChild<QTableWidget*>("lvwEmail");
    QCOMPARE(table->rowCount(), int(demo::HomeMailbox(now).size()));
    QCOMPARE(rig.ctx->accounts[1].AcntSpamCount, 1);
    QCoreApplication::processEvents();

    const QImage shot = window.grab().toImage();
    QVERIFY(!shot.isNull());
    // Not a blank surface: the page has many colours.
    QSet<QRgb> colours;
    for (int y = 0; y < shot.height(); y += 7)
        for (int x = 0; x < shot.width(); x += 7)
            colours.insert(shot.pixel(x, y));
    QVERIFY2(colours.size() > 20, qPrintable(QString::number(colours.size())));
    const QString path = qEnvironmentVariable("VELMORA_BIN_DIR") + "/../screenshot.png";
    QVERIFY2(shot.save(path), qPrintable(path));
}

QTEST_MAIN(ScreenshotTest)
#include "ScreenshotTest.moc"
