#include "app/frmMain.h"
#include "options/Options.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class StartUpTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void emptyStoreGivesWorkingProgramWithNoAccounts();
    void firstRunWritesLogonEntryOnce();
    void accountsGetTabsRunTimeValuesAndCountdown();
    void minimizedStartShowsOnlyTheTray();
    void secondInstanceTouchesNothing();
    void firstAutoCheckTime_data();
    void firstAutoCheckTime();
    void closeBoxGoesToTrayAndTrayQuitEnds();
    void unloadSavesSortStateAndWidthsAndDeletesTemporaryFiles_data();
    void unloadSavesSortStateAndWidthsAndDeletesTemporaryFiles();
};

// Asked to check at start-up, but with no account to check.
void StartUpTest::emptyStoreGivesWorkingProgramWithNoAccounts() {
    TestRig rig;
    rig.settings.set("Settings\\Options\\EmailCheckStartUp", "1");
    QVERIFY(rig.start());
    const StateView& v = rig.view;
    QCOMPARE(v.emailTabs.count(), 1);
    QCOMPARE(v.statusBar.panelText(1), QString("No Accounts have been created..."));
    QCOMPARE(v.statusBar.panelText(4), QString("Auto Check Off"));
    QVERIFY(v.isVisible("fraNoAcntsBanner"));
    QVERIFY(!v.isEnabled("tbrButtons(2)"));
    QVERIFY(!v.isEnabled("tbrButtons(3)"));
    QVERIFY(!v.isVisible("tbrButtons(14)"));
    QVERIFY(!v.isEnabled("mnuTrayCheckAll"));
    QCOMPARE(v.caption("mnuTrayAutoCheck"), QString("&Auto Check - Off|#AutoCheckOff"));
    QCOMPARE(v.caption("lblBanner"), QString("Email"));
    QVERIFY(v.isWindowVisible());
    QVERIFY(v.trayEntry.present);
    QVERIFY(Manual(rig.ctx->shell.tmrStatusBar).enabled);
    QVERIFY(!Manual(rig.ctx->check.tmrMailTime).enabled);
    QVERIFY(!Manual(rig.ctx->check.tmrMailStartUp).enabled);
    QVERIFY(rig.ctx->check.StartUpDone);
    QCOMPARE(rig.ctx->accounts.AcntCurrent, 0);
    QCOMPARE(rig.ctx->options.IntervalMinutes, 30);
}

void StartUpTest::firstRunWritesLogonEntryOnce() {
    TestRig rig;
    QVERIFY(rig.start());
    QCOMPARE(rig.autoStart.sets, 1);
    QCOMPARE(rig.settings.writes,
             QStringList({"Settings\\Options\\RunStartUp", "Settings\\FirstUse"}));
    QCOMPARE(rig.settings.get("Settings\\FirstUse"), QString("1"));

    TestRig again;
    again.settings.values = rig.settings.values;
    again.settings.set("Settings\\Options\\RunStartUp", "0");
    QVERIFY(again.start());
    QCOMPARE(again.autoStart.sets, 0);
    QVERIFY(again.settings.writes.isEmpty());
    QCOMPARE(again.ctx->options.RunStartUp, 0);
}

void StartUpTest::accountsGetTabsRunTimeValuesAndCountdown() {
    TestRig rig;
    rig.addAccount(1, "Home");
    rig.addAccount(2, "Work", false);
    rig.settings.set("Settings\\Options\\EmailCheckStartUp", "1");
    rig.clock.set("2026-11-21T16:05:00");
    QVERIFY(rig.start());

    const StateView& v = rig.view;
    QCOMPARE(v.emailTabs.count(), 2);
    QCOMPARE(v.acntTabs.count(), 2);
    QCOMPARE(v.emailTabs.caption(1), QString("Home"));
    QCOMPARE(v.emailTabs.image(1), QString("MailNo"));
    QCOMPARE(v.acntTabs.image(2), QString("MailNoDisabled"));
    QVERIFY(!v.isVisible("fraNoAcntsBanner"));
    QVERIFY(v.isEnabled("tbrButtons(3)"));
    QVERIFY(v.isEnabled("mnuTrayCheckAll"));
    QCOMPARE(v.statusBar.panelText(1), QString("Home"));
    QCOMPARE(v.statusBar.panelText(3), QString("Not Checked"));
    QVERIFY(v.isVisible("tbrButtons(14)"));
    QCOMPARE(v.caption("tbrButtons(14)"), QString("StartUp: Pause       "));
    QVERIFY(Manual(rig.ctx->check.tmrMailStartUp).enabled);
    QVERIFY(!rig.ctx->check.StartUpDone);

    const AccountStore& acc = rig.ctx->accounts;
    QCOMPARE(acc.AcntCurrent, 1);
    QCOMPARE(acc[2].AcntStatusText, QString("Work"));
    QCOMPARE(acc[2].AcntLastCheckTime, QString("4:05 PM"));
    QCOMPARE(acc[2].AcntPort, QString("110"));
}

void StartUpTest::minimizedStartShowsOnlyTheTray() {
    TestRig rig;
    // Not the first start, whose welcome would hold Auto Check.
    rig.settings.set("Settings\\FirstUse", "1");
    rig.settings.set("Settings\\Options\\MinimizeStartUp", "1");
    rig.settings.set("Settings\\Options\\UseInterval", "1");
    rig.addAccount(1, "Home");
    QVERIFY(rig.start());
    QVERIFY(!rig.view.isWindowVisible());
    QCOMPARE(rig.view.windowState(), WindowState::Minimized);
    QVERIFY(rig.view.trayEntry.present);
    QVERIFY(Manual(rig.ctx->check.tmrMailTime).enabled);
    QVERIFY(!Manual(rig.ctx->shell.tmrStatusBar).enabled);
}

