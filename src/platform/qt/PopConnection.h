#pragma once

#include "platform/qt/PopReader.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSslError>
#include <QString>

#include <functional>

class QAbstractSocket;
class QEventLoop;
class QSslSocket;
class QTimer;

namespace velmora {

// The certificate error number the program reports for one of Qt's
// verification errors, and the words for a number. Users and the support
// address have long known both.
int CertificateError(QSslError::SslError error);
QString CertificateText(int code);

// The socket under the POP client, plain or TLS from the first byte, with
// waits that keep the event loop turning and end after a time-out of
// silence, or when a reply comes too slowly. Any handler that runs during a
// wait may call abort().
class PopConnection : public QObject {
    Q_OBJECT
public:
    enum Wait { Data, TimedOut, Closed, Aborted, TooSlow };

    // The slowest pace a reply may keep up: a reply of n bytes may take the
    // time-out plus n bytes at this rate, so a server that trickles fails
    // in bounded time however often it sends.
    static constexpr qint64 FloorBytesPerSecond = 10 * 1024;

    // What ended an attempt to connect.
    struct OpenResult {
        enum Kind {
            Open,
            TimedOut,
            Refused,
            HostNotFound,
            Reset,
            TlsFailed,
            CertificateFailed,
            OtherError,
            Aborted
        } kind = Open;
        int certificateError = 0;
        QString text;
    };

    explicit PopConnection(int timeoutSeconds);
    ~PopConnection() override;

    // Connecting (with the name lookup) and the TLS handshake have a
    // time-out each.
    OpenResult open(const QString& host, quint16 port, bool tls);
    // Queued by the socket; it goes out when the next wait begins, with
    // whatever else was sent before it.
    void send(const QByteArray& commandLine);
    // A reply of about `expectedBytes` begins: its deadline starts now.
    void startReply(qint64 expectedBytes = 0);
    // Waits until more bytes are in the reader, or something else happens.
    Wait waitForData();
    // Ends the connection at once; a wait in progress returns Aborted.
    void abort();
    // Ends the connection after sending what is queued.
    void close();
    bool isOpen() const;
    bool wasAborted() const { return aborted; }
    QString peerSubject() const;

    PopReader reader;

private:
    OpenResult failure(Wait wait) const;
    // Runs the event loop until `done` holds, the socket closes, silence
    // lasts a time-out or the connection is aborted.
    Wait waitUntil(const std::function<bool()>& done);
    // Runs the event loop until something wakes it or the time-out passes.
    Wait pause();
    // Moves what arrived into the reader; true when anything did.
    bool pull();
    // Ends the wait in progress, if any.
    void wake();

    QAbstractSocket* socket = nullptr;
    QSslSocket* ssl = nullptr; // the same socket, when it speaks TLS
    QEventLoop* loop = nullptr;
    QTimer* silence = nullptr;
    bool reached = false;       // the server took the connection
    bool wakeRequested = false; // the wait in progress is ending already
    int timeoutMs;
    bool aborted = false;
    // The reply being read: since when, how large it was said to be, and
    // what has come of it.
    QElapsedTimer replyClock;
    qint64 replyExpected = 0;
    qint64 replyReceived = 0;
};

} // namespace velmora
