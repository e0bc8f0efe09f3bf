#include "messages/Capture.h"
#include "checking/CheckCycle.h"
#include "messages/DateText.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class CaptureTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleaning_data();
    void cleaning();
    void sizes_data();
    void sizes();
    void dates_data();
    void dates();
    void newMessagesAcrossPasses();
    void quickCheckKeepsWhatItHolds();
    void failedFetchClearsCountsButRemembersIdentifiers();
};

void CaptureTest::cleaning_data() {
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("cleanFrom");
    QTest::addColumn<QString>("cleanTo");
    auto row = [](const char* name, const char* from, const char* to, const char* cleanFrom,
                  const char* cleanTo) {
        QTest::newRow(name) << from << to << cleanFrom << cleanTo;
    };
    row("quoted name with ampersand", R"("Smith & Jones" <sj@example.com>)", "me@example.com",
        "Smith and Jones <sj@example.com>", "me@example.com");
    row("To of quotation marks only", "a@b", R"("")", "a@b", "Undisclosed-Recipient");
    row("empty To", "", "", "", "Undisclosed-Recipient");
    row("blank To stays", "a@b", " ", "a@b", " ");
    row("quotes inside a list", "x", R"("A" <a@x>, "B" <b@x>)", "x", "A <a@x>, B <b@x>");
}

void CaptureTest::cleaning() {
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QString, cleanFrom);
    QFETCH(QString, cleanTo);
    QCOMPARE(CleanFrom(from), cleanFrom);
    QCOMPARE(CleanTo(to), cleanTo);
}

void CaptureTest::sizes_data() {
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("size");
    QTest::newRow("499") << qint64(499) << "0";
    QTest::newRow("500 is half, to even") << qint64(500) << "0";
    QTest::newRow("501") << qint64(501) << "1";
    QTest::newRow("1500 is half, to even") << qint64(1500) << "2";
    QTest::newRow("thousands, not 1024") << qint64(1024000) << "1024";
}

void CaptureTest::sizes() {
    QFETCH(qint64, bytes);
    QFETCH(QString, size);
    QCOMPARE(SizeText(bytes), size);
}

void CaptureTest::dates_data() {
    QTest::addColumn<QString>("moment");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("general");
    QTest::addColumn<QString>("shown");
    auto row = [](const char* name, const char* moment, const char* locale, const char* general,
                  const QString& shown) {
        QTest::newRow(name) << moment << locale << general << shown;
    };
    row("long form loses its marker", "2026-12-25T22:34:56", "C", "12/25/2026 10:34:56 PM",
        "Dec 25, 2026 10:34:56 AM");
    row("twenty characters keep it", "2026-12-05T21:04:03", "en_US", "12/5/2026 9:04:03 PM",
        "Dec 05, 2026 09:04:03 PM");
    row("a single letter of the marker still reads", "2026-12-25T21:04:03", "C",
        "12/25/2026 9:04:03 PM", "Dec 25, 2026 09:04:03 PM");
    row("noon", "2026-01-05T12:05:00", "C", "1/5/2026 12:05:00 PM", "Jan 05, 2026 12:05:00 PM");
    row("midnight has no time", "2026-01-05T00:00:00", "C", "1/5/2026", "Jan 05, 2026 12:00:00 AM");
    row("another locale's order and names", "2026-03-25T22:34:56", "de_DE", "25.03.2026 22:34:56",
        QString::fromUtf8("März 25, 2026 10:34:56 PM"));
}

void CaptureTest::dates() {
    QFETCH(QString, moment);
    QFETCH(QString, locale);
    QFETCH(QString, general);
    QFETCH(QString, shown);
    const QDateTime t = QDateTime::fromString(moment, Qt::ISODate);
    QCOMPARE(GeneralDate(t, QLocale(locale)), general);
    QCOMPARE(MessageDate(t, QLocale(locale)), shown);
}

