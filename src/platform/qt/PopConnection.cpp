#include "platform/qt/PopConnection.h"

#include <QDirIterator>
#include <QEventLoop>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTcpSocket>
#include <QTimer>

#include <iterator>

namespace velmora {

namespace {

constexpr int UnknownCertificateError = -1;

// The words for the numbers 0 to 22, which are Qt's own for its first
// verification errors; 13 has none of its own.
constexpr const char* CertificateTexts[] = {
    "No error",
    "The issuer certificate could not be found",
    "The certificate signature could not be decrypted",
    "The public key in the certificate could not be read",
    "The signature of the certificate is invalid",
    "The certificate is not yet valid",
    "The certificate has expired",
    "The certificate's notBefore field contains an invalid time",
    "The certificate's notAfter field contains an invalid time",
    "The certificate is self-signed, and untrusted",
    "The root certificate of the certificate chain is self-signed, and untrusted",
    "The issuer certificate of a locally looked up certificate could not be found",
    "No certificates could be verified",
    "Unknown error",
    "One of the CA certificates is invalid",
    "The basicConstraints path length parameter has been exceeded",
    "The supplied certificate is unsuitable for this purpose",
    "The root CA certificate is not trusted for this purpose",
    "The root CA certificate is marked to reject the specified purpose",
    "The current candidate issuer certificate was rejected because its subject name did not "
    "match the issuer name of the current certificate",
    "The current candidate issuer certificate was rejected because its issuer name and serial "
    "number was present and did not match the authority key identifier of the current "
    "certificate",
    "The peer did not present any certificate",
    "The host name did not match any of the valid hosts for this certificate"};
static_assert(std::size(CertificateTexts) == QSslError::HostNameMismatch + 1);

// Qt's OpenSSL backend looks a server's issuer up in the system's folders
// (/etc/ssl/certs and the like), and reads neither SSL_CERT_FILE nor
// SSL_CERT_DIR. The CAs those name, taken as OpenSSL's own tools take them,
// and the file VELMORA_CA_FILE names are added, whole, at each connection.
// Files are added one by one: a list of CAs would end the lookup in the
// system's folders.
QSslConfiguration TlsConfiguration() {
    QSslConfiguration conf = QSslConfiguration::defaultConfiguration();
    conf.setPeerVerifyMode(QSslSocket::VerifyPeer);
    for (const char* file : {"SSL_CERT_FILE", "VELMORA_CA_FILE"}) {
        const QString path = qEnvironmentVariable(file);
        if (!path.isEmpty())
            conf.addCaCertificates(path);
    }
    for (const QString& folder :
         qEnvironmentVariable("SSL_CERT_DIR").split(':', Qt::SkipEmptyParts)) {
        QDirIterator files(folder, QDir::Files);
        while (files.hasNext())
            conf.addCaCertificates(files.next());
    }
    return conf;
}

} // namespace

int CertificateError(QSslError::SslError error) {
    return error > QSslError::NoError && error <= QSslError::HostNameMismatch
               ? int(error)
               : UnknownCertificateError;
}

QString CertificateText(int code) {
    return QString::fromLatin1(code >= 0 && code < int(std::size(CertificateTexts))
                                   ? CertificateTexts[code]
                                   : "Unknown error");
}

PopConnection::PopConnection(int timeoutSeconds) : timeoutMs(qMax(1, timeoutSeconds) * 1000) {}

PopConnection::~PopConnection() {
    wake();
    if (socket) {
        socket->disconnect(this);
        socket->abort();
    }
}

PopConnection::OpenResult PopConnection::open(const QString& host, quint16 port, bool tls) {
    // Wired once: each wait only runs the loop, so a large mailbox's
    // thousands of waits cost little.
    silence = new QTimer(this);
    silence->setSingleShot(true);
    silence->setInterval(timeoutMs);
    connect(silence, &QTimer::timeout, this, &PopConnection::wake);

    if (tls) {
        ssl = new QSslSocket(this);
        ssl->setSslConfiguration(TlsConfiguration());
        socket = ssl;
        connect(ssl, &QSslSocket::encrypted, this, &PopConnection::wake);
    } else {
        socket = new QTcpSocket(this);
    }
    connect(socket, &QAbstractSocket::connected, this, [this] {
        reached = true;
        // Commands are a few bytes each and wait for their answers.
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        wake();
    });
    connect(socket, &QAbstractSocket::errorOccurred, this, &PopConnection::wake);
    connect(socket, &QAbstractSocket::disconnected, this, &PopConnection::wake);
    connect(socket, &QIODevice::readyRead, this, &PopConnection::wake);

    // Blanks pasted around a host name would otherwise go into the name
    // the certificate is checked against.
    const QString server = host.trimmed();
    if (ssl)
        ssl->connectToHostEncrypted(server, port);
    else
        socket->connectToHost(server, port);
    const Wait wait = waitUntil([this] {
        return ssl ? ssl->isEncrypted() : socket->state() == QAbstractSocket::ConnectedState;
    });
    if (wait == Data)
        return {};
    if (wait == Aborted)
        return {OpenResult::Aborted, 0, QString()};
    const OpenResult result = failure(wait);
    // A handshake that timed out must not finish later on its own.
    socket->abort();
    return result;
}

PopConnection::OpenResult PopConnection::failure(Wait wait) const {
    OpenResult result;
    result.text = socket->errorString();
    if (wait == TimedOut) {
        result.kind = OpenResult::TimedOut;
        return result;
    }
    // Qt names a certificate for another host before any fault of its chain,
    // which says more about a wrong setting.
    const QList<QSslError> certificate = ssl ? ssl->sslHandshakeErrors() : QList<QSslError>();
    if (!certificate.isEmpty()) {
        result.kind = OpenResult::CertificateFailed;
        result.certificateError = CertificateError(certificate.first().error());
        result.text = CertificateText(result.certificateError);
        return result;
    }
    switch (socket->error()) {
    case QAbstractSocket::HostNotFoundError:
        result.kind = OpenResult::HostNotFound;
        break;
    case QAbstractSocket::ConnectionRefusedError:
        result.kind = OpenResult::Refused;
        break;
    case QAbstractSocket::SocketTimeoutError:
        result.kind = OpenResult::TimedOut;
        break;
    case QAbstractSocket::SslHandshakeFailedError:
    case QAbstractSocket::SslInternalError:
    case QAbstractSocket::SslInvalidUserDataError:
        result.kind = OpenResult::TlsFailed;
        break;
    case QAbstractSocket::RemoteHostClosedError:
        // Hanging up on the TLS client hello: no TLS there.
        result.kind = ssl && reached ? OpenResult::TlsFailed : OpenResult::Reset;
        break;
    default:
        result.kind = OpenResult::OtherError;
        break;
    }
    return result;
}

PopConnection::Wait PopConnection::waitUntil(const std::function<bool()>& done) {
    while (!done()) {
        if (socket->state() == QAbstractSocket::UnconnectedState)
            return Closed;
        const Wait wait = pause();
        if (wait != Data)
            return wait;
    }
    return Data;
}

void PopConnection::send(const QByteArray& commandLine) {
    if (socket && socket->state() == QAbstractSocket::ConnectedState)
        socket->write(commandLine + "\r\n");
}

void PopConnection::startReply(qint64 expectedBytes) {
    replyClock.start();
    replyExpected = qMax<qint64>(0, expectedBytes);
    replyReceived = 0;
}

PopConnection::Wait PopConnection::waitForData() {
    if (aborted)
        return Aborted;
    // Read first: should the line be gone, what the server said before it
    // hung up is still read.
    if (pull())
        return Data;
    if (!socket || socket->state() == QAbstractSocket::UnconnectedState)
        return Closed;
    // More is needed: a reply past its deadline fails here, however often
    // the server sends a little. The deadline is the time-out plus the
    // reply's size at the floor rate; bytes beyond the size given earn time
    // at the same rate. Silence is still the time-out's.
    const double allowedMs =
        timeoutMs + double(qMax(replyExpected, replyReceived)) * 1000.0 / FloorBytesPerSecond;
    if (replyClock.isValid() && double(replyClock.elapsed()) > allowedMs)
        return TooSlow;
    const Wait wait = pause();
    if (wait == Aborted)
        return Aborted;
    if (pull())
        return Data;
    if (socket->state() != QAbstractSocket::ConnectedState)
        return Closed;
    return wait;
}

PopConnection::Wait PopConnection::pause() {
    QEventLoop events;
    QEventLoop* outer = loop;
    const bool outerWoken = wakeRequested;
    wakeRequested = false;
    loop = &events;
    silence->start();
    events.exec();
    loop = outer;
    wakeRequested = outerWoken;
    const bool timedOut = !silence->isActive();
    silence->stop();
    if (aborted)
        return Aborted;
    return timedOut ? TimedOut : Data;
}

// The socket signals every time it reads; one quit a wait is enough, and
// each further one would cost a wake-up of the event loop.
void PopConnection::wake() {
    if (loop && !wakeRequested) {
        wakeRequested = true;
        loop->quit();
    }
}

bool PopConnection::pull() {
    if (!socket)
        return false;
    const qint64 available = socket->bytesAvailable();
    if (available <= 0)
        return false;
    const qint64 got = socket->read(reader.room(available), available);
    reader.grew(qMax<qint64>(got, 0));
    replyReceived += qMax<qint64>(got, 0);
    return got > 0;
}

void PopConnection::abort() {
    aborted = true;
    if (socket)
        socket->abort();
    wake();
}

void PopConnection::close() {
    if (!socket)
        return;
    socket->flush();
    socket->disconnectFromHost();
    if (socket->state() != QAbstractSocket::UnconnectedState)
        socket->abort();
}

bool PopConnection::isOpen() const {
    return socket && !aborted && socket->state() == QAbstractSocket::ConnectedState;
}

QString PopConnection::peerSubject() const {
    if (!ssl || ssl->peerCertificate().isNull())
        return QString();
    return ssl->peerCertificate().subjectDisplayName();
}

} // namespace velmora
