#include "platform/qt/PopConnection.h"

#include <QEventLoop>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTimer>

namespace velmora {

PopConnection::PopConnection(int timeoutSeconds) : timeoutMs(qMax(1, timeoutSeconds) * 1000) {}

PopConnection::~PopConnection() {
    if (loop)
        loop->quit();
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
    return conf;
}

} // namespace

PopConnection::OpenResult PopConnection::open(const QString& host, quint16 port, bool tls) {
    socket = new QSslSocket(this);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    socket->setReadBufferSize(0);
    if (tls) {
        socket->setSslConfiguration(TlsConfiguration());
        socket->setPeerVerifyName(host);
        socket->connectToHostEncrypted(host, port);
    } else {
        socket->connectToHost(host, port);
    }

    OpenResult result;
    const Wait wait = runLoop(tls);
    if (wait == Aborted) {
        result.kind = OpenResult::Aborted;
        return result;
    }
    const bool ready =
        tls ? socket->isEncrypted() : socket->state() == QAbstractSocket::ConnectedState;
    if (ready)
        return result;

    result.text = socket->errorString();
    if (wait == TimedOut) {
        result.kind = OpenResult::TimedOut;
        return result;
    }
    const QList<QSslError> certificate = socket->sslHandshakeErrors();
    if (tls && !certificate.isEmpty()) {
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
        result.kind = tls ? OpenResult::TlsFailed : OpenResult::Reset;
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
    QTimer silence;
    silence.setSingleShot(true);
    silence.setInterval(timeoutMs);
    QObject::connect(&silence, &QTimer::timeout, &events, &QEventLoop::quit);
    QObject::connect(socket, &QAbstractSocket::errorOccurred, &events, &QEventLoop::quit);
    QObject::connect(socket, &QAbstractSocket::disconnected, &events, &QEventLoop::quit);
    if (untilEncrypted) {
        QObject::connect(socket, &QSslSocket::encrypted, &events, &QEventLoop::quit);
    } else if (socket->state() == QAbstractSocket::ConnectedState) {
        QObject::connect(socket, &QIODevice::readyRead, &events, &QEventLoop::quit);
    } else {
        QObject::connect(socket, &QAbstractSocket::connected, &events, &QEventLoop::quit);
    }
    // Data keeps the line alive: silence, not the whole transfer, times out.
    QObject::connect(socket, &QIODevice::readyRead, &silence, qOverload<>(&QTimer::start));
    silence.start();

    QEventLoop* outer = loop;
    loop = &events;
    events.exec();
    loop = outer;

    QObject::disconnect(socket, nullptr, &events, nullptr);
    QObject::disconnect(socket, nullptr, &silence, nullptr);
    if (aborted)
        return Aborted;
    if (socket->bytesAvailable() > 0) {
        pull();
        return Data;
    }
    if (untilEncrypted && socket->isEncrypted())
        return Data;
    if (!untilEncrypted && socket->state() == QAbstractSocket::ConnectedState && silence.isActive())
        return Data;
    if (!silence.isActive() && socket->state() != QAbstractSocket::UnconnectedState)
        return TimedOut;
    return Closed;
}

void PopConnection::pull() {
    reader.append(socket->readAll());
}

void PopConnection::abort() {
    aborted = true;
    if (socket)
        socket->abort();
    if (loop)
        loop->quit();
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
    if (!socket || socket->peerCertificate().isNull())
        return QString();
    return socket->peerCertificate().subjectDisplayName();
}

} // namespace velmora
