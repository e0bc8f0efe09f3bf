#include "checking/CheckCycle.h"
#include "platform/ManualTimer.h"
#include "rules/RuleReport.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

// The Rule Report's two texts as it opens, by how many accounts are marked.
class RuleReportTextTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void textsFollowTheMarkedAccounts_data();
    void textsFollowTheMarkedAccounts();
    void reportCountsDownAndCloses();
    void deleteNowEmptiesOneSide();
};

namespace {

// Two accounts checked on the fake server, Home with two messages to
// delete, Work with one to delete and one spam; the report open with a Time
// of 3 seconds.
struct Opened {
    TestRig rig;
    StateRuleReportView::State& report() { return *rig.windows.ruleReport; }
    void tick(int times = 1) {
        for (int i = 0; i < times; ++i)
            static_cast<ManualTimer&>(*rig.ctx->check.frmRuleReport.timer).fire();
    }
};

std::unique_ptr<Opened> Open() {
    auto o = std::make_unique<Opened>();
    TestRig& rig = o->rig;
    rig.addAccount(1, "Home");
    rig.addAccount(2, "Work");
    rig.settings.set("Settings\\FirstUse", "1");
    rig.mailbox("Home").mail = {"h1", "h2", "h3"};
    rig.mailbox("Work").mail = {"w1", "w2"};
    rig.start();
    AppContext& ctx = *rig.ctx;
    CheckAllAccounts(ctx);
    ctx.messages.at(1, 1).Delete = ctx.messages.at(1, 3).Delete = true;
    ctx.accounts[1].AcntDeleteCount = 2;
    ctx.messages.at(2, 1).Delete = true;
    ctx.messages.at(2, 2).Spam = true;
    ctx.accounts[2].AcntDeleteCount = ctx.accounts[2].AcntSpamCount = 1;
    ctx.rules.LiveRules.Time = 3;
    LoadRuleReport(ctx);
    return o;
}

} // namespace

void RuleReportTextTest::textsFollowTheMarkedAccounts_data() {
    QTest::addColumn<int>("marked"); // accounts A1..An, account k with k to delete
    QTest::addColumn<int>("spam");   // of them, the first `spam` with 2 spam each
    QTest::addColumn<int>("lines");
    QTest::addColumn<bool>("more");
    QTest::newRow("one account, delete only") << 1 << 0 << 1 << false;
    QTest::newRow("fifteen accounts") << 15 << 3 << 15 << false;
    QTest::newRow("sixteen accounts") << 16 << 3 << 17 << true;
}

void RuleReportTextTest::textsFollowTheMarkedAccounts() {
    QFETCH(int, marked);
    QFETCH(int, spam);
    QFETCH(int, lines);
    QFETCH(bool, more);
    TestRig rig;
    for (int n = 1; n <= marked; ++n)
        rig.addAccount(n, "A" + QString::number(n));
    rig.settings.set("Settings\\FirstUse", "1");
    QVERIFY(rig.start());
    for (int n = 1; n <= marked; ++n) {
        rig.ctx->accounts[n].AcntDeleteCount = n;
        rig.ctx->accounts[n].AcntSpamCount = n <= spam ? 2 : 0;
    }
    const RuleReportContent c = RuleReportTexts(*rig.ctx);
    QCOMPARE(c.deleteAccounts, marked);
    QCOMPARE(c.spamAccounts, spam);
    QCOMPARE(c.lines, lines);
    QVERIFY(c.deleteText.startsWith("A1 has 1 message\r\n"));
    if (marked > 1)
        QVERIFY(c.deleteText.contains("\r\nA2 has 2 messages\r\n"));
    QCOMPARE(c.deleteText.endsWith("\r\n\r\nmore Accounts..."), more);
    // The spam side stands below sixteen: it never says that more follow.
    QString spamText;
    for (int n = 1; n <= spam; ++n)
        spamText += QString("A%1 has 2 messages\r\n").arg(n);
    QCOMPARE(c.spamText, spam == 0 ? QString("No Spam Messages to Delete") : spamText);
    TestRig empty;
    QCOMPARE(RuleReportTexts(*empty.ctx).deleteText, QString("No Messages to Delete"));
}

