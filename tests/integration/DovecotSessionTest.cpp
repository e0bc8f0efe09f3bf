#include "app/CommandLine.h"
#include "checking/CheckCycle.h"
#include "checking/PopSession.h"
#include "platform/qt/QtPopClient.h"
#include "support/DovecotFixture.h"
#include "support/SandboxEnvironment.h"
#include "support/TestRig.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace velmora;

// Our client and the logic above it against a real Dovecot, plain and TLS.
class DovecotSessionTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void connectionTest_data();
    void connectionTest();
    void checkBringsEveryMessage();
    void commandLineTestAndCheck();
    void newUserSetsUpAccountsThroughThePage();
    void mailboxShrinksAndGrowsBetweenChecks();
    void missingServerFailsLoudly();

private:
    std::unique_ptr<TestRig> rig(quint16 port, bool secure, const QByteArray& password = "secret");
    static QByteArray message(int n, qint64 bodyBytes = 200);
    QString commandLineOnOneAccount();

    std::unique_ptr<SandboxEnvironment> sandbox;
    DovecotFixture dovecot;
    QtPopClientFactory pop;
};

QByteArray DovecotSessionTest::message(int n, qint64 bodyBytes) {
    QByteArray m = QString("From: \"Smith & Jones\" <sj@example.com>\r\nTo: me@example.com\r\n"
                           "Subject: =?UTF-8?Q?Gr=C3=BC=C3=9Fe?= %1\r\n"
                           "Date: Sat, 21 Nov 2026 09:15:00 +0000\r\n"
                           "Message-ID: <%1@example.com>\r\n\r\n")
                       .arg(n)
                       .toUtf8();
    while (m.size() < bodyBytes)
        m += ".a line that starts with a dot, then text to fill it out to a width\r\n";
    return m;
}

void DovecotSessionTest::initTestCase() {
    // The dates are checked as written in a known zone.
    qputenv("TZ", "UTC");
    tzset();
    sandbox = std::make_unique<SandboxEnvironment>();
    QList<QByteArray> mail;
    for (int n = 1; n <= 3; ++n)
        mail.append(message(n));
    mail.append(message(4, 5 * 1024 * 1024));
    QVERIFY2(dovecot.start({{"user", "secret", mail}, {"empty", "secret", {}}}),
             qPrintable(dovecot.error()));
    qputenv("VELMORA_CA_FILE", dovecot.caFile().toUtf8());
}

std::unique_ptr<TestRig> DovecotSessionTest::rig(quint16 port, bool secure,
                                                 const QByteArray& password) {
    auto r = std::make_unique<TestRig>();
    r->addLoopbackAccount(port, "user", QString::fromUtf8(password));
    r->settings.set("Settings\\AcntSecure1", secure ? "1" : "0");
    r->ctx->svc.pop = &pop;
    r->start();
    return r;
}

void DovecotSessionTest::connectionTest_data() {
    QTest::addColumn<bool>("tlsPort");
    QTest::addColumn<bool>("secure");
    QTest::addColumn<QByteArray>("password");
    QTest::addColumn<QString>("numberLine");
    auto row = [](const char* name, bool tlsPort, bool secure, const char* password,
                  const char* numberLine) {
        QTest::newRow(name) << tlsPort << secure << QByteArray(password) << numberLine;
    };
    row("plain", false, false, "secret", "");
    row("tls", true, true, "secret", "");
    row("wrong password", false, false, "wrong", "30007 - ");
    row("plain on the TLS port", true, false, "secret", "100");
}

void DovecotSessionTest::connectionTest() {
    QFETCH(bool, tlsPort);
    QFETCH(bool, secure);
    QFETCH(QByteArray, password);
    QFETCH(QString, numberLine);
    auto r = rig(tlsPort ? dovecot.tlsPort() : dovecot.plainPort(), secure, password);
    TestAccountConnection(*r->ctx);
    QCOMPARE(r->boxes.boxes.size(), 1);
    const RecordedBoxes::Box& box = r->boxes.boxes[0];
    const bool ok = numberLine.isEmpty();
    QCOMPARE(box.title, QString("Velmora - Test Connection ") + (ok ? "Successfull" : "Failure"));
    QVERIFY2(ok ? box.text.startsWith("The Connection Succeeded.\r\n")
                : box.text.contains("Error Message:\r\n" + numberLine),
             qPrintable(box.text));
    QVERIFY(!r->ctx->check.TestInProgress);
    QVERIFY(r->view.isEnabled("fraMainButtons"));
}

