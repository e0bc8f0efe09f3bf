#include "app/frmMainEvents.h"
#include "checking/CheckCycle.h"
#include "platform/Controls.h"
#include "platform/qt/QtPopClient.h"
#include "support/DovecotFixture.h"
#include "support/SandboxEnvironment.h"
#include "support/ScriptedPopServer.h"
#include "support/TestRig.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QtTest>

using namespace velmora;

// Deleting on a real server: what goes is what the user chose, matched by
// identifier, and nothing goes when the session does not end properly.
class DeleteMessagesTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void selectedRowsAreGoneAtTheNextCheck();
    void commandLineDeletesRows();
    void scriptedServer_data();
    void scriptedServer();

private:
    std::unique_ptr<TestRig> rig(quint16 port, const QString& login);
    static QByteArray message(int n);

    std::unique_ptr<SandboxEnvironment> sandbox;
    DovecotFixture dovecot;
    QtPopClientFactory pop;
};

QByteArray DeleteMessagesTest::message(int n) {
    return QString("From: sender@example.com\r\nTo: me@example.com\r\nSubject: Message %1\r\n"
                   "Date: Sat, 21 Nov 2026 09:15:00 +0000\r\nMessage-ID: <%1@example.com>\r\n"
                   "\r\nBody %1\r\n")
        .arg(n)
        .toUtf8();
}

void DeleteMessagesTest::initTestCase() {
    sandbox = std::make_unique<SandboxEnvironment>();
    QList<QByteArray> five;
    for (int n = 1; n <= 5; ++n)
        five.append(message(n));
    QVERIFY2(dovecot.start({{"window", "secret", five}, {"cli", "secret", five}}),
             qPrintable(dovecot.error()));
}

std::unique_ptr<TestRig> DeleteMessagesTest::rig(quint16 port, const QString& login) {
    auto r = std::make_unique<TestRig>();
    r->settings.set("Settings\\FirstUse", "1");
    r->addLoopbackAccount(port, login, "secret");
    r->ctx->svc.pop = &pop;
    r->start();
    return r;
}

QStringList Subjects(AppContext& ctx) {
    QStringList subjects;
    for (int n = 1; n <= ctx.accounts[1].AcntMsgCount; ++n)
        subjects.append(ctx.messages.at(1, n).Subject);
    return subjects;
}

void DeleteMessagesTest::selectedRowsAreGoneAtTheNextCheck() {
    auto r = rig(dovecot.plainPort(), "window");
    frmMainEvents events(*r->ctx);
    CheckAllAccounts(*r->ctx);
    QCOMPARE(r->ctx->accounts[1].AcntMsgCount, 5);
    r->view.messageList.setRowSelected(2, true);
    r->view.messageList.setRowSelected(4, true);
    events.ToolbarButtonClick(ctl::tbrEmail, "EmailDelete");
    QCOMPARE(r->boxes.boxes.size(), 1); // the question, answered Yes
    QCOMPARE(Subjects(*r->ctx), QStringList({"Message 1", "Message 3", "Message 5"}));

    CheckAllAccounts(*r->ctx);
    QCOMPARE(r->boxes.boxes.size(), 1);
    QCOMPARE(Subjects(*r->ctx), QStringList({"Message 1", "Message 3", "Message 5"}));
    // What stayed is no news.
    QCOMPARE(r->ctx->accounts[1].AcntNewCount, 0);
}

void DeleteMessagesTest::commandLineDeletesRows() {
    sandbox->writeOneAccount(dovecot.plainPort(), "cli");
    const QString cli = qEnvironmentVariable("VELMORA_BIN_DIR") + "/velmora-cli";

    auto run = [&](const QStringList& args) {
        QProcess p;
        p.start(cli, args);
        p.waitForFinished(60000);
        return std::make_pair(p.exitCode(),
                              QJsonDocument::fromJson(p.readAllStandardOutput()).object());
    };
    auto subjects = [](const QJsonObject& pass) {
        QStringList s;
        for (const QJsonValue row : pass["list"].toArray())
            s.append(row.toObject()["cells"].toArray().at(2).toString());
        return s;
    };
    const auto [refusedCode, refused] =
        run({"delete", "1", "--rows", "1,5", "--answer", "no", "--json"});
    QCOMPARE(refusedCode, 0);
    QCOMPARE(refused["dialogs"].toArray().at(0).toObject()["answer"].toString(), QString("No"));
    QCOMPARE(subjects(refused).size(), 5);

    const auto [code, deleted] = run({"delete", "1", "--rows", "1,5", "--json"});
    QCOMPARE(code, 0);
    QCOMPARE(subjects(deleted), QStringList({"Message 2", "Message 3", "Message 4"}));
    QCOMPARE(deleted["tabs"].toArray().at(0).toObject()["caption"].toString(),
             QString("Home  (3)"));

    const auto [checkCode, checked] = run({"check", "--json"});
    QCOMPARE(checkCode, 0);
    QCOMPARE(subjects(checked), QStringList({"Message 2", "Message 3", "Message 4"}));
    QCOMPARE(checked["list"].toArray().at(0).toObject()["picture"].toString(), QString("New"));
    QCOMPARE(run({"delete", "1", "--spam", "--rows", "1"}).first, 2);
}

