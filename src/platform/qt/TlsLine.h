#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <utility>
#include <vector>

class QSocketNotifier;
typedef struct ssl_st SSL;
typedef struct x509_store_ctx_st X509_STORE_CTX;

namespace velmora {

class PopReader;
struct OpenSslLibrary;

// TLS over a connected, non-blocking socket, done by OpenSSL on the socket
// itself: each byte is decrypted once, straight into the reader, and the
// trust store is looked up in the system's folder only for the issuer a
// server names rather than read whole.
class TlsLine : public QObject {
    Q_OBJECT
public:
    enum State { Handshaking, Open, Failed, Closed };

    // Loads the library and readies what all connections share, so that it
    // can be done while the server accepts. False, with the reason, when
    // TLS cannot be had at all.
    static bool prepare(QString& problem);

    // Takes over `descriptor` and sends the client hello for `host`.
    TlsLine(int descriptor, const QString& host, PopReader& reader, QObject* parent);
    ~TlsLine() override;

    State state() const { return current; }
    // Once Failed: a certificate error number (0 for any other failure) and
    // what went wrong.
    int certificateError() const { return certificate; }
    QString errorText() const { return problem; }

    // Reads what has arrived into the reader; true when anything did.
    bool pull();
    // Whether bytes came since the last call, read here or by pull().
    bool takeArrived() { return std::exchange(arrived, false); }
    // Queues; the queue goes out in as few records as it fits with flush(),
    // so that pipelined commands share them.
    void write(const QByteArray& data);
    void flush();
    // Ends the session politely; abort() just drops the socket.
    void close();
    void abort();
    QString peerSubject() const;

Q_SIGNALS:
    // The handshake ended, bytes arrived or the line closed.
    void changed();

private:
    static int verified(int ok, X509_STORE_CTX* store);
    void handshake();
    void checkPeer();
    void fail(int certificateCode, const QString& text);
    void drop(State to);
    // Whether a call that returned `result` only needs the socket again.
    bool wouldBlock(int result);

    const OpenSslLibrary* lib;
    PopReader& reader;
    QByteArray name; // the host: an address as text, or a name in ASCII without a final dot
    bool address;    // the host is an IP address
    int fd;
    SSL* ssl = nullptr;
    QSocketNotifier* readable = nullptr;
    QSocketNotifier* writable = nullptr;
    State current = Handshaking;
    std::vector<int> chainErrors; // in the order the chain was checked
    int certificate = 0;
    QString problem;
    QByteArray outgoing;
    int inFlight = 0; // bytes of `outgoing` an unfinished write holds
    bool arrived = false;
};

} // namespace velmora