void DovecotSessionTest::checkBringsEveryMessage() {
    auto r = rig(dovecot.tlsPort(), true);
    CheckAllAccounts(*r->ctx);
    QVERIFY2(r->boxes.boxes.isEmpty(), qPrintable(r->boxes.boxes.value(0).text));
    const Account& a = r->ctx->accounts[1];
    QCOMPARE(a.AcntMsgCount, 4);
    QCOMPARE(a.AcntStatusText, QString("Home - 4 Messages"));
    QCOMPARE(r->view.statusBar.progressMax, r->view.statusBar.progressValue);
    int big = 0;
    for (int i = 1; i <= 4; ++i) {
        const MailMessage& m = r->ctx->messages.at(1, i);
        QCOMPARE(m.From, QString("Smith and Jones <sj@example.com>"));
        QVERIFY(m.Subject.startsWith(QString::fromUtf8("Grüße ")));
        // Written beside the parse, cut to twenty characters as ever: 9:15 AM
        // keeps its "A".
        QCOMPARE(m.Date, QString("Nov 21, 2026 09:15:00 AM"));
        QVERIFY(m.Body.startsWith(".a line that starts"));
        QVERIFY(!m.MsgID.isEmpty());
        QVERIFY(m.New);
        if (m.Size.toInt() > 5000)
            ++big;
    }
    QCOMPARE(big, 1);
}

// A settings file of the sandbox with one account on the plain port, as a
// user who has seen the welcome; the command line to run on it.
QString DovecotSessionTest::commandLineOnOneAccount() {
    sandbox->writeOneAccount(dovecot.plainPort(), "user");
    return qEnvironmentVariable("VELMORA_BIN_DIR") + "/velmora-cli";
}

// The command line, in its own process, on a settings file of its own.
void DovecotSessionTest::commandLineTestAndCheck() {
    const QString cli = commandLineOnOneAccount();

    QProcess test;
    test.start(cli, {"test", "1", "--json"});
    QVERIFY(test.waitForFinished(30000));
    QCOMPARE(test.exitCode(), 0);
    const QJsonObject tested = QJsonDocument::fromJson(test.readAllStandardOutput()).object();
    const QJsonObject box = tested["dialogs"].toArray().at(0).toObject();
    QCOMPARE(box["title"].toString(), QString("Velmora - Test Connection Successfull"));
    QCOMPARE(box["icon"].toString(), QString("information"));
    QCOMPARE(box["buttons"].toString(), QString("ok"));

    // A Rules file in the data folder marks what it fits.
    QDir().mkpath(sandbox->dataHome() + "/Kestrum/Velmora");
    QFile rules(sandbox->dataHome() + "/Kestrum/Velmora/Rules.ini");
    QVERIFY(rules.open(QIODevice::WriteOnly));
    rules.write("[Rules]\r\nRuleCount=2\r\n[Rule1]\r\nAction=1\r\nDescCount=1\r\n"
                "Description1=Size GreaterThan 1000 \r\n[Rule2]\r\nAccount=Home\r\n"
                "DescCount=2\r\nDescription1=Subject Contains 2 \r\n"
                "Description2=OR Subject Equals NOT x \r\n");
    rules.close();

    QProcess check;
    check.start(cli, {"check", "--json", "--repeat", "2"});
    QVERIFY(check.waitForFinished(60000));
    QCOMPARE(check.exitCode(), 0);
    const QList<QByteArray> lines = check.readAllStandardOutput().trimmed().split('\n');
    QCOMPARE(lines.size(), 2);
    const QJsonObject second = QJsonDocument::fromJson(lines[1]).object();
    QCOMPARE(second["pass"].toInt(), 2);
    const QJsonObject account = second["accounts"].toArray().at(0).toObject();
    QCOMPARE(account["AcntMsgCount"].toInt(), 4);
    QCOMPARE(account["tabImage"].toString(), QString("MailYes"));
    QCOMPARE(account["messages"].toArray().size(), 4);
    QCOMPARE(account["messages"].toArray().at(0).toObject()["New"].toBool(), false);
    QCOMPARE(account["AcntDeleteCount"].toInt(), 1);
    QCOMPARE(account["AcntSpamCount"].toInt(), 3);
    int deleted = 0;
    for (const QJsonValue m : account["messages"].toArray())
        deleted += m.toObject()["Delete"].toBool() && !m.toObject()["Spam"].toBool() ? 1 : 0;
    QCOMPARE(deleted, 1);

    QProcess wrong;
    wrong.start(cli, {"test", "2"});
    QVERIFY(wrong.waitForFinished(10000));
    QCOMPARE(wrong.exitCode(), 2);
}

