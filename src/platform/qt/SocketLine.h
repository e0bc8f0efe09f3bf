#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <optional>
#include <utility>
#include <vector>

class QSocketNotifier;
typedef struct ssl_st SSL;
typedef struct x509_store_ctx_st X509_STORE_CTX;

namespace velmora {

class PopReader;
struct OpenSslLibrary;

// The certificate error number the program reports for one of OpenSSL's
// verification results, and the words for a number.
int CertificateError(long x509Error);
QString CertificateText(int code);

// A connected, non-blocking socket, read straight into the reader and
// written from a queue. Over TLS, OpenSSL works on the socket itself: each
// byte is decrypted once, and the trust store is looked up in the system's
// folder only for the issuer a server names rather than read whole.
class SocketLine : public QObject {
    Q_OBJECT
public:
    enum State { Handshaking, Open, Failed, Closed };

    // Loads the TLS library and readies what all TLS connections share, so
    // that it can be done while the server accepts. False, with the reason,
    // when TLS cannot be had at all.
    static bool prepareTls(QString& problem);

    // Takes over `descriptor`. With a host, TLS starts at once: the client
    // hello goes out for that host; without one the line is open.
    SocketLine(int descriptor, const std::optional<QString>& tlsHost, PopReader& reader,
               QObject* parent);
    ~SocketLine() override;

    State state() const { return current; }
    // Once Failed: a certificate error number (0 for any other failure) and
    // what went wrong.
    int certificateError() const { return certificate; }
    QString errorText() const { return problem; }

    // Reads what has arrived into the reader; true when anything did.
    bool pull();
    // Whether bytes came since the last call, read here or by pull().
    bool takeArrived() { return std::exchange(arrived, false); }
    // Queues; the queue goes out in as few writes (and records) as it fits
    // with flush(), so that pipelined commands share them.
    void write(const QByteArray& data);
    void flush();
    // Ends the line politely, after what the socket takes of the queue at
    // once; abort() just drops the socket.
    void close();
    void abort();
    QString peerSubject() const;

Q_SIGNALS:
    // The handshake ended, bytes arrived or the line closed.
    void changed();

private:
    static int verified(int ok, X509_STORE_CTX* store);
    void startTls(const QString& host);
    void handshake();
    void checkPeer();
    void fail(int certificateCode, const QString& text);
    void drop(State to);
    // One read or write of the socket: bytes moved, 0 when the socket must
    // wait, -1 when the line is gone.
    int readSome(char* into, int most);
    int writeSome(const char* from, int length);
    // Whether an OpenSSL call that returned `result` only needs the socket
    // again.
    bool wouldBlock(int result);

    const OpenSslLibrary* lib = nullptr;
    PopReader& reader;
    QByteArray name;      // the host: an address as text, or a name in ASCII without a final dot
    bool address = false; // the host is an IP address
    int fd;
    SSL* ssl = nullptr; // none on a plain line
    QSocketNotifier* readable = nullptr;
    QSocketNotifier* writable = nullptr;
    State current = Open;
    std::vector<int> chainErrors; // in the order the chain was checked
    int certificate = 0;
    QString problem;
    QByteArray outgoing;
    int inFlight = 0; // bytes of `outgoing` an unfinished TLS write holds
    bool arrived = false;
};

} // namespace velmora