void DeleteMessagesTest::scriptedServer_data() {
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QStringList>("serverAfter");
    QTest::addColumn<QStringList>("storeAfter");
    QTest::addColumn<QString>("dialog"); // blank for none
    // Row 2 (u2) is chosen in every case.
    QTest::newRow("deleted") << "" << QStringList{"u1", "u3"}
                             << QStringList{"Subject u1", "Subject u3"} << "";
    // u2 went meanwhile; u3 now stands second on the server and stays.
    QTest::newRow("uid vanished") << "vanished" << QStringList{"u1", "u3"}
                                  << QStringList{"Subject u1", "Subject u3"} << "";
    QTest::newRow("connection refused")
        << "refused" << QStringList{"u1", "u2", "u3"}
        << QStringList{"Subject u1", "Subject u2", "Subject u3"} << "Error Message:\r\n10061 - ";
    QTest::newRow("quit failing") << "quit" << QStringList{"u1", "u2", "u3"}
                                  << QStringList{"Subject u1", "Subject u2", "Subject u3"}
                                  << "Error Message:\r\n30015 - ";
}

void DeleteMessagesTest::scriptedServer() {
    QFETCH(QString, fault);
    QFETCH(QStringList, serverAfter);
    QFETCH(QStringList, storeAfter);
    QFETCH(QString, dialog);
    ScriptedPopServer server;
    QVERIFY(server.listen());
    QList<ScriptedPopServer::Message> mail;
    for (const char* uid : {"u1", "u2", "u3"})
        mail.append({"Subject: Subject " + QByteArray(uid) + "\r\n\r\nText\r\n", uid});
    server.setMessages(mail);
    auto r = rig(server.port(), "user");
    r->ctx->options.DeleteConfirmation = 0;
    r->ctx->options.SuppressConnectErrors = 1;
    frmMainEvents events(*r->ctx);
    CheckAllAccounts(*r->ctx);
    QCOMPARE(r->ctx->accounts[1].AcntMsgCount, 3);
    if (fault == "vanished")
        server.setMessages({mail[0], mail[2]});
    else if (fault == "refused")
        r->ctx->accounts[1].AcntPort = QString::number(ScriptedPopServer::closedPort());
    else if (fault == "quit")
        server.failAt(ScriptedPopServer::Stage::Quit);
    r->view.messageList.setRowSelected(2, true);
    // The list's menu entry; the toolbar button is the other tests'.
    events.MenuClick(ctl::mnuEmailDelete);

    QStringList uids;
    for (const ScriptedPopServer::Message& m : server.messages())
        uids.append(QString::fromLatin1(m.uid));
    QCOMPARE(uids, serverAfter);
    QCOMPARE(Subjects(*r->ctx), storeAfter);
    QCOMPARE(r->view.messageList.rowCount(), storeAfter.size());
    if (fault == "vanished")
        QVERIFY(!server.commands().join(' ').contains("DELE"));
    const auto& boxes = r->boxes.boxes;
    QCOMPARE(boxes.size(), dialog.isEmpty() ? 0 : 1);
    if (!dialog.isEmpty()) {
        QCOMPARE(boxes[0].title, QString("Velmora - Delete Connection Failure"));
        QVERIFY2(boxes[0].text.contains(dialog), qPrintable(boxes[0].text));
        QVERIFY(boxes[0].text.contains(
            "Note:  Message(s) were NOT Deleted because the connection failed.\r\n"));
    }
    QVERIFY(!r->ctx->check.InterfaceHeld);
}

QTEST_GUILESS_MAIN(DeleteMessagesTest)
#include "DeleteMessagesTest.moc"