// Only the first AcntMsgCount remembered identifiers count, and growth is
// measured against the highest count so far.
void CaptureTest::newMessagesAcrossPasses() {
    struct Pass {
        QStringList mailbox;
        QList<bool> fresh;
        bool hasNew;
        int newCount;
        int prevCount;
    };
    const QList<Pass> passes = {
        {{"a", "b", "c"}, {true, true, true}, true, 3, 3},
        {{"a", "b", "c", "d"}, {false, false, false, true}, true, 1, 4},
        // Shrunk to two: only rows 1 and 2 ("a", "b") count as seen.
        {{"c", "d"}, {true, true}, false, 0, 4},
        // Back to four, not above the highest count: new marks, no new mail.
        {{"c", "d", "a", "e"}, {false, false, true, true}, false, 0, 4},
        {{"c", "d", "a", "e", "f"}, {false, false, false, false, true}, true, 1, 5},
    };
    TestRig rig;
    rig.addAccount(1, "Home");
    rig.settings.set("Settings\\Options\\MessageSort", "0");
    rig.settings.set("Settings\\Options\\QuickCheck", "0");
    QVERIFY(rig.start());
    for (int p = 0; p < passes.size(); ++p) {
        FakeMailbox& box = rig.mailbox("Home");
        box.mail = passes[p].mailbox;
        CheckAllAccounts(*rig.ctx);
        const Account& a = rig.ctx->accounts[1];
        QCOMPARE(a.AcntMsgCount, passes[p].mailbox.size());
        for (int i = 1; i <= a.AcntMsgCount; ++i)
            QVERIFY2(rig.ctx->messages.at(1, i).New == passes[p].fresh[i - 1],
                     qPrintable(QString("pass %1 message %2").arg(p + 1).arg(i)));
        QCOMPARE(a.AcntHasNew, passes[p].hasNew);
        QCOMPARE(a.AcntNewCount, passes[p].newCount);
        QCOMPARE(a.AcntPrevCount, passes[p].prevCount);
    }
}

void CaptureTest::quickCheckKeepsWhatItHolds() {
    TestRig rig;
    rig.addAccount(1, "Home");
    QVERIFY(rig.start());
    FakeMailbox& box = rig.mailbox("Home");
    box.mail = {"a", "b"};
    CheckAllAccounts(*rig.ctx);
    QCOMPARE(box.fetches, 1);

    // One left and one arrived: the count is the same, so nothing is fetched.
    box.mail = {"a", "z"};
    CheckAllAccounts(*rig.ctx);
    QCOMPARE(box.fetches, 1);
    const Account& a = rig.ctx->accounts[1];
    QCOMPARE(a.AcntMsgCount, 2);
    QVERIFY(a.AcntConnected);
    QVERIFY(a.AcntHasMessages);
    QVERIFY(!a.AcntHasNew);
    QCOMPARE(rig.ctx->messages.at(1, 2).MsgID, QString("b"));
    QVERIFY(!rig.ctx->messages.at(1, 1).New && !rig.ctx->messages.at(1, 2).New);
    QCOMPARE(rig.ctx->check.TotalMessages, 4);

    rig.ctx->options.QuickCheck = 0;
    CheckAllAccounts(*rig.ctx);
    QCOMPARE(box.fetches, 2);
}

void CaptureTest::failedFetchClearsCountsButRemembersIdentifiers() {
    TestRig rig;
    rig.addAccount(1, "Home");
    rig.settings.set("Settings\\Options\\QuickCheck", "0");
    QVERIFY(rig.start());
    FakeMailbox& box = rig.mailbox("Home");
    box.mail = {"a", "b"};
    CheckAllAccounts(*rig.ctx);

    box.mail.append("c");
    box.fetchFailure = 30013;
    CheckAllAccounts(*rig.ctx);
    const Account& a = rig.ctx->accounts[1];
    QCOMPARE(a.AcntMsgCount, 0);
    QVERIFY(!a.AcntConnected);
    QCOMPARE(a.AcntStatusText, QString("Home - Error Accessing Account"));
    QCOMPARE(rig.view.emailTabs.image(1), QString("MailError"));
    QCOMPARE(rig.boxes.boxes.size(), 1);
    QCOMPARE(rig.boxes.boxes[0].title, QString("Velmora - Error Processing Messages"));
    QVERIFY(rig.boxes.boxes[0].text.contains("30013 - scripted failure"));

    // The next good pass calls new only what is new since the last good one.
    box.fetchFailure = 0;
    CheckAllAccounts(*rig.ctx);
    QCOMPARE(a.AcntMsgCount, 3);
    QCOMPARE(a.AcntNewCount, 1);
    int fresh = 0;
    for (int i = 1; i <= 3; ++i)
        fresh += rig.ctx->messages.at(1, i).New ? 1 : 0;
    QCOMPARE(fresh, 1);
}

QTEST_GUILESS_MAIN(CaptureTest)
#include "CaptureTest.moc"
