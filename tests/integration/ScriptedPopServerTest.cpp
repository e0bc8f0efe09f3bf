#include "support/ScriptedPopServer.h"

#include <QTcpSocket>
#include <QtTest>

#include <memory>

using namespace velmora;
using Stage = ScriptedPopServer::Stage;

namespace {

// Two lines start with a dot and the last line has no CRLF.
const QByteArray kDotted = "Subject: dots\r\n\r\n.hidden\r\n..two\r\nlast";
const QByteArray kPlain = "Subject: plain\r\n\r\nbody\r\n";

// A bare client that keeps everything the server sent.
struct Wire {
    explicit Wire(quint16 port) : socket(new QTcpSocket) {
        QObject::connect(socket.get(), &QIODevice::readyRead, socket.get(),
                         [this] { got += socket->readAll(); });
        socket->connectToHost(QHostAddress::LocalHost, port);
    }
    // Sends `lines` in one write; true once the answer ends with `ending`.
    bool ask(const QByteArray& lines, const QByteArray& ending = "\r\n") {
        got.clear();
        socket->write(lines);
        return QTest::qWaitFor([&] { return got.endsWith(ending); });
    }
    bool login() {
        return QTest::qWaitFor([&] { return got.endsWith("\r\n"); }) &&
               ask("USER user\r\nPASS secret\r\n", "+OK Logged in.\r\n");
    }

    std::unique_ptr<QTcpSocket> socket;
    QByteArray got;
};

} // namespace

// What the client tests take on trust: exact bytes on the wire, and faults
// that fall exactly where they are placed.
class ScriptedPopServerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void multiLineReplies_data();
    void multiLineReplies();
    void partialReplies_data();
    void partialReplies();

private:
    std::unique_ptr<ScriptedPopServer> server;
};

void ScriptedPopServerTest::init() {
    server = std::make_unique<ScriptedPopServer>();
    server->setMessages({{kDotted, "uid-1"}, {kPlain, "uid-2"}});
    QVERIFY(server->listen());
}

void ScriptedPopServerTest::multiLineReplies_data() {
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("RETR stuffs dots, adds the final CRLF")
        << QByteArray("RETR 1")
        << QByteArray("+OK 37 octets\r\nSubject: dots\r\n\r\n..hidden\r\n...two\r\nlast\r\n.\r\n");
    QTest::newRow("TOP 1 1") << QByteArray("TOP 1 1")
                             << QByteArray("+OK\r\nSubject: dots\r\n\r\n..hidden\r\n.\r\n");
    QTest::newRow("LIST: octets as stored")
        << QByteArray("LIST") << QByteArray("+OK\r\n1 37\r\n2 24\r\n.\r\n");
}

void ScriptedPopServerTest::multiLineReplies() {
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, reply);
    Wire client(server->port());
    QVERIFY(client.login());
    QVERIFY2(client.ask(command + "\r\n", "\r\n.\r\n"), client.got.constData());
    QCOMPARE(client.got, reply);
}

void ScriptedPopServerTest::partialReplies_data() {
    QTest::addColumn<bool>("reset");
    QTest::addColumn<Stage>("stage");
    QTest::addColumn<qint64>("afterBytes");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("stall greeting") << false << Stage::Greeting << qint64(0) << QByteArray();
    QTest::newRow("reset greeting") << true << Stage::Greeting << qint64(4) << QByteArray("+OK ");
    // The NOOP sent with the RETR stays unanswered.
    QTest::newRow("stall RETR") << false << Stage::Retr << qint64(10) << QByteArray("+OK 24 oct");
    QTest::newRow("reset RETR") << true << Stage::Retr << qint64(20)
                                << ("+OK 24 octets\r\n" + kPlain).left(20);
}

void ScriptedPopServerTest::partialReplies() {
    QFETCH(bool, reset);
    QFETCH(Stage, stage);
    QFETCH(qint64, afterBytes);
    QFETCH(QByteArray, expected);
    if (reset)
        server->resetAt(stage, 2, afterBytes);
    else
        server->stallAt(stage, 2, afterBytes);
    Wire client(server->port());
    if (stage == Stage::Retr) {
        QVERIFY(client.login());
        client.got.clear();
        client.socket->write("RETR 2\r\nNOOP\r\n");
        QTRY_VERIFY(server->commands().endsWith("NOOP"));
    }
    if (reset) {
        QTRY_COMPARE(client.socket->state(), QAbstractSocket::UnconnectedState);
    } else {
        // Another session's round trips give the stalled one time to misbehave.
        QTRY_COMPARE(server->connections(), 1);
        server->clearFaults();
        Wire other(server->port());
        QVERIFY(other.login());
        QCOMPARE(client.socket->state(), QAbstractSocket::ConnectedState);
    }
    QCOMPARE(client.got, expected);
}

QTEST_GUILESS_MAIN(ScriptedPopServerTest)
#include "ScriptedPopServerTest.moc"