void RuleReportTextTest::reportCountsDownAndCloses() {
    auto o = Open();
    AppContext& ctx = *o->rig.ctx;
    StateRuleReportView::State& r = o->report();
    QVERIFY(r.shown && ctx.shell.RuleReportOpen);
    QCOMPARE(r.caption, QString("Velmora - Rule Report Notification"));
    QCOMPARE(r.tabs, QStringList({"Delete from Server", "Mark as Spam"}));
    QCOMPARE(r.deleteText, QString("Home has 2 messages\r\nWork has 1 message\r\n"));
    QCOMPARE(r.spamText, QString("Work has 1 message\r\n"));
    QCOMPARE(r.side, 1);
    QCOMPARE(r.countdown, 3);
    o->tick(2);
    QCOMPARE(r.countdown, 1);
    // Stopped, the count stays; started again, it goes on from there.
    r.handlers.buttonClick("Timer");
    QCOMPARE(r.captions["Timer"], QString("Start Timer  "));
    o->tick(5);
    QCOMPARE(r.countdown, 1);
    r.handlers.buttonClick("Timer");
    QCOMPARE(r.captions["Timer"], QString("Stop Timer   "));
    o->tick();
    QCOMPARE(r.countdown, 0);
    QVERIFY(r.shown);
    o->tick();
    QVERIFY(r.destroyed);
    QVERIFY(!ctx.shell.RuleReportOpen);
}

void RuleReportTextTest::deleteNowEmptiesOneSide() {
    auto o = Open();
    AppContext& ctx = *o->rig.ctx;
    StateRuleReportView::State& r = o->report();
    QVERIFY(r.enabled["DeleteNow"]);
    r.handlers.buttonClick("DeleteNow");
    // Rows 1 and 3 of one account: the second is not taken for what moved up.
    QCOMPARE(o->rig.mailbox("Home").mail, QStringList{"h2"});
    QCOMPARE(o->rig.mailbox("Work").mail, QStringList{"w2"});
    QCOMPARE(ctx.accounts[2].AcntSpamCount, 1);
    QCOMPARE(r.deleteText, QString("No Messages to Delete"));
    QCOMPARE(r.spamText, QString("Work has 1 message\r\n"));
    QVERIFY(!r.enabled["DeleteNow"]);
    QVERIFY(o->rig.boxes.boxes.isEmpty());
    QCOMPARE(ctx.options.DeleteConfirmation, 1);

    r.handlers.tabClick(2);
    QCOMPARE(r.side, 2);
    QVERIFY(r.enabled["DeleteNow"]);
    r.handlers.buttonClick("DeleteNow");
    QVERIFY(o->rig.mailbox("Work").mail.isEmpty());
    QCOMPARE(ctx.accounts[2].AcntMsgCount, 0);
    QCOMPARE(ctx.accounts[2].AcntStatusText, QString("Work - No Messages"));
    QCOMPARE(r.spamText, QString("No Spam Messages to Delete"));
    // Back on the account that showed, its rows, the interface free.
    QVERIFY(o->rig.boxes.boxes.isEmpty());
    QCOMPARE(ctx.accounts.AcntCurrent, 1);
    QCOMPARE(o->rig.view.messageList.rowCount(), 1);
    QVERIFY(!ctx.check.InterfaceHeld);
    r.handlers.tabClick(1);
    QVERIFY(!r.enabled["DeleteNow"]);
    r.handlers.buttonClick("Exit");
    QVERIFY(!ctx.shell.RuleReportOpen);
}

QTEST_GUILESS_MAIN(RuleReportTextTest)
#include "RuleReportTextTest.moc"
