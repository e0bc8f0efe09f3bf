#include "checking/Schedule.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class ScheduleTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void nextAutoCheck_data();
    void nextAutoCheck();
    void monthEndFiresAtOnce();
    void intervalZeroFiresUntilTheMinutePasses();
    void startUpCountdownReachesZero();
    void pauseSurvivesADialog_data();
    void pauseSurvivesADialog();

private:
    static std::unique_ptr<TestRig> started(const QMap<QString, QString>& options,
                                            const QString& clock);
};

std::unique_ptr<TestRig> ScheduleTest::started(const QMap<QString, QString>& options,
                                               const QString& clock) {
    auto rig = std::make_unique<TestRig>();
    rig->settings.set("Settings\\FirstUse", "1");
    rig->addAccount(1, "Home");
    rig->mailbox("Home");
    for (auto it = options.begin(); it != options.end(); ++it)
        rig->settings.set("Settings\\Options\\" + it.key(), it.value());
    rig->clock.set(clock);
    rig->start();
    return rig;
}

void ScheduleTest::nextAutoCheck_data() {
    QTest::addColumn<QString>("clock");
    QTest::addColumn<int>("minutes");
    QTest::addColumn<QString>("window"); // "begin-end", blank for none
    QTest::addColumn<bool>("postponed");
    QTest::addColumn<QString>("next");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("postponedAfter");
    auto row = [](const char* name, const char* clock, int minutes, const char* window,
                  bool postponed, const char* next, const char* at, bool postponedAfter) {
        QTest::newRow(name) << clock << minutes << window << postponed << next
                            << QString("Auto Check at ") + at << postponedAfter;
    };
    row("past midnight", "2026-11-21T23:30:10", 60, "", false, "22/11/26-00:30", "12:30 AM", false);
    row("interval 0", "2026-11-21T10:15:40", 0, "", false, "21/11/26-10:15", "10:15 AM", false);
    row("into the window before midnight", "2026-11-21T21:50:00", 30, "22:00-06:00", false,
        "22/11/26-06:00", "6:00 AM", true);
    row("after midnight only the evening is kept free", "2026-11-21T01:00:00", 30, "22:00-06:00",
        false, "21/11/26-01:30", "1:30 AM", false);
    row("the check after a postponed one goes by the interval", "2026-11-21T21:50:00", 30,
        "22:00-06:00", true, "21/11/26-22:20", "10:20 PM", false);
    row("equal ends are no window", "2026-11-21T10:00:00", 30, "10:00-10:00", false,
        "21/11/26-10:30", "10:30 AM", false);
    row("a window within the day", "2026-11-21T13:00:00", 30, "13:15-14:00", false,
        "21/11/26-14:00", "2:00 PM", true);
}

void ScheduleTest::nextAutoCheck() {
    QFETCH(QString, clock);
    QFETCH(int, minutes);
    QFETCH(QString, window);
    QFETCH(bool, postponed);
    QFETCH(QString, next);
    QFETCH(QString, text);
    QFETCH(bool, postponedAfter);
    auto rig = started({}, clock);
    AppContext& ctx = *rig->ctx;
    ctx.options.Hours = minutes / 60;
    ctx.options.Minutes = minutes % 60;
    ctx.options.ComputeInterval();
    ctx.options.NoCheck = window.isEmpty() ? 0 : 1;
    ctx.options.NoCheckTimeBegin = window.section('-', 0, 0);
    ctx.options.NoCheckTimeEnd = window.section('-', 1, 1);
    ctx.check.NoCheckPostponed = postponed;
    NextAutoCheck(ctx, 0);
    QCOMPARE(ctx.check.NextCheckTime, next);
    QCOMPARE(ctx.check.NextCheckText, text);
    QCOMPARE(ctx.check.NoCheckPostponed, postponedAfter);
    QCOMPARE(ctx.check.SavedNextCheckTime, next);
}