void StartUpTest::secondInstanceTouchesNothing() {
    TestRig rig;
    rig.instance.otherInstanceRuns = true;
    QVERIFY(!rig.start());
    QVERIFY(rig.settings.reads.isEmpty());
    QVERIFY(rig.settings.writes.isEmpty());
    QVERIFY(!rig.view.trayEntry.present);
    QVERIFY(!rig.view.isWindowVisible());
    QCOMPARE(rig.autoStart.sets, 0);
}

void StartUpTest::firstAutoCheckTime_data() {
    QTest::addColumn<QString>("minutes");
    QTest::addColumn<QString>("clock");
    QTest::addColumn<QString>("next");
    auto row = [](const char* name, const char* minutes, const char* clock, const char* next) {
        QTest::newRow(name) << minutes << clock << next;
    };
    row("short interval, late seconds: a minute more", "10", "2026-11-21T10:15:25",
        "21/11/26-10:26");
    row("short interval, early seconds", "10", "2026-11-21T10:15:19", "21/11/26-10:25");
    row("interval of 16, late seconds", "16", "2026-11-21T10:15:45", "21/11/26-10:31");
}

void StartUpTest::firstAutoCheckTime() {
    QFETCH(QString, minutes);
    QFETCH(QString, clock);
    QFETCH(QString, next);
    TestRig rig;
    rig.settings.set("Settings\\Options\\Minutes", minutes);
    rig.settings.set("Settings\\Options\\UseInterval", "1");
    rig.clock.set(clock);
    QVERIFY(rig.start());
    QCOMPARE(rig.ctx->check.NextCheckTime, next);
    QCOMPARE(rig.view.statusBar.panelText(4), rig.ctx->check.NextCheckText);
}

void StartUpTest::closeBoxGoesToTrayAndTrayQuitEnds() {
    TestRig rig;
    rig.addAccount(1, "Home");
    QVERIFY(rig.start());
    rig.settings.writes.clear();
    bool cancel = false;
    frmMain::Form_Unload(*rig.ctx, cancel);
    QVERIFY(cancel);
    QVERIFY(!rig.view.isWindowVisible());
    QCOMPARE(rig.view.windowState(), WindowState::Minimized);
    QVERIFY(rig.view.trayEntry.present);
    QVERIFY(rig.settings.writes.isEmpty());

    frmMain::mnuTrayShow_Click(*rig.ctx);
    QVERIFY(rig.view.isWindowVisible());
    QCOMPARE(rig.view.windowState(), WindowState::Normal);

    // Quit from the tray ends it, close box option or not.
    frmMain::mnuTrayQuitApplication_Click(*rig.ctx);
    QVERIFY(rig.view.unloaded);
    QVERIFY(!rig.view.trayEntry.present);
    QVERIFY(rig.settings.has("Settings\\Options\\SortOrder"));
}

void StartUpTest::unloadSavesSortStateAndWidthsAndDeletesTemporaryFiles_data() {
    QTest::addColumn<QString>("restoreColWidth");
    QTest::addColumn<bool>("widthsSaved");
    QTest::newRow("widths restored at start-up") << "1" << false;
    QTest::newRow("widths kept") << "0" << true;
}

void StartUpTest::unloadSavesSortStateAndWidthsAndDeletesTemporaryFiles() {
    QFETCH(QString, restoreColWidth);
    QFETCH(bool, widthsSaved);
    TestRig rig;
    rig.settings.set("Settings\\Options\\CloseButton", "0");
    rig.settings.set("Settings\\Options\\RestoreColWidth", restoreColWidth);
    rig.settings.set("Settings\\Options\\ColSubjectWidth", "321");
    rig.files.existing.insert("/temp/temporary.eml");
    QVERIFY(rig.start());
    rig.ctx->options.SortColumnLastUsed = "Subject";
    rig.ctx->list.SortDescending = 0;
    rig.settings.writes.clear();

    bool cancel = false;
    frmMain::Form_Unload(*rig.ctx, cancel);
    QVERIFY(!cancel);
    QVERIFY(!rig.view.trayEntry.present);
    QStringList expected;
    if (widthsSaved) {
        for (const char* key :
             {"ColFromWidth", "ColToWidth", "ColSubjectWidth", "ColDateWidth", "ColSizeWidth"})
            expected << QString("Settings\\Options\\") + key;
        QCOMPARE(rig.settings.get("Settings\\Options\\ColSubjectWidth"), QString("321"));
    }
    expected << "Settings\\Options\\SortColumnLastUsed"
             << "Settings\\Options\\SortOrder";
    QCOMPARE(rig.settings.writes, expected);
    QCOMPARE(rig.settings.get("Settings\\Options\\SortColumnLastUsed"), QString("Subject"));
    QCOMPARE(rig.settings.get("Settings\\Options\\SortOrder"), QString("0"));
    // A missing file is no failure.
    QCOMPARE(rig.files.removed, QStringList({"/temp/temporary.eml", "/temp/temporary.msg"}));
}

QTEST_GUILESS_MAIN(StartUpTest)
#include "StartUpTest.moc"
