#include "checking/CheckCycle.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class CheckCycleTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void walk_data();
    void walk();
    void suppressionLists_data();
    void suppressionLists();
    void noAccountChecked_data();
    void noAccountChecked();
    void singleCheckOfDisabledAccount();
    void autoCheckCollectsAccountLines();
    void incompleteReport_data();
    void incompleteReport();

private:
    static void fill(FakeMailbox& box, int count) {
        box.mail.clear();
        for (int i = 0; i < count; ++i)
            box.mail.append(QString("m%1").arg(i));
    }
    static std::unique_ptr<TestRig> threeAccounts() {
        auto rig = std::make_unique<TestRig>();
        rig->addAccount(1, "Home");
        rig->addAccount(2, "Work");
        rig->addAccount(3, "Club");
        fill(rig->mailbox("Home"), 2);
        fill(rig->mailbox("Work"), 1);
        fill(rig->mailbox("Club"), 1);
        rig->start();
        return rig;
    }
};

// A failure or a stop in one account leaves the others to be checked.
void CheckCycleTest::walk_data() {
    QTest::addColumn<bool>("stop"); // else the connection fails
    QTest::addColumn<int>("in");
    QTest::addColumn<QStringList>("statuses");
    auto row = [](const char* name, bool stop, int in, const QStringList& statuses) {
        QTest::newRow(name) << stop << in << statuses;
    };
    row("failure between two good ones", false, 2,
        {"Home - 2 Messages", "Work - Error Accessing Account", "Club - 1 Message"});
    row("stop in the first", true, 1, {"Home - User Stopped Retrieval", "Work", "Club"});
    row("stop in the last", true, 3,
        {"Home - 2 Messages", "Work - 1 Message", "Club - User Stopped Retrieval"});
}

void CheckCycleTest::walk() {
    QFETCH(bool, stop);
    QFETCH(int, in);
    QFETCH(QStringList, statuses);
    auto rig = threeAccounts();
    AppContext& ctx = *rig->ctx;
    FakeMailbox& faulty = rig->mailbox(ctx.accounts[in].AcntName);
    if (stop)
        faulty.duringFetch = [&ctx](int) {
            ctx.check.StopRequested = true;
        };
    else
        faulty.connectFailure = 10061;
    ctx.accounts.AcntCurrent = 3;
    CheckAllAccounts(ctx);
    const AccountStore& acc = ctx.accounts;
    for (int n = 1; n <= 3; ++n)
        QCOMPARE(acc[n].AcntStatusText, statuses[n - 1]);
    QCOMPARE(rig->view.emailTabs.image(in), QString("MailError"));
    QCOMPARE(acc[in].AcntMsgCount, 0);
    if (in != 1) {
        QCOMPARE(rig->view.acntTabs.image(1), QString("MailYes"));
        QCOMPARE(rig->view.emailTabs.caption(1), QString("Home  (2)"));
    }
    // A stop shows no dialog, not even "No Accounts".
    QCOMPARE(rig->boxes.boxes.size(), stop ? 0 : 1);
    if (!stop)
        QCOMPARE(rig->boxes.boxes[0].title, QString("Velmora - Error Establishing Connection"));
    // The walk puts the account shown back, and the interface on again.
    QCOMPARE(acc.AcntCurrent, 3);
    QCOMPARE(rig->view.emailTabs.selected(), 3);
    QVERIFY(rig->view.isEnabled("fraMainButtons"));
    QVERIFY(!rig->view.isVisible("tbrButtons(1)"));
    QCOMPARE(acc[0].AcntLastCheckText, QString("Checked: 10:15 AM on Nov 21/26"));
    QVERIFY(!ctx.check.StopRequested);
    QVERIFY(ctx.check.RetiredPopClients.empty() || ctx.check.PopClient);
}

void CheckCycleTest::suppressionLists_data() {
    QTest::addColumn<QString>("option");
    QTest::addColumn<bool>("atConnect");
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("shown");
    auto row = [](const char* name, const char* option, bool atConnect, int number, bool shown) {
        QTest::newRow(name) << option << atConnect << number << shown;
    };
    const char* connect = "SuppressConnectErrors";
    const char* retrieve = "SuppressRetrieveErrors";
    row("connect: time-out silenced", connect, true, 10060, false);
    row("connect: host not found silenced", connect, true, 11001, false);
    row("connect: bad greeting silenced", connect, true, 30003, false);
    row("connect: rejected login always speaks", connect, true, 30007, true);
    row("connect: refused is not in the list", connect, true, 10061, true);
    row("connect: certificate is not in the list", connect, true, 60009, true);
    row("retrieve: lost silenced", retrieve, false, 30013, false);
    row("retrieve: RETR refused silenced", retrieve, false, 30012, false);
    row("retrieve: listing is not in the list", retrieve, false, 30011, true);
    row("retrieve option leaves connecting alone", retrieve, true, 10060, true);
}

