#include "support/ScriptedPopServer.h"

#include "support/TestCertificate.h"

#include <QFile>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

namespace velmora {

namespace {

using Stage = ScriptedPopServer::Stage;

// In the order of Stage, which starts with the greeting.
std::optional<Stage> stageOf(const QByteArray& verb) {
    static const QList<QByteArray> verbs = {"",     "CAPA", "USER", "PASS", "STAT", "LIST",
                                            "UIDL", "RETR", "TOP",  "DELE", "QUIT"};
    const qsizetype i = verbs.indexOf(verb);
    return i > 0 ? std::optional(Stage(i)) : std::nullopt;
}

// Dot-stuffs `body` and ends it with the terminating dot.
QByteArray multiLine(QByteArray body) {
    body.replace("\n.", "\n..");
    if (body.startsWith('.'))
        body.prepend('.');
    if (!body.isEmpty() && !body.endsWith("\r\n"))
        body += "\r\n";
    return body + ".\r\n";
}

// The header, the blank line and the first `lines` lines of the body.
QByteArray topOf(const QByteArray& data, int lines) {
    const qsizetype blank = data.indexOf("\r\n\r\n");
    if (blank < 0)
        return data;
    qsizetype end = blank + 4;
    for (int i = 0; i < lines && end < data.size(); ++i) {
        const qsizetype next = data.indexOf("\r\n", end);
        end = next < 0 ? data.size() : next + 2;
    }
    return data.left(end);
}

QByteArray crlf(const QByteArray& text) {
    return text + "\r\n";
}

} // namespace

// One client connection: reads command lines, answers them strictly in
// order and applies the server's faults.
class ScriptedPopServer::Session : public QObject {
public:
    Session(ScriptedPopServer* owner, QTcpSocket* client)
        : QObject(owner), server(owner), socket(client) {
        socket->setParent(this);
        connect(socket, &QTcpSocket::disconnected, this, [this] {
            gone = true;
            dripTimer.stop();
            deleteLater();
        });
        connect(socket, &QIODevice::readyRead, this, &Session::readLines);
        connect(socket, &QIODevice::bytesWritten, this, &Session::abortWhenWritten);
        if (auto* ssl = qobject_cast<QSslSocket*>(socket))
            connect(ssl, &QSslSocket::encryptedBytesWritten, this, &Session::abortWhenWritten);
        connect(&dripTimer, &QTimer::timeout, this, &Session::drip);
        connect(socket, &QIODevice::bytesWritten, this, &Session::topUp);

        const auto fault = server->takeFault(Stage::Greeting, 0, fired);
        const bool refused = fault && fault->kind == FaultKind::Fail;
        deliver(fault, crlf(server->greeting), false, refused ? After::Close : After::Continue);
        // A TLS client may have sent its first command with the end of the handshake.
        if (socket->bytesAvailable() > 0)
            readLines();
    }

private:
    enum class After { Continue, Stall, Abort, Close };

    void readLines() {
        input += socket->readAll();
        QList<QByteArray> batch;
        for (qsizetype end = input.indexOf('\n'); end >= 0; end = input.indexOf('\n')) {
            QByteArray command = input.left(end);
            input.remove(0, end + 1);
            if (command.endsWith('\r'))
                command.chop(1);
            batch.append(command);
        }
        if (batch.isEmpty())
            return;
        server->commandLog += batch;
        server->batchLog.append(batch);
        queue += batch;
        pump();
    }

    void pump() {
        while (!busy && !held && !gone && !queue.isEmpty())
            handle(queue.takeFirst());
    }

    void handle(const QByteArray& command) {
        const qsizetype space = command.indexOf(' ');
        const QByteArray verb = command.split(' ').first().toUpper();
        const QByteArray rest = space < 0 ? QByteArray() : command.mid(space + 1);
        const auto stage = stageOf(verb);
        std::optional<Fault> fault;
        if (stage)
            fault = server->takeFault(*stage, rest.split(' ').value(0).toInt(), fired);

        // A failed command has no effect, so it never reaches answer().
        const bool fails = fault && fault->kind == FaultKind::Fail;
        const QByteArray reply = fails ? QByteArray() : answer(verb, rest);
        // Only a QUIT that is answered in full ends the session with its deletions.
        if (verb == "QUIT" && loggedIn && !fault) {
            for (qsizetype i = 0; i < box.size(); ++i)
                if (deleted[i])
                    server->store.removeOne(box[i]);
        }
        deliver(fault, reply, verb == "RETR" || verb == "TOP",
                verb == "QUIT" ? After::Close : After::Continue);
    }

