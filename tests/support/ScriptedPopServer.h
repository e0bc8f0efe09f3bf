#pragma once

#include "support/TestCertificate.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QSet>

#include <optional>

class QTcpServer;

namespace velmora {

// A POP3 server on loopback for tests, scripted to misbehave on demand. It
// lives on the thread and event loop of the client under test and never
// blocks, so a client spinning nested event loops still gets its answers.
// It takes the login "user" with the password "secret".
class ScriptedPopServer : public QObject {
    Q_OBJECT
public:
    // The command stages in the order stageOf() lists their verbs.
    enum class Stage { Greeting, Capa, User, Pass, Stat, List, Uidl, Retr, Top, Dele, Quit };
    struct Message {
        QByteArray data; // the message as stored: CRLF line ends, NOT dot-stuffed
        QByteArray uid;  // what UIDL reports
        bool operator==(const Message&) const = default;
    };

    explicit ScriptedPopServer(QObject* parent = nullptr);
    ~ScriptedPopServer() override;

    // Listens on 127.0.0.1 on a free port. With a certificate the server
    // speaks TLS from the first byte (implicit TLS), presenting the one of
    // the given kind.
    bool listen(const TestCertificate* certificate = nullptr,
                TestCertificate::Kind kind = TestCertificate::Trusted);
    quint16 port() const;
    // A loopback port with nothing listening on it ("connection refused").
    static quint16 closedPort();

    // Default "+OK Scripted POP3 ready".
    void setGreeting(const QByteArray& line) { greeting = line; }
    // capa false: CAPA answers -ERR. pipelining/uidl false: not listed in
    // CAPA; uidl false also makes UIDL answer -ERR. Default all true.
    void setCapabilities(bool withCapa, bool withPipelining, bool withUidl) {
        capa = withCapa;
        pipelining = withPipelining;
        uidl = withUidl;
    }
    // A session works on the messages as they were at its login.
    void setMessages(const QList<Message>& messages) { store = messages; }
    // After a QUIT that followed DELEs, the deleted ones are gone.
    QList<Message> messages() const { return store; }
    // Send RETR/TOP replies slowly: `bytes` per `intervalMs` (0 = all at once, the default).
    void setThrottle(qint64 bytes, int intervalMs) {
        throttleBytes = bytes;
        throttleMs = intervalMs;
    }

    // Faults. They stay in force for every later connection until
    // clearFaults(). Each fires once per connection, at the first point that
    // matches; two faults for the same point fire at its first two
    // occurrences. A faulted command has no effect (a failed QUIT deletes
    // nothing). For Retr, Top and Dele, `message` is the 1-based message
    // number (0 = any); other stages ignore it.
    //
    // Answer with `line` instead. At Greeting and Quit the server then
    // closes the connection.
    void failAt(Stage stage, const QByteArray& line = "-ERR scripted failure", int message = 0) {
        faults.append({FaultKind::Fail, stage, message, line, 0});
    }
    // Send `afterBytes` bytes of the reply, then nothing more, not even to
    // later commands; keep the connection open.
    void stallAt(Stage stage, int message = 0, qint64 afterBytes = 0) {
        faults.append({FaultKind::Stall, stage, message, {}, afterBytes});
    }
    // Send `afterBytes` bytes of the reply, then abort the connection.
    void resetAt(Stage stage, int message = 0, qint64 afterBytes = 0) {
        faults.append({FaultKind::Reset, stage, message, {}, afterBytes});
    }
    // Send the reply `bytes` at a time, one portion every `intervalMs`.
    void trickleAt(Stage stage, int message, qint64 bytes, int intervalMs) {
        faults.append({FaultKind::Trickle, stage, message, {}, bytes, intervalMs});
    }
    // Send the reply's status line, then `pattern` over and over, as fast as
    // the client takes it, until the client goes.
    void floodAt(Stage stage, int message, const QByteArray& pattern) {
        faults.append({FaultKind::Flood, stage, message, pattern, 0});
    }
    void clearFaults() { faults.clear(); }

    // What the clients did. Every command line received, without CRLF, in
    // order, over all connections.
    QList<QByteArray> commands() const { return commandLog; }
    // The command lines grouped as they arrived in one read from the socket (shows pipelining).
    QList<QList<QByteArray>> batches() const { return batchLog; }
    // Connections accepted so far; with TLS, counted before the handshake.
    int connections() const { return accepted; }

private:
    class Session;
    enum class FaultKind { Fail, Stall, Reset, Trickle, Flood };
    struct Fault {
        FaultKind kind = FaultKind::Fail;
        Stage stage = Stage::Greeting;
        int message = 0;
        QByteArray line;       // for Flood, the pattern
        qint64 afterBytes = 0; // for Trickle, the bytes of a portion
        int intervalMs = 0;
    };

    // The first fault at this point that has not fired in `fired` yet; marks it fired.
    std::optional<Fault> takeFault(Stage stage, int message, QSet<int>& fired) const;
    void acceptPending();

    QTcpServer* server = nullptr;
    bool tls = false;
    QByteArray greeting = "+OK Scripted POP3 ready";
    bool capa = true;
    bool pipelining = true;
    bool uidl = true;
    QList<Message> store;
    qint64 throttleBytes = 0;
    int throttleMs = 0;
    QList<Fault> faults;
    QList<QByteArray> commandLog;
    QList<QList<QByteArray>> batchLog;
    int accepted = 0;
};

} // namespace velmora
