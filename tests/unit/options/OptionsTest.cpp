#include "options/Options.h"
#include "options/SaveOptions.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class OptionsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void emptyStoreGivesDefaults_data();
    void emptyStoreGivesDefaults();
    void unreadableNumbersFallBackToTheirDefault_data();
    void unreadableNumbersFallBackToTheirDefault();
    void recordRoundTrips();
    void saveWritesThePageKeysInSaveOrder();
    void logonEntryFollowsAChangeOnly_data();
    void logonEntryFollowsAChangeOnly();
    void autoCheckFollowsTheSave();
};

void OptionsTest::emptyStoreGivesDefaults_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::newRow("RunStartUp") << "RunStartUp"
                                << "1";
    QTest::newRow("Minutes") << "Minutes"
                             << "30";
    QTest::newRow("NoCheckTimeEnd") << "NoCheckTimeEnd"
                                    << "00:00";
    QTest::newRow("RunSize") << "RunSize"
                             << "3";
    QTest::newRow("TopColour") << "TopColour"
                               << "10072511";
    QTest::newRow("SortColumn") << "SortColumn"
                                << "4";
    QTest::newRow("SortColumnLastUsed is a number") << "SortColumnLastUsed"
                                                    << "4";
    QTest::newRow("ConnectTimeOut") << "ConnectTimeOut"
                                    << "10";
    QTest::newRow("RulesIniFileName") << "RulesIniFileName"
                                      << "Rules.ini";
}

void OptionsTest::emptyStoreGivesDefaults() {
    QFETCH(QString, key);
    QFETCH(QString, value);
    FakeSettingsStore settings;
    Options o;
    o.Minutes = 0;
    o.LoadOptions(settings);
    o.LoadMenuColours(settings);
    QCOMPARE(o.valueText(key), value);
    QCOMPARE(o.IntervalMinutes, 30);
}

void OptionsTest::unreadableNumbersFallBackToTheirDefault_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("read");
    QTest::newRow("not a number") << "ConnectTimeOut"
                                  << "ten"
                                  << "10";
    QTest::newRow("beyond 16 bits") << "Minutes"
                                    << "70000"
                                    << "30";
    QTest::newRow("a colour takes 32 bits") << "TopColour"
                                            << "16777215"
                                            << "16777215";
    QTest::newRow("blanks around") << "Hours"
                                   << " 2 "
                                   << "2";
    QTest::newRow("out of range kept") << "SortOrder"
                                       << "2"
                                       << "2";
}

void OptionsTest::unreadableNumbersFallBackToTheirDefault() {
    QFETCH(QString, key);
    QFETCH(QString, stored);
    QFETCH(QString, read);
    FakeSettingsStore settings;
    settings.set("Settings\\Options\\" + key, stored);
    Options o;
    o.LoadOptions(settings);
    o.LoadMenuColours(settings);
    QCOMPARE(o.valueText(key), read);
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

void OptionsTest::saveWritesThePageKeysInSaveOrder() {
    TestRig rig;
    QVERIFY(rig.start());
    rig.settings.writes.clear();
    SaveOptions(*rig.ctx, rig.ctx->options);
    QStringList expected;
    for (const QString& key : Options::saveOrder())
        expected << "Settings\\Options\\" + key;
    QCOMPARE(rig.settings.writes, expected);
    // Not owned by the page: never written by a save.
    QVERIFY(!expected.contains("Settings\\Options\\SortColumnLastUsed"));
    QVERIFY(!expected.contains("Settings\\Options\\RulesIniFileName"));
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
    const QString firstNext = ctx.SavedNextCheckTime;
    QCOMPARE(firstNext, QString("21/11/26-10:30"));

    // Switching on returns to the next time worked out before.
    Options on = ctx.options;
    on.UseInterval = 1;
    SaveOptions(ctx, on);
    QVERIFY(Manual(ctx.tmrMailTime).enabled);
    QVERIFY(!Manual(ctx.tmrStatusBar).enabled);
    QCOMPARE(ctx.NextCheckTime, firstNext);
    QCOMPARE(rig.view.caption("mnuTrayAutoCheck"), QString("&Auto Check - On|#AutoCheckOn"));

    // A new interval works the time out afresh.
    rig.clock.set("2026-11-21T10:05:00");
    Options faster = ctx.options;
    faster.Minutes = 10;
    ctx.NoCheckPostponed = true;
    SaveOptions(ctx, faster);
    QCOMPARE(ctx.NextCheckTime, QString("21/11/26-10:15"));
    QCOMPARE(ctx.options.IntervalMinutes, 10);
    QVERIFY(!ctx.NoCheckPostponed);

    Options off = ctx.options;
    off.UseInterval = 0;
    SaveOptions(ctx, off);
    QVERIFY(!Manual(ctx.tmrMailTime).enabled);
    QVERIFY(Manual(ctx.tmrStatusBar).enabled);
    QCOMPARE(rig.view.panelText(4), QString("Auto Check Off"));
}

QTEST_GUILESS_MAIN(OptionsTest)
#include "OptionsTest.moc"