    QByteArray answer(const QByteArray& verb, const QByteArray& rest) {
        if (verb == "CAPA") {
            if (!server->capa)
                return crlf("-ERR CAPA not supported");
            QByteArray list = crlf("+OK Capability list follows") + crlf("USER") + crlf("TOP");
            if (server->uidl)
                list += crlf("UIDL");
            if (server->pipelining)
                list += crlf("PIPELINING");
            return list + crlf(".");
        }
        if (verb == "QUIT")
            return crlf("+OK Bye");
        if (loggedIn)
            return transaction(verb, rest.isEmpty() ? QList<QByteArray>() : rest.split(' '));
        if (verb == "USER") {
            givenUser = rest;
            return crlf("+OK");
        }
        if (verb == "PASS") {
            // The password is the rest of the line: it may contain spaces.
            const bool right = givenUser == "user" && rest == "secret";
            givenUser.reset();
            if (!right)
                return crlf("-ERR [AUTH] Authentication failed.");
            loggedIn = true;
            box = server->store;
            deleted = QList<bool>(box.size(), false);
            return crlf("+OK Logged in.");
        }
        return crlf("-ERR Unknown command or not logged in");
    }

    QByteArray transaction(const QByteArray& verb, const QList<QByteArray>& args) {
        const QByteArray noSuch = crlf("-ERR No such message");
        if (verb == "STAT") {
            qint64 count = 0;
            qint64 octets = 0;
            for (qsizetype i = 0; i < box.size(); ++i) {
                if (!deleted[i]) {
                    ++count;
                    octets += box[i].data.size();
                }
            }
            return crlf("+OK " + QByteArray::number(count) + ' ' + QByteArray::number(octets));
        }
        if (verb == "LIST" || (verb == "UIDL" && server->uidl)) {
            const auto item = [&](qsizetype i) {
                return QByteArray::number(i + 1) + ' ' +
                       (verb == "LIST" ? QByteArray::number(box[i].data.size()) : box[i].uid);
            };
            if (!args.isEmpty()) {
                const int i = index(args[0]);
                return i < 0 ? noSuch : crlf("+OK " + item(i));
            }
            QByteArray list = crlf("+OK");
            for (qsizetype i = 0; i < box.size(); ++i)
                if (!deleted[i])
                    list += crlf(item(i));
            return list + crlf(".");
        }
        if (verb == "RETR" || verb == "TOP" || verb == "DELE") {
            const int i = index(args.value(0));
            bool counted = true;
            const int lines = args.value(1).toInt(&counted);
            if (i < 0 || (verb == "TOP" && (!counted || lines < 0)))
                return noSuch;
            if (verb == "DELE") {
                deleted[i] = true;
                return crlf("+OK Marked to be deleted.");
            }
            const QByteArray& data = box[i].data;
            if (verb == "TOP")
                return crlf("+OK") + multiLine(topOf(data, lines));
            return crlf("+OK " + QByteArray::number(data.size()) + " octets") + multiLine(data);
        }
        if (verb == "NOOP")
            return crlf("+OK");
        return crlf("-ERR Unknown command");
    }

    int index(const QByteArray& number) const {
        bool ok = false;
        const int n = number.toInt(&ok);
        if (!ok || n < 1 || n > box.size() || deleted[n - 1])
            return -1;
        return n - 1;
    }

    // Sends `reply`, or what `fault` makes of it.
    void deliver(const std::optional<Fault>& fault, const QByteArray& reply, bool slow,
                 After after) {
        if (!fault)
            return send(reply, slow, after);
        switch (fault->kind) {
        case FaultKind::Fail:
            return send(crlf(fault->line), false, after);
        case FaultKind::Trickle:
            return send(reply, true, after, fault->afterBytes, fault->intervalMs);
        case FaultKind::Flood:
            socket->write(reply.left(reply.indexOf('\n') + 1));
            held = true;
            // Portions of about 256 KB, so the server's own buffer stays small.
            flood = fault->line.repeated(qMax<qsizetype>(1, 256 * 1024 / fault->line.size()));
            return topUp();
        case FaultKind::Stall:
        case FaultKind::Reset:
            break;
        }
        send(reply.left(fault->afterBytes), slow,
             fault->kind == FaultKind::Stall ? After::Stall : After::Abort);
    }

    // Without `chunk`, a slow reply goes at the server's throttle.
    void send(const QByteArray& data, bool slow, After after, qint64 chunk = 0, int ms = 0) {
        if (slow && chunk <= 0) {
            chunk = server->throttleBytes;
            ms = server->throttleMs;
        }
        if (slow && chunk > 0 && ms > 0 && !data.isEmpty()) {
            // Later commands wait until the timer has sent it all.
            slowData = data;
            slowChunk = chunk;
            slowAfter = after;
            busy = true;
            dripTimer.start(ms);
            return;
        }
        socket->write(data);
        finish(after);
    }