// A first user's morning: two accounts made on the page, the first tested
// and checked, the second dragged in front and the first deleted again; the
// settings then hold the one account left, under number 1.
void DovecotSessionTest::newUserSetsUpAccountsThroughThePage() {
    const QString conf = sandbox->configHome() + "/Kestrum/Velmora.conf";
    QFile::remove(conf);
    {
        QSettings file(conf, QSettings::IniFormat);
        file.setValue("Settings/FirstUse", "1");
    }
    const QString port = QString::number(dovecot.plainPort());
    QProcess ui;
    ui.start(qEnvironmentVariable("VELMORA_BIN_DIR") + "/velmora-cli", {"ui", "-"});
    ui.write(QString("click tbrMainButtons/Accounts\n"
                     "click tbrAcnts/AcntAdd\n"
                     "set txtAcntName Home\n"
                     "set txtAcntServer 127.0.0.1\n"
                     "set txtAcntPort %1\n"
                     "set txtAcntLoginID user\n"
                     "set txtAcntPassword secret\n"
                     "click tbrButtons(6)\n"
                     "answer OK\n"
                     "click tbrAcnts/AcntTest\n"
                     "click tbrMainButtons/Email\n"
                     "click tbrButtons(3)\n"
                     "click tbrMainButtons/Accounts\n"
                     "click tbrAcnts/AcntAdd\n"
                     "set txtAcntName Work\n"
                     "set txtAcntServer 127.0.0.1\n"
                     "set txtAcntPort %1\n"
                     "set txtAcntLoginID empty\n"
                     "set txtAcntPassword secret\n"
                     "click tbrButtons(6)\n"
                     "drag TabStripAcnts 2 1\n"
                     "tab TabStripAcnts 2\n"
                     "answer Yes\n"
                     "click tbrAcnts/AcntDelete\n")
                 .arg(port)
                 .toUtf8());
    ui.closeWriteChannel();
    QVERIFY(ui.waitForFinished(60000));
    QCOMPARE(ui.exitCode(), 0);
    const QJsonObject shown = QJsonDocument::fromJson(ui.readAllStandardOutput()).object();
    const QJsonArray boxes = shown["boxes"].toArray();
    QVERIFY(!boxes.isEmpty());
    QCOMPARE(boxes[0].toObject()["title"].toString(),
             QString("Velmora - Test Connection Successfull"));
    QCOMPARE(boxes[0].toObject()["answer"].toString(), QString("OK"));
    QCOMPARE(shown["refused"].toArray().size(), 0);

    QSettings file(conf, QSettings::IniFormat);
    QCOMPARE(file.value("Settings/AcntNum").toString(), QString("1"));
    QCOMPARE(file.value("Settings/AcntName1").toString(), QString("Work"));
    QCOMPARE(file.value("Settings/AcntLoginID1").toString(), QString("empty"));
    QCOMPARE(file.value("Settings/AcntPort1").toString(), port);
    for (const QString& key : file.allKeys())
        QVERIFY2(!key.endsWith('2'), qPrintable(key + " left behind"));
}

// Dovecot keeps its identifiers across sessions, so a pass finds only real
// arrivals new; a shrunk mailbox is not fetched as new mail.
void DovecotSessionTest::mailboxShrinksAndGrowsBetweenChecks() {
    DovecotFixture own;
    QVERIFY2(own.start({{"user", "secret", {message(1), message(2), message(3)}}}),
             qPrintable(own.error()));
    auto r = rig(own.plainPort(), false);
    r->ctx->options.QuickCheck = 0;
    r->ctx->options.MessageSort = 0;
    CheckAllAccounts(*r->ctx);
    const Account& a = r->ctx->accounts[1];
    QCOMPARE(a.AcntNewCount, 3);

    own.removeMessage("user", 0);
    CheckAllAccounts(*r->ctx);
    QCOMPARE(a.AcntMsgCount, 2);
    QVERIFY(!a.AcntHasNew);

    own.addMessage("user", message(4));
    own.addMessage("user", message(5));
    CheckAllAccounts(*r->ctx);
    QCOMPARE(a.AcntMsgCount, 4);
    QCOMPARE(a.AcntNewCount, 1); // measured against the highest count so far
    QVERIFY(r->ctx->messages.at(1, 4).New);
    QVERIFY(r->boxes.boxes.isEmpty());

    const qint64 pid = own.pid();
    own.stop();
    QVERIFY(!QFileInfo::exists(QString("/proc/%1").arg(pid)));
}

void DovecotSessionTest::missingServerFailsLoudly() {
    DovecotFixture missing;
    missing.setProgram("/nonexistent/dovecot");
    QVERIFY(!missing.start({{"user", "secret", {}}}));
    QVERIFY(missing.error().contains("not found"));
}

QTEST_GUILESS_MAIN(DovecotSessionTest)
#include "DovecotSessionTest.moc"
