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
};

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

QTEST_GUILESS_MAIN(RuleReportTextTest)
#include "RuleReportTextTest.moc"
