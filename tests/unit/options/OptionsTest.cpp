#include "options/Options.h"
#include "options/SaveOptions.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class OptionsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void load_data();
    void load();
    void recordRoundTrips();
    void logonEntryFollowsAChangeOnly_data();
    void logonEntryFollowsAChangeOnly();
    void autoCheckFollowsTheSave();
};

// A row without a stored value reads the key's default.
void OptionsTest::load_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("read");
    auto row = [](const char* key, const char* read, const char* stored = nullptr,
                  const char* name = nullptr) {
        QTest::newRow(name ? name : key) << key << stored << read;
    };
    // Minutes is zeroed before the load, so its row shows a missing key is
    // read with its default and the interval worked out from it.
    row("Minutes", "30");
    row("SortColumnLastUsed", "4"); // a number, not a column name
    row("ConnectTimeOut", "10", "ten", "not a number");
    row("MaxMessageSize", "250", "250", "a size limit of its own");
    row("MaxMessageSize", "100", "40000", "a size limit beyond 16 bits");
    row("Minutes", "30", "70000", "beyond 16 bits");
    row("TopColour", "16777215", "16777215", "a colour takes 32 bits");
    row("Hours", "2", " 2 ", "blanks around");
    row("SortOrder", "2", "2", "out of range kept");
}

void OptionsTest::load() {
    QFETCH(QString, key);
    QFETCH(QString, stored);
    QFETCH(QString, read);
    FakeSettingsStore settings;
    if (!stored.isNull())
        settings.set("Settings\\Options\\" + key, stored);
    Options o;
    o.Minutes = 0;
    o.LoadOptions(settings);
    o.LoadMenuColours(settings);
    QCOMPARE(o.valueText(key), read);
    if (stored.isNull())
        QCOMPARE(o.IntervalMinutes, 30);
}

void OptionsTest::recordRoundTrips() {
    Options o;
    int n = 2;
    for (const QString& key : Options::saveOrder()) {
        if (Options::key(key).text)
            o.setValueText(key, QString::fromUtf8(" «%1» @x, \"y\" ").arg(key));
        else
            o.setValueText(key, QString::number(n++));
    }
    FakeSettingsStore settings;
    o.WriteOptions(settings);
    Options back;
    back.LoadOptions(settings);
    back.LoadMenuColours(settings);
    back.readKey(settings, "RestoreColWidth");
    for (const QString& key : Options::saveOrder())
        QCOMPARE(back.valueText(key), o.valueText(key));
}

void OptionsTest::logonEntryFollowsAChangeOnly_data() {
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::addColumn<int>("sets");
    QTest::addColumn<int>("clears");
    QTest::newRow("unchanged on") << 1 << 1 << 0 << 0;
    QTest::newRow("switched off") << 1 << 0 << 0 << 1;
    QTest::newRow("switched on") << 0 << 1 << 1 << 0;
    QTest::newRow("unchanged off") << 0 << 0 << 0 << 0;
}

void OptionsTest::logonEntryFollowsAChangeOnly() {
    QFETCH(int, before);
    QFETCH(int, after);
    QFETCH(int, sets);
    QFETCH(int, clears);
    TestRig rig;
    rig.settings.set("Settings\\FirstUse", "1");
    rig.settings.set("Settings\\Options\\RunStartUp", QString::number(before));
    QVERIFY(rig.start());
    Options working = rig.ctx->options;
    working.RunStartUp = after;
    SaveOptions(*rig.ctx, working);
    QCOMPARE(rig.autoStart.sets, sets);
    QCOMPARE(rig.autoStart.clears, clears);
    QCOMPARE(rig.settings.get("Settings\\Options\\RunStartUp"), QString::number(after));
}

void OptionsTest::autoCheckFollowsTheSave() {
    TestRig rig;
    rig.settings.set("Settings\\FirstUse", "1");
    rig.addAccount(1, "Home");
    rig.clock.set("2026-11-21T10:00:00");
    QVERIFY(rig.start());
    AppContext& ctx = *rig.ctx;
    const QString firstNext = ctx.check.SavedNextCheckTime;
    QCOMPARE(firstNext, QString("21/11/26-10:30"));

    // Switching on returns to the next time worked out before.
    Options on = ctx.options;
    on.UseInterval = 1;
    SaveOptions(ctx, on);
    QVERIFY(Manual(ctx.check.tmrMailTime).enabled);
    QVERIFY(!Manual(ctx.shell.tmrStatusBar).enabled);
    QCOMPARE(ctx.check.NextCheckTime, firstNext);
    QCOMPARE(rig.view.caption("mnuTrayAutoCheck"), QString("&Auto Check - On|#AutoCheckOn"));

    // A new interval works the time out afresh.
    rig.clock.set("2026-11-21T10:05:00");
    Options faster = ctx.options;
    faster.Minutes = 10;
    ctx.check.NoCheckPostponed = true;
    SaveOptions(ctx, faster);
    QCOMPARE(ctx.check.NextCheckTime, QString("21/11/26-10:15"));
    QCOMPARE(ctx.options.IntervalMinutes, 10);
    QVERIFY(!ctx.check.NoCheckPostponed);

    Options off = ctx.options;
    off.UseInterval = 0;
    SaveOptions(ctx, off);
    QVERIFY(!Manual(ctx.check.tmrMailTime).enabled);
    QVERIFY(Manual(ctx.shell.tmrStatusBar).enabled);
    QCOMPARE(rig.view.statusBar.panelText(4), QString("Auto Check Off"));
}

QTEST_GUILESS_MAIN(OptionsTest)
#include "OptionsTest.moc"
