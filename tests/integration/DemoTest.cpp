#include "DemoMailbox.h"
#include "platform/qt/LockFileInstanceGuard.h"
#include "support/SandboxEnvironment.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QTcpSocket>
#include <QtTest>

using namespace velmora;

// `make demo` as the command line sees it: the demonstration servers, the
// accounts and the rule, checked once, in a folder of the demo's own.
class DemoTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void checkFindsTheDemoMail();
    void refusals_data();
    void refusals();

private:
    QString demo() const {
        return qEnvironmentVariable("VELMORA_BIN_DIR") + "/../tools/velmora-demo";
    }

    std::unique_ptr<SandboxEnvironment> sandbox;
};

void DemoTest::initTestCase() {
    sandbox = std::make_unique<SandboxEnvironment>();
}

void DemoTest::checkFindsTheDemoMail() {
    const QString home = sandbox->root() + "/demo";
    QProcess run;
    run.start(demo(),
              {"--home", home, "--", qEnvironmentVariable("VELMORA_BIN_DIR") + "/velmora-cli",
               "check", "--json"});
    QVERIFY(run.waitForFinished(60000));
    QVERIFY2(run.exitCode() == 0, run.readAllStandardError().constData());
    const QJsonObject pass = QJsonDocument::fromJson(run.readAllStandardOutput()).object();
    QVERIFY2(pass["dialogs"].toArray().isEmpty(),
             QJsonDocument(pass["dialogs"].toArray()).toJson().constData());

    const QDateTime now = QDateTime::currentDateTime();
    const QJsonArray accounts = pass["accounts"].toArray();
    QCOMPARE(accounts.size(), 2);
    const struct {
        const char* name;
        qsizetype count;
        int spam;
        int deleted;
    } expected[] = {{"Home", demo::HomeMailbox(now).size(), 1, 1},
                    {"Work", demo::WorkMailbox(now).size(), 0, 0}};
    for (int i = 0; i < 2; ++i) {
        const QJsonObject account = accounts[i].toObject();
        QCOMPARE(account["AcntName"].toString(), QString(expected[i].name));
        QCOMPARE(account["AcntMsgCount"].toInt(), expected[i].count);
        QCOMPARE(account["AcntSpamCount"].toInt(), expected[i].spam);
        QCOMPARE(account["AcntDeleteCount"].toInt(), expected[i].deleted);
        int attached = 0;
        for (const QJsonValue m : account["messages"].toArray()) {
            const QJsonObject message = m.toObject();
            attached += message["Attach"].toBool() ? 1 : 0;
            QCOMPARE(message["Spam"].toBool(),
                     message["Subject"].toString() == demo::SpamSubject());
            // The HTML ones read as their text: no markup in the body.
            QVERIFY2(!message["Body"].toString().contains("<html>"),
                     qPrintable(message["Subject"].toString()));
        }
        QVERIFY2(attached > 0, expected[i].name);
    }
    QVERIFY(pass["ruleReport"].toBool());
    QVERIFY(pass["TotalMessages"].toInt() >= 30);

    // The demo's settings stayed in its folder, and its servers ended with
    // the program.
    QVERIFY(!QFile::exists(sandbox->configHome() + "/Kestrum/Velmora.conf"));
    QSettings settings(home + "/config/Kestrum/Velmora.conf", QSettings::IniFormat);
    for (const char* key : {"Settings/AcntPort1", "Settings/AcntPort2"}) {
        const int port = settings.value(key).toInt();
        QVERIFY(port > 0);
        QTcpSocket probe;
        probe.connectToHost(QHostAddress::LocalHost, quint16(port));
        QVERIFY2(!probe.waitForConnected(2000), key);
    }
}

void DemoTest::refusals_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("velmoraRunning");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("says");
    const QString home = "--home";
    QTest::newRow("no program") << QStringList{home, "x"} << false << 2 << "usage:";
    QTest::newRow("no folder") << QStringList{"/bin/true"} << false << 2 << "usage:";
    QTest::newRow("Velmora running")
        << QStringList{home, "x", "/bin/true"} << true << 1 << "Velmora is running already";
    QTest::newRow("no such program") << QStringList{home, "x", "/nonexistent/velmora"} << false << 1
                                     << "cannot start /nonexistent/velmora";
}

void DemoTest::refusals() {
    QFETCH(QStringList, arguments);
    QFETCH(bool, velmoraRunning);
    QFETCH(int, exitCode);
    QFETCH(QString, says);
    if (arguments.value(1) == "x")
        arguments[1] = sandbox->root() + "/refused";
    LockFileInstanceGuard running;
    if (velmoraRunning)
        QVERIFY(running.claim());
    QProcess run;
    run.start(demo(), arguments);
    QVERIFY(run.waitForFinished(30000));
    QCOMPARE(run.exitCode(), exitCode);
    const QString err = QString::fromUtf8(run.readAllStandardError());
    QVERIFY2(err.contains(says), qPrintable(err));
}

QTEST_MAIN(DemoTest)
#include "DemoTest.moc"