    void topUp() {
        while (!flood.isEmpty() && !gone && socket->bytesToWrite() < 1024 * 1024)
            socket->write(flood);
    }

    void drip() {
        socket->write(slowData.left(slowChunk));
        slowData.remove(0, slowChunk);
        if (!slowData.isEmpty())
            return;
        dripTimer.stop();
        busy = false;
        finish(slowAfter);
        pump();
    }

    void finish(After after) {
        if (after == After::Stall) {
            held = true;
        } else if (after == After::Close) {
            gone = true;
            // Queued for the same reason as the abort below.
            QMetaObject::invokeMethod(
                this, [this] { socket->disconnectFromHost(); }, Qt::QueuedConnection);
        } else if (after == After::Abort) {
            gone = aborting = true;
            abortWhenWritten();
        }
    }

    // abort() drops what is still buffered, so the partial reply must have left
    // first. A TLS socket may report its bytes written before they reach its TCP
    // socket, hence the second look. The abort is queued: aborting a TLS socket
    // inside its own signal destroys state it still uses.
    void abortWhenWritten() {
        const auto unwritten = [this] {
            const auto* ssl = qobject_cast<QSslSocket*>(socket);
            return socket->bytesToWrite() + (ssl ? ssl->encryptedBytesToWrite() : 0);
        };
        if (!aborting || unwritten() > 0)
            return;
        aborting = false;
        QMetaObject::invokeMethod(
            this,
            [this, unwritten] {
                if (unwritten() > 0)
                    aborting = true; // the next bytesWritten looks again
                else
                    socket->abort();
            },
            Qt::QueuedConnection);
    }

    ScriptedPopServer* server;
    QTcpSocket* socket;
    QTimer dripTimer;
    QByteArray input;
    QList<QByteArray> queue;
    QByteArray slowData;
    qint64 slowChunk = 0;
    QByteArray flood; // sent again whenever the socket has room
    After slowAfter = After::Continue;
    bool busy = false;     // a throttled reply is still going out
    bool held = false;     // stalled: nothing more is answered
    bool gone = false;     // closing or aborting
    bool aborting = false; // abort once the written bytes have left
    std::optional<QByteArray> givenUser;
    bool loggedIn = false;
    QList<Message> box;
    QList<bool> deleted;
    QSet<int> fired;
};

ScriptedPopServer::ScriptedPopServer(QObject* parent) : QObject(parent) {}

ScriptedPopServer::~ScriptedPopServer() = default;

bool ScriptedPopServer::listen(const TestCertificate* certificate, TestCertificate::Kind kind) {
    delete server;
    server = nullptr;
    tls = certificate != nullptr;
    if (tls) {
        QFile certFile(certificate->certFile(kind));
        QFile keyFile(certificate->keyFile(kind));
        if (!certFile.open(QIODevice::ReadOnly) || !keyFile.open(QIODevice::ReadOnly))
            return false;
        const QSslCertificate cert(&certFile, QSsl::Pem);
        const QSslKey key(keyFile.readAll(), QSsl::Ec, QSsl::Pem);
        if (cert.isNull() || key.isNull())
            return false;
        QSslConfiguration config = QSslConfiguration::defaultConfiguration();
        config.setLocalCertificate(cert);
        config.setPrivateKey(key);
        config.setPeerVerifyMode(QSslSocket::VerifyNone);
        auto* tlsServer = new QSslServer(this);
        tlsServer->setSslConfiguration(config);
        connect(tlsServer, &QSslServer::startedEncryptionHandshake, this, [this] { ++accepted; });
        server = tlsServer;
    } else {
        server = new QTcpServer(this);
    }
    connect(server, &QTcpServer::pendingConnectionAvailable, this,
            &ScriptedPopServer::acceptPending);
    return server->listen(QHostAddress::LocalHost, 0);
}

quint16 ScriptedPopServer::port() const {
    return server ? server->serverPort() : 0;
}

quint16 ScriptedPopServer::closedPort() {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}

std::optional<ScriptedPopServer::Fault> ScriptedPopServer::takeFault(Stage stage, int message,
                                                                     QSet<int>& fired) const {
    const bool numbered = stage == Stage::Retr || stage == Stage::Top || stage == Stage::Dele;
    for (int i = 0; i < faults.size(); ++i) {
        const Fault& fault = faults[i];
        if (fault.stage != stage || fired.contains(i))
            continue;
        if (numbered && fault.message != 0 && fault.message != message)
            continue;
        fired.insert(i);
        return fault;
    }
    return std::nullopt;
}

void ScriptedPopServer::acceptPending() {
    while (QTcpSocket* socket = server->nextPendingConnection()) {
        if (!tls)
            ++accepted;
        new Session(this, socket);
    }
}

} // namespace velmora