void CheckCycleTest::suppressionLists() {
    QFETCH(QString, option);
    QFETCH(bool, atConnect);
    QFETCH(int, number);
    QFETCH(bool, shown);
    TestRig rig;
    rig.addAccount(1, "Home");
    rig.settings.set("Settings\\Options\\" + option, "1");
    fill(rig.mailbox("Home"), 2);
    (atConnect ? rig.mailbox("Home").connectFailure : rig.mailbox("Home").fetchFailure) = number;
    QVERIFY(rig.start());
    CheckAllAccounts(*rig.ctx);
    QCOMPARE(rig.boxes.boxes.size(), shown ? 1 : 0);
    QCOMPARE(rig.ctx->accounts[1].AcntStatusText, QString("Home - Error Accessing Account"));
}

void CheckCycleTest::noAccountChecked_data() {
    QTest::addColumn<int>("accounts");
    QTest::newRow("no accounts") << 0;
    QTest::newRow("all disabled") << 2;
}

void CheckCycleTest::noAccountChecked() {
    QFETCH(int, accounts);
    TestRig rig;
    for (int n = 1; n <= accounts; ++n)
        rig.addAccount(n, QString("A%1").arg(n), false);
    QVERIFY(rig.start());
    CheckAllAccounts(*rig.ctx);
    QCOMPARE(rig.boxes.boxes.size(), 1);
    const RecordedBoxes::Box& box = rig.boxes.boxes[0];
    QCOMPARE(box.title, QString("Velmora - No Accounts Checked"));
    QCOMPARE(box.icon, BoxIcon::Information);
    QCOMPARE(box.text, QString("No Accounts were checked for messags!          \r\n\r\n"
                               "Only Enabled Accounts are checked with\r\n"
                               "the Check All button.\r\n\r\n"
                               "See the Accounts page.\r\n"));
}

void CheckCycleTest::singleCheckOfDisabledAccount() {
    TestRig rig;
    rig.addAccount(1, "Home", false);
    rig.settings.set("Settings\\Options\\UseInterval", "1");
    fill(rig.mailbox("Home"), 1);
    QVERIFY(rig.start());
    const QString next = rig.ctx->check.NextCheckTime;
    rig.clock.set("2026-11-21T11:00:00");
    CheckSingleAccount(*rig.ctx);
    QCOMPARE(rig.ctx->accounts[1].AcntStatusText, QString("Home - 1 Message"));
    QCOMPARE(rig.view.emailTabs.image(1), QString("MailYesDisabled"));
    QCOMPARE(rig.ctx->check.NextCheckTime, next); // tied to AcntEnabled

    rig.ctx->accounts[1].AcntEnabled = 1;
    CheckSingleAccount(*rig.ctx);
    QCOMPARE(rig.ctx->check.NextCheckTime, QString("21/11/26-11:30"));
}

void CheckCycleTest::autoCheckCollectsAccountLines() {
    auto rig = threeAccounts();
    AppContext& ctx = *rig->ctx;
    ctx.accounts[2].AcntEnabled = 0;
    ctx.check.TotalMessages = 99;
    AutoCheckAccounts(ctx);
    QCOMPARE(ctx.check.AccountInfoLines, 2);
    QCOMPARE(ctx.check.AccountInfoText, QString("Account Information:\r\n"
                                                "      Home - 2 Messages\r\n"
                                                "      Club - 1 Message\r\n"));
    QCOMPARE(ctx.check.TotalMessages, 3);
    QCOMPARE(ctx.check.TotalNew, 3);
    QCOMPARE(ctx.accounts[2].AcntStatusText, QString("Work"));
}

void CheckCycleTest::incompleteReport_data() {
    QTest::addColumn<int>("incomplete");
    QTest::addColumn<QString>("word");
    QTest::newRow("one") << 1 << "Account";
    QTest::newRow("two") << 2 << "Accounts";
}

void CheckCycleTest::incompleteReport() {
    QFETCH(int, incomplete);
    QFETCH(QString, word);
    auto rig = threeAccounts();
    AppContext& ctx = *rig->ctx;
    for (int n = 1; n <= incomplete; ++n) {
        ctx.accounts[n].AcntIncomplete = true;
        ctx.check.IncompleteAccounts += ctx.accounts[n].AcntName + "\r\n";
    }
    ReportIncompleteAccounts(ctx);
    QCOMPARE(rig->boxes.boxes.size(), 1);
    const QString text = rig->boxes.boxes[0].text;
    QVERIFY(text.startsWith("The following " + word +
                            " may not have completely               \r\n"
                            "downloaded all messages.\r\nHome\r\n"));
    QVERIFY(text.contains("Try checking the " + word + " again.\r\n"));
    QVERIFY(text.endsWith("temporarily turn off 'Allow Quick Checking'."));
    QVERIFY(!ctx.accounts[1].AcntIncomplete);
    QVERIFY(ctx.check.IncompleteAccounts.isEmpty());
    ReportIncompleteAccounts(ctx);
    QCOMPARE(rig->boxes.boxes.size(), 1);
}

QTEST_GUILESS_MAIN(CheckCycleTest)
#include "CheckCycleTest.moc"
