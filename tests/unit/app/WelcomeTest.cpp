#include "app/frmMain.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class WelcomeTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void shownOnceOnAFirstStart();
    void wordsAsWritten();
    void goesToTheTrayAndBackWithTheWindow();
};

namespace {

void StartWithAutoCheck(TestRig& rig) {
    rig.addAccount(1, "Home");
    rig.settings.set("Settings\\Options\\UseInterval", "1");
    rig.clock.set("2026-11-15T16:21:00");
    QVERIFY(rig.start());
}

} // namespace

// Auto Check waits while it is open; its close box counts as seen, and the
// next start passes it by.
void WelcomeTest::shownOnceOnAFirstStart() {
    TestRig rig;
    StartWithAutoCheck(rig);
    AppContext& ctx = *rig.ctx;
    auto window = rig.windows.firstUse;
    QVERIFY(window);
    QVERIFY(window->shown);
    QVERIFY(ctx.shell.FirstUseOpen);
    QVERIFY(!ctx.check.tmrMailTime->isEnabled());
    QVERIFY(ctx.shell.tmrStatusBar->isEnabled());
    QCOMPARE(rig.settings.get("Settings\\FirstUse"), QString("1"));

    window->onClose();
    QVERIFY(window->destroyed);
    QVERIFY(!ctx.shell.FirstUseOpen);
    QVERIFY(ctx.check.tmrMailTime->isEnabled());
    QVERIFY(!ctx.shell.tmrStatusBar->isEnabled());

    TestRig second;
    second.settings.values = rig.settings.values;
    StartWithAutoCheck(second);
    QVERIFY(!second.windows.firstUse);
    QVERIFY(!second.ctx->shell.FirstUseOpen);
    QVERIFY(second.ctx->check.tmrMailTime->isEnabled());
}

void WelcomeTest::wordsAsWritten() {
    TestRig rig;
    rig.settings.set("Settings\\Options\\ButtonStyle", "1");
    QVERIFY(rig.start());
    const auto& w = *rig.windows.firstUse;
    QCOMPARE(w.caption, QString("Velmora - First Time Use"));
    QVERIFY2(QRegularExpression("^Version \\d+\\.\\d+$").match(w.version).hasMatch(),
             qPrintable(w.version));
    QVERIFY2(QRegularExpression("^Copyright 20\\d\\d ").match(w.copyright).hasMatch(),
             qPrintable(w.copyright));
    QCOMPARE(w.welcome, QString("Welcome to Velmora"));
    QVERIFY(w.raisedButtons);
    QCOMPARE(w.paragraphs.size(), 6);
    QCOMPARE(w.paragraphs[0], QString("Velmora must be set up with a least one Email Account "
                                      "before you can actually use it to monitor your "
                                      "messages. Please follow these steps."));
    QCOMPARE(w.paragraphs[3],
             QString("Click 'Save Account' when you are done and then click 'Test Account.'"));
    QVERIFY(w.paragraphs[4].contains("'Connection Successfull' message"));
    QCOMPARE(w.paragraphs[5], QString("Once an Account is setup you can make changes to control "
                                      "Velmora. To do this click 'Options' and browse through "
                                      "the various settings."));
}

void WelcomeTest::goesToTheTrayAndBackWithTheWindow() {
    TestRig rig;
    StartWithAutoCheck(rig);
    AppContext& ctx = *rig.ctx;
    auto window = rig.windows.firstUse;
    frmMain::MinimizeToTray(ctx);
    QVERIFY(!window->shown);
    QVERIFY(ctx.shell.FirstUseOpen);
    frmMain::mnuTrayShow_Click(ctx);
    QVERIFY(window->shown);
    QCOMPARE(window->showings, 2);
}

QTEST_GUILESS_MAIN(WelcomeTest)
#include "WelcomeTest.moc"
