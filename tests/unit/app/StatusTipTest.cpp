#include "app/StatusBar.h"
#include "context/ShellCalls.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class StatusTipTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void tip_data();
    void tip();
    void pointerOnTheWindowsBar();
};

namespace {

const QDateTime Now(QDate(2026, 11, 15), QTime(16, 21));

// Counters as "msgs/new/spam/delete/attachments".
PanelTipFacts Facts(const QString& panelText, int panel, const QString& counters) {
    PanelTipFacts f;
    f.panels = QStringList(5, QString());
    f.panels[panel - 1] = panelText;
    const QStringList c = counters.split('/');
    f.AcntMsgCount = c.value(0).toInt();
    f.AcntNewCount = c.value(1).toInt();
    f.AcntSpamCount = c.value(2).toInt();
    f.AcntDeleteCount = c.value(3).toInt();
    f.listAttachments = c.value(4).toInt() > 0;
    f.NextCheckTime = QStringLiteral("02/01/27-06:00");
    f.now = Now;
    return f;
}

} // namespace

void StatusTipTest::tip_data() {
    QTest::addColumn<int>("panel");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("counters");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("tip");
    auto row = [](const char* name, int panel, const char* text, const char* counters,
                  const char* tip, const char* locale = "C") {
        QTest::newRow(name) << panel << text << counters << locale << tip;
    };
    row("status text as it stands", 1, "Home - 3 Messages", "3/0/0/0/0", "Home - 3 Messages");
    row("one spam", 2, "1", "4/1/1/0/0", "1 Message Marked as Spam");
    row("two spam", 2, "2", "4/0/2/1/0", "2 Messages Marked as Spam");
    row("deletion", 2, "3", "4/0/0/3/1", "3 Messages for Deletion");
    row("one for deletion", 2, "1", "4/0/0/1/0", "1 Message for Deletion");
    row("attachments take the noun of all messages", 2, "1", "5/0/0/0/1",
        "1 Messages with an Attachment");
    row("attachments in one message", 2, "1", "1/1/0/0/1", "1 Message with an Attachment");
    row("one new", 2, "1", "4/1/0/0/0", "1 New Message");
    row("three new", 2, "3", "4/3/0/0/0", "3 New Messages");
    row("plain one", 2, "1", "1/0/0/0/0", "1 Message");
    row("plain none takes the plural", 2, "0", "0/0/0/0/0", "0 Messages");
    row("blank panel, blank tip", 2, "", "2/0/0/0/0", "");
    row("last check names today", 3, "Checked at: 4:05 AM", "0/0/0/0/0",
        "Last Check: November 15, 2026 at 4:05 AM");
    row("last check in the evening", 3, "Checked at: 11:30 PM", "0/0/0/0/0",
        "Last Check: November 15, 2026 at 11:30 PM");
    row("not checked", 3, "Not Checked", "0/0/0/0/0", "Not Checked");
    row("next auto check", 4, "Auto Check at 6:00 AM", "0/0/0/0/0",
        "Next Auto Check: January 02, 2027 at 6:00 AM");
    row("next auto check read alike in any locale", 4, "Auto Check at 6:00 AM", "0/0/0/0/0",
        "Next Auto Check: janvier 02, 2027 at 6:00 AM", "fr_FR");
    row("retrieval", 4, "Retrieving 3 of 10", "0/0/0/0/0", "Retrieving 3 of 10");
    row("off", 4, "Auto Check Off", "0/0/0/0/0", "Auto Check is Off");
    row("clock", 5, "Nov 15/26 4:21 PM", "0/0/0/0/0", "Current: November 15, 2026 4:21 PM");
    row("right of the last panel", 0, "", "3/1/1/1/1", "");
}

void StatusTipTest::tip() {
    QFETCH(int, panel);
    QFETCH(QString, text);
    QFETCH(QString, counters);
    QFETCH(QString, locale);
    QFETCH(QString, tip);
    QCOMPARE(PanelTip(panel, Facts(text, qMax(panel, 1), counters), QLocale(locale)), tip);
}

// Through the logic: the panels as the account's refresh wrote them.
void StatusTipTest::pointerOnTheWindowsBar() {
    TestRig rig;
    rig.settings.set("Settings\\FirstUse", "1");
    rig.addAccount(1, "Home");
    rig.clock.set("2026-11-15T16:21:00");
    QVERIFY(rig.start());
    AppContext& ctx = *rig.ctx;
    ctx.accounts.AcntCurrent = 1;
    Account& a = ctx.accounts[1];
    a.AcntNewCount = 2;
    a.AcntMsgCount = 5;
    a.AcntLastCheckText = "Checked at: 3:07 PM";
    RefreshAccountPanels(ctx, 1);
    ShowPanelTip(ctx, 2);
    QCOMPARE(rig.view.statusBar.toolTip(), QString("2 New Messages"));
    ShowPanelTip(ctx, 3);
    QCOMPARE(rig.view.statusBar.toolTip(), QString("Last Check: November 15, 2026 at 3:07 PM"));
    ShowPanelTip(ctx, 0);
    QCOMPARE(rig.view.statusBar.toolTip(), QString());
}

QTEST_GUILESS_MAIN(StatusTipTest)
#include "StatusTipTest.moc"
