#pragma once

#include "platform/qt/PopReader.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <functional>
#include <vector>

class QEventLoop;
class QTimer;

namespace velmora {

class SocketLine;

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
    // Queued; it goes out when the next wait begins, with whatever else was
    // sent before it.
    void send(const QByteArray& commandLine);
    // Waits until more bytes are in the reader, or something else happens.
    Wait waitForData();
    // Ends the connection at once; a wait in progress returns Aborted.
    void abort();
    // Ends the connection after sending what the socket takes of the queue.
    void close();
    bool isOpen() const;
    bool wasAborted() const { return aborted; }
    QString peerSubject() const;

    PopReader reader;

private:
    struct Address;

    // Lookup and connection share one time-out.
    OpenResult lookUp(const QString& host, quint16 port, std::vector<Address>& addresses,
                      const QDeadlineTimer& deadline);
    // A connected socket to the first address that takes the connection.
    OpenResult connectTo(const std::vector<Address>& addresses, bool tls, int& socket,
                         const QDeadlineTimer& deadline);
    // Runs the event loop until `done` holds, woken when `descriptor` is
    // ready; gives up at `until`.
    Wait waitFor(int descriptor, QSocketNotifier::Type type, const QDeadlineTimer& until,
                 const std::function<bool()>& done);
    OpenResult tlsFailure(Wait wait) const;
    // Runs the event loop until something wakes it or `ms` (by default the
    // time-out) pass.
    Wait pause(int ms = -1);
    Wait runLoop();
    // Moves what arrived into the reader; true when anything did.
    bool pull();
    bool connected() const;
    // Connected or in the handshake.
    bool alive() const;
    // Ends the wait in progress, if any.
    void wake();

    SocketLine* line = nullptr;
    QEventLoop* loop = nullptr;
    QTimer* silence = nullptr;
    bool wakeRequested = false; // the wait in progress is ending already
    int timeoutMs;
    bool aborted = false;
};

} // namespace velmora
