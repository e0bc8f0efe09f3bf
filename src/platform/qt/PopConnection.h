#pragma once

#include "platform/qt/PopReader.h"

#include <QObject>
#include <QString>

class QAbstractSocket;
class QEventLoop;
class QTimer;

namespace velmora {

class TlsLine;

// The socket under the POP client, plain or TLS from the first byte, with
// waits that keep the event loop turning and end after a time-out of
// silence. Any handler that runs during a wait may call abort().
class PopConnection : public QObject {
    Q_OBJECT
public:
    enum Wait { Data, TimedOut, Closed, Aborted };

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

    OpenResult open(const QString& host, quint16 port, bool tls);
    void send(const QByteArray& commandLine);
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
    void attach(QAbstractSocket* line);
    OpenResult failure(Wait wait) const;
    OpenResult tlsFailure(Wait wait) const;
    Wait runLoop();
    // Moves what arrived into the reader; true when anything did.
    bool pull();
    bool connected() const;
    // Connecting, connected or in the handshake.
    bool alive() const;
    // Ends the wait in progress, if any.
    void wake();

    QAbstractSocket* socket = nullptr; // plain, and while connecting
    TlsLine* tls = nullptr;            // in place of the socket once connected
    QEventLoop* loop = nullptr;
    QTimer* silence = nullptr;
    bool wakeRequested = false; // the wait in progress is ending already
    int timeoutMs;
    bool aborted = false;
};

} // namespace velmora
