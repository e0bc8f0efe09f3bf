#include "platform/qt/PopConnection.h"

#include "platform/qt/TlsLine.h"

#include <QEventLoop>
#include <QTcpSocket>
#include <QTimer>

#include <fcntl.h>

#include <cerrno>

namespace velmora {

PopConnection::PopConnection(int timeoutSeconds) : timeoutMs(qMax(1, timeoutSeconds) * 1000) {}

PopConnection::~PopConnection() {
    wake();
    delete tls;
    if (socket) {
        socket->abort();
        socket->deleteLater();
    }
}

void PopConnection::attach(QAbstractSocket* line) {
    socket = line;
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    socket->setReadBufferSize(0);
    connect(socket, &QAbstractSocket::errorOccurred, this, &PopConnection::wake);
    connect(socket, &QAbstractSocket::disconnected, this, &PopConnection::wake);
    connect(socket, &QAbstractSocket::connected, this, &PopConnection::wake);
    connect(socket, &QIODevice::readyRead, this, &PopConnection::wake);
}

PopConnection::OpenResult PopConnection::open(const QString& host, quint16 port, bool tls) {
    // Wired once: each wait only runs the loop, so a large mailbox's
    // thousands of waits cost little.
    silence = new QTimer(this);
    silence->setSingleShot(true);
    silence->setInterval(timeoutMs);
    connect(silence, &QTimer::timeout, this, &PopConnection::wake);

    attach(new QTcpSocket(this));
    socket->connectToHost(host, port);
    // TLS is readied while the server accepts and readies its own side.
    QString unavailable;
    if (tls && !TlsLine::prepare(unavailable)) {
        socket->abort();
        return {OpenResult::TlsFailed, 0, unavailable};
    }
    Wait wait = runLoop();
    if (wait == Aborted)
        return {OpenResult::Aborted, 0, QString()};
    if (socket->state() != QAbstractSocket::ConnectedState)
        return failure(wait);
    if (!tls)
        return {};

    // The connected socket goes over to the TLS line, which reads and
    // writes it itself.
    const int line = ::fcntl(int(socket->socketDescriptor()), F_DUPFD_CLOEXEC, 0);
    const int dupError = errno;
    socket->disconnect(this);
    socket->abort();
    delete socket;
    socket = nullptr;
    if (line < 0)
        return {OpenResult::OtherError, 0, qt_error_string(dupError)};
    this->tls = new TlsLine(line, host, reader, this);
    connect(this->tls, &TlsLine::changed, this, &PopConnection::wake);
    if (this->tls->state() == TlsLine::Handshaking)
        wait = runLoop();
    if (this->tls->state() == TlsLine::Open && wait != Aborted)
        return {};
    // A handshake that timed out must not finish later on its own.
    const OpenResult result =
        wait == Aborted ? OpenResult{OpenResult::Aborted, 0, QString()} : tlsFailure(wait);
    this->tls->abort();
    return result;
}

PopConnection::OpenResult PopConnection::tlsFailure(Wait wait) const {
    OpenResult result;
    result.text = tls->errorText();
    if (tls->state() == TlsLine::Handshaking && wait == TimedOut)
        result.kind = OpenResult::TimedOut;
    else if (tls->certificateError())
        result.kind = OpenResult::CertificateFailed;
    else
        result.kind = OpenResult::TlsFailed;
    result.certificateError = tls->certificateError();
    return result;
}

PopConnection::OpenResult PopConnection::failure(Wait wait) const {
    OpenResult result;
    result.text = socket->errorString();
    if (wait == TimedOut) {
        result.kind = OpenResult::TimedOut;
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
    case QAbstractSocket::RemoteHostClosedError:
        result.kind = OpenResult::Reset;
        break;
    default:
        result.kind = OpenResult::OtherError;
        break;
    }
    return result;
}

void PopConnection::send(const QByteArray& commandLine) {
    if (!connected())
        return;
    if (tls)
        tls->write(commandLine + "\r\n");
    else
        socket->write(commandLine + "\r\n");
}

PopConnection::Wait PopConnection::waitForData() {
    if (aborted)
        return Aborted;
    // Read first: should the write fail, what the server said before it
    // hung up is still read.
    if (pull())
        return Data;
    if (tls)
        tls->flush();
    return runLoop();
}

bool PopConnection::connected() const {
    if (tls)
        return tls->state() == TlsLine::Open;
    return socket && socket->state() == QAbstractSocket::ConnectedState;
}

bool PopConnection::alive() const {
    if (tls)
        return tls->state() == TlsLine::Handshaking || tls->state() == TlsLine::Open;
    return socket && socket->state() != QAbstractSocket::UnconnectedState;
}

PopConnection::Wait PopConnection::runLoop() {
    if (!alive())
        return Closed;
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
    if (pull())
        return Data;
    if (connected() && !timedOut)
        return Data;
    if (timedOut && alive())
        return TimedOut;
    return Closed;
}

// A socket signals every few kilobytes it reads; one quit a wait is enough,
// and each further one would cost a wake-up of the event loop.
void PopConnection::wake() {
    if (loop && !wakeRequested) {
        wakeRequested = true;
        loop->quit();
    }
}

bool PopConnection::pull() {
    if (tls) {
        tls->pull();
        return tls->takeArrived();
    }
    if (!socket || socket->bytesAvailable() <= 0)
        return false;
    reader.appendFrom(*socket);
    return true;
}

void PopConnection::abort() {
    aborted = true;
    if (tls)
        tls->abort();
    if (socket)
        socket->abort();
    wake();
}

void PopConnection::close() {
    if (tls) {
        tls->close();
        return;
    }
    if (!socket)
        return;
    socket->flush();
    socket->disconnectFromHost();
    if (socket->state() != QAbstractSocket::UnconnectedState)
        socket->abort();
}

bool PopConnection::isOpen() const {
    return !aborted && connected();
}

QString PopConnection::peerSubject() const {
    return tls ? tls->peerSubject() : QString();
}

} // namespace velmora
