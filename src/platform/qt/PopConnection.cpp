#include "platform/qt/PopConnection.h"

#include <QEventLoop>
#include <QSslCipher>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTcpSocket>
#include <QTimer>

#include <unistd.h>

#include <algorithm>

namespace velmora {

PopConnection::PopConnection(int timeoutSeconds) : timeoutMs(qMax(1, timeoutSeconds) * 1000) {}

PopConnection::~PopConnection() {
    wake();
    if (socket) {
        socket->abort();
        socket->deleteLater();
    }
}

namespace {

// The system's trust store, and the CA file named by VELMORA_CA_FILE.
QSslConfiguration TlsConfiguration() {
    QSslConfiguration conf = QSslConfiguration::defaultConfiguration();
    const QString extra = qEnvironmentVariable("VELMORA_CA_FILE");
    if (!extra.isEmpty())
        conf.addCaCertificates(extra);
    conf.setPeerVerifyMode(QSslSocket::VerifyPeer);
    // AES-128-GCM first: as strong as a mailbox needs and cheaper than the
    // library's first choice, for us and for the server that encrypts every
    // byte of a large mailbox.
    QList<QSslCipher> ciphers = conf.ciphers();
    const auto preferred =
        std::stable_partition(ciphers.begin(), ciphers.end(), [](const QSslCipher& c) {
            return c.name() == QLatin1String("TLS_AES_128_GCM_SHA256");
        });
    if (preferred != ciphers.begin())
        conf.setCiphers(ciphers);
    return conf;
}

} // namespace

void PopConnection::attach(QAbstractSocket* line) {
    socket = line;
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    socket->setReadBufferSize(0);
    connect(socket, &QAbstractSocket::errorOccurred, this, &PopConnection::wake);
    connect(socket, &QAbstractSocket::disconnected, this, &PopConnection::wake);
    connect(socket, &QAbstractSocket::connected, this, [this] {
        if (!waitingForEncryption)
            wake();
    });
    if (ssl)
        connect(ssl, &QSslSocket::encrypted, this, &PopConnection::wake);
    connect(socket, &QIODevice::readyRead, this, [this] {
        if (!waitingForEncryption)
            wake();
    });
}

PopConnection::OpenResult PopConnection::open(const QString& host, quint16 port, bool tls) {
    // Wired once: each wait only runs the loop, so a large mailbox's
    // thousands of waits cost little.
    silence = new QTimer(this);
    silence->setSingleShot(true);
    silence->setInterval(timeoutMs);
    connect(silence, &QTimer::timeout, this, &PopConnection::wake);

    // The line is opened plain, also for TLS. A server readies its side of
    // TLS once connected, and the first TLS socket of the program loads the
    // TLS library: opened first, the line lets the two go on together.
    attach(new QTcpSocket(this));
    socket->connectToHost(host, port);
    Wait wait = runLoop(false);
    if (wait == Aborted)
        return {OpenResult::Aborted, 0, QString()};
    if (socket->state() != QAbstractSocket::ConnectedState)
        return failure(wait, false);
    if (!tls)
        return {};

    // The connected line goes over to a TLS socket; a plain socket never
    // carries a TLS layer, which would copy every byte once more.
    const int line = ::dup(int(socket->socketDescriptor()));
    socket->disconnect(this);
    socket->abort();
    delete socket;
    socket = nullptr;
    ssl = new QSslSocket(this);
    attach(ssl);
    if (line < 0 || !ssl->setSocketDescriptor(line)) {
        if (line >= 0)
            ::close(line);
        return {OpenResult::OtherError, 0, ssl->errorString()};
    }
    ssl->setSslConfiguration(TlsConfiguration());
    ssl->setPeerVerifyName(host);
    ssl->startClientEncryption();
    wait = runLoop(true);
    if (wait == Aborted)
        return {OpenResult::Aborted, 0, QString()};
    if (ssl->isEncrypted())
        return {};
    return failure(wait, true);
}

PopConnection::OpenResult PopConnection::failure(Wait wait, bool handshake) const {
    OpenResult result;
    result.text = socket->errorString();
    if (wait == TimedOut) {
        result.kind = OpenResult::TimedOut;
        return result;
    }
    const QList<QSslError> certificate = handshake ? ssl->sslHandshakeErrors() : QList<QSslError>();
    if (!certificate.isEmpty()) {
        result.kind = OpenResult::CertificateFailed;
        result.certificateError = int(certificate.first().error());
        result.text = certificate.first().errorString();
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
        // The server hung up on the TLS client hello: no TLS there.
        result.kind = handshake ? OpenResult::TlsFailed : OpenResult::Reset;
        break;
    default:
        result.kind = OpenResult::OtherError;
        break;
    }
    return result;
}

void PopConnection::send(const QByteArray& commandLine) {
    if (socket && socket->state() == QAbstractSocket::ConnectedState)
        socket->write(commandLine + "\r\n");
}

PopConnection::Wait PopConnection::waitForData() {
    if (aborted)
        return Aborted;
    if (socket && socket->bytesAvailable() > 0) {
        pull();
        return Data;
    }
    return runLoop(false);
}

PopConnection::Wait PopConnection::runLoop(bool untilEncrypted) {
    if (!socket || socket->state() == QAbstractSocket::UnconnectedState)
        return Closed;
    QEventLoop events;
    QEventLoop* outer = loop;
    const bool outerWoken = wakeRequested;
    wakeRequested = false;
    loop = &events;
    waitingForEncryption = untilEncrypted;
    silence->start();
    events.exec();
    loop = outer;
    wakeRequested = outerWoken;
    const bool timedOut = !silence->isActive();
    silence->stop();
    waitingForEncryption = false;

    if (aborted)
        return Aborted;
    if (socket->bytesAvailable() > 0) {
        pull();
        return Data;
    }
    if (untilEncrypted && ssl && ssl->isEncrypted())
        return Data;
    if (!untilEncrypted && socket->state() == QAbstractSocket::ConnectedState && !timedOut)
        return Data;
    if (timedOut && socket->state() != QAbstractSocket::UnconnectedState)
        return TimedOut;
    return Closed;
}

// A TLS socket signals every few kilobytes it decrypts; one quit a wait is
// enough, and each further one would cost a wake-up of the event loop.
void PopConnection::wake() {
    if (loop && !wakeRequested) {
        wakeRequested = true;
        loop->quit();
    }
}

void PopConnection::pull() {
    reader.appendFrom(*socket);
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