// The time is compared as text, day first: on November 30 a time of
// December 1 reads as earlier, so the check fires at once.
void ScheduleTest::monthEndFiresAtOnce() {
    auto rig = started({{"UseInterval", "1"}}, "2026-11-30T23:50:00");
    AppContext& ctx = *rig->ctx;
    QCOMPARE(ctx.check.NextCheckTime, QString("01/12/26-00:20"));
    Manual(ctx.check.tmrMailTime).fire();
    QCOMPARE(rig->mailbox("Home").connects, 1);
    QCOMPARE(ctx.check.NextCheckTime, QString("01/12/26-00:20"));
    Manual(ctx.check.tmrMailTime).fire();
    QCOMPARE(rig->mailbox("Home").connects, 2);
}

void ScheduleTest::intervalZeroFiresUntilTheMinutePasses() {
    auto rig = started({{"UseInterval", "1"}, {"Minutes", "0"}}, "2026-11-21T10:15:20");
    AppContext& ctx = *rig->ctx;
    // Seconds above 19 with an interval below 16: one minute more at first.
    QCOMPARE(ctx.check.NextCheckTime, QString("21/11/26-10:16"));
    Manual(ctx.check.tmrMailTime).fire();
    QCOMPARE(rig->mailbox("Home").connects, 0);
    rig->clock.set("2026-11-21T10:16:00");
    for (int tick = 1; tick <= 3; ++tick) {
        Manual(ctx.check.tmrMailTime).fire();
        QCOMPARE(rig->mailbox("Home").connects, tick);
    }
    rig->clock.set("2026-11-21T10:17:00");
    Manual(ctx.check.tmrMailTime).fire();
    QCOMPARE(rig->mailbox("Home").connects, 4);
    QCOMPARE(rig->view.statusBar.panelText(4), QString("Auto Check at 10:17 AM"));
}

void ScheduleTest::startUpCountdownReachesZero() {
    auto rig = started({{"EmailCheckStartUp", "1"}, {"StartUpDelay", "2"}}, "2026-11-21T10:00:00");
    AppContext& ctx = *rig->ctx;
    for (const char* shown : {"StartUp Check: 2 sec", "StartUp Check: 1 sec"}) {
        Manual(ctx.check.tmrMailStartUp).fire();
        QCOMPARE(rig->view.statusBar.panelText(3), QString(shown));
        QCOMPARE(rig->mailbox("Home").connects, 0);
    }
    Manual(ctx.check.tmrMailStartUp).fire();
    QCOMPARE(rig->mailbox("Home").connects, 1); // on the tick that shows 0
    QVERIFY(ctx.check.StartUpDone);
    QVERIFY(!Manual(ctx.check.tmrMailStartUp).enabled);
    QVERIFY(!rig->view.isVisible("tbrButtons(14)"));
}

void ScheduleTest::pauseSurvivesADialog_data() {
    QTest::addColumn<bool>("paused");
    QTest::newRow("running goes on") << false;
    QTest::newRow("paused stays paused") << true;
}

void ScheduleTest::pauseSurvivesADialog() {
    QFETCH(bool, paused);
    auto rig = started({{"EmailCheckStartUp", "1"}, {"StartUpDelay", "30"}}, "2026-11-21T10:00:00");
    AppContext& ctx = *rig->ctx;
    Manual(ctx.check.tmrMailStartUp).fire();
    if (paused)
        ToggleStartUpPause(ctx);
    SuspendStartUpTimer(ctx, "Suspend");
    QVERIFY(!Manual(ctx.check.tmrMailStartUp).enabled);
    QVERIFY(!rig->view.isEnabled("tbrButtons(14)"));
    SuspendStartUpTimer(ctx, "Restore");
    QCOMPARE(Manual(ctx.check.tmrMailStartUp).enabled, !paused);
    QCOMPARE(rig->view.caption("tbrButtons(14)"),
             QString(paused ? "StartUp: Continue   " : "StartUp: Pause       "));
    // The seconds gone by are kept.
    Manual(ctx.check.tmrMailStartUp).enabled = true;
    Manual(ctx.check.tmrMailStartUp).fire();
    QCOMPARE(rig->view.statusBar.panelText(3), QString("StartUp Check: 29 sec"));
}

QTEST_GUILESS_MAIN(ScheduleTest)
#include "ScheduleTest.moc"
