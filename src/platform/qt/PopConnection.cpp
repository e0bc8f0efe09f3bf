#include "platform/qt/PopConnection.h"

#include "platform/qt/SocketLine.h"

#include <QEventLoop>
#include <QSocketNotifier>
#include <QTimer>
#include <QUrl>

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <mutex>
#include <thread>

namespace velmora {

PopConnection::PopConnection(int timeoutSeconds) : timeoutMs(qMax(1, timeoutSeconds) * 1000) {}

PopConnection::~PopConnection() {
    wake();
    delete line;
}

namespace {

// A name lookup on a thread of its own, since the system's resolver blocks
// for as long as a name server takes. The thread tells it is done through
// an event descriptor; whoever lets go last closes it, so a connection that
// gave up waiting leaves the thread nothing to trip over.
struct Lookup {
    std::mutex mutex;
    bool finished = false;
    int error = 0;
    std::vector<std::pair<sockaddr_storage, socklen_t>> found;
    int event = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);

    ~Lookup() {
        if (event >= 0)
            ::close(event);
    }
};

bool NameNotFound(int error) {
    return error == EAI_NONAME || error == EAI_FAIL || error == EAI_AGAIN ||
#ifdef EAI_NODATA
           error == EAI_NODATA ||
#endif
           error == EAI_FAMILY;
}

} // namespace

PopConnection::OpenResult PopConnection::lookUp(const QString& host, quint16 port,
                                                std::vector<Address>& addresses) {
    // An address needs no lookup.
    const QByteArray text = host.trimmed().toLatin1();
    Address numeric{};
    auto* v4 = reinterpret_cast<sockaddr_in*>(&numeric.storage);
    auto* v6 = reinterpret_cast<sockaddr_in6*>(&numeric.storage);
    if (inet_pton(AF_INET, text.constData(), &v4->sin_addr) == 1)
        numeric.length = sizeof(sockaddr_in);
    else if (inet_pton(AF_INET6, text.constData(), &v6->sin6_addr) == 1)
        numeric.length = sizeof(sockaddr_in6);
    if (numeric.length) {
        // The port sits at the same place in both.
        numeric.storage.ss_family = numeric.length == sizeof(sockaddr_in) ? AF_INET : AF_INET6;
        v4->sin_port = htons(port);
        addresses.push_back(numeric);
        return {};
    }

    const QByteArray name = QUrl::toAce(host.trimmed());
    if (name.isEmpty())
        return {OpenResult::HostNotFound, 0, QString()};
    auto lookup = std::make_shared<Lookup>();
    if (lookup->event < 0)
        return {OpenResult::OtherError, 0, qt_error_string(errno)};
    QSocketNotifier done(qintptr(lookup->event), QSocketNotifier::Read);
    connect(&done, &QSocketNotifier::activated, this, &PopConnection::wake);
    try {
        std::thread([lookup, name, service = QByteArray::number(port)] {
            addrinfo hints{};
            hints.ai_family = AF_UNSPEC;
            hints.ai_socktype = SOCK_STREAM;
            hints.ai_flags = AI_ADDRCONFIG;
            addrinfo* list = nullptr;
            const int error = ::getaddrinfo(name.constData(), service.constData(), &hints, &list);
            std::vector<std::pair<sockaddr_storage, socklen_t>> found;
            for (const addrinfo* at = error == 0 ? list : nullptr; at; at = at->ai_next) {
                if (at->ai_addrlen > sizeof(sockaddr_storage))
                    continue;
                sockaddr_storage storage{};
                std::memcpy(&storage, at->ai_addr, at->ai_addrlen);
                found.emplace_back(storage, at->ai_addrlen);
            }
            if (list)
                ::freeaddrinfo(list);
            {
                const std::lock_guard<std::mutex> lock(lookup->mutex);
                lookup->error = error;
                lookup->found = std::move(found);
                lookup->finished = true;
            }
            const quint64 one = 1;
            [[maybe_unused]] const ssize_t written = ::write(lookup->event, &one, sizeof one);
        }).detach();
    } catch (const std::system_error& e) {
        return {OpenResult::OtherError, 0, QString::fromLocal8Bit(e.what())};
    }
    for (;;) {
        {
            const std::lock_guard<std::mutex> lock(lookup->mutex);
            if (lookup->finished)
                break;
        }
        const Wait wait = pause();
        if (wait == Aborted)
            return {OpenResult::Aborted, 0, QString()};
        if (wait == TimedOut)
            return {OpenResult::TimedOut, 0, QString()};
    }
    if (lookup->error != 0)
        return {NameNotFound(lookup->error) ? OpenResult::HostNotFound : OpenResult::OtherError, 0,
                QString::fromLocal8Bit(::gai_strerror(lookup->error))};
    for (const auto& [storage, length] : lookup->found)
        addresses.push_back({storage, length});
    if (addresses.empty())
        return {OpenResult::HostNotFound, 0, QString()};
    return {};
}

PopConnection::OpenResult PopConnection::connectTo(const std::vector<Address>& addresses, bool tls,
                                                   int& socket) {
    int lastError = ECONNREFUSED;
    bool tlsReady = !tls;
    for (const Address& address : addresses) {
        const int fd =
            ::socket(address.storage.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        if (fd < 0) {
            lastError = errno;
            continue;
        }
        const auto* where = reinterpret_cast<const sockaddr*>(&address.storage);
        if (::connect(fd, where, address.length) != 0 && errno != EINPROGRESS) {
            lastError = errno;
            ::close(fd);
            continue;
        }
        // TLS is readied while the server accepts and readies its own side.
        QString unavailable;
        if (!tlsReady && !(tlsReady = SocketLine::prepareTls(unavailable))) {
            ::close(fd);
            return {OpenResult::TlsFailed, 0, unavailable};
        }
        QSocketNotifier ready(qintptr(fd), QSocketNotifier::Write);
        connect(&ready, &QSocketNotifier::activated, this, &PopConnection::wake);
        for (;;) {
            pollfd state{fd, POLLOUT, 0};
            if (::poll(&state, 1, 0) > 0)
                break;
            const Wait wait = pause();
            if (wait == Data)
                continue;
            ::close(fd);
            return {wait == Aborted ? OpenResult::Aborted : OpenResult::TimedOut, 0, QString()};
        }
        int error = 0;
        socklen_t size = sizeof error;
        if (::getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &size) != 0)
            error = errno;
        if (error == 0) {
            socket = fd;
            return {};
        }
        lastError = error;
        ::close(fd);
    }
    switch (lastError) {
    case ECONNREFUSED:
        return {OpenResult::Refused, 0, qt_error_string(lastError)};
    case ETIMEDOUT:
        return {OpenResult::TimedOut, 0, qt_error_string(lastError)};
    case ECONNRESET:
        return {OpenResult::Reset, 0, qt_error_string(lastError)};
    default:
        return {OpenResult::OtherError, 0, qt_error_string(lastError)};
    }
}

PopConnection::OpenResult PopConnection::open(const QString& host, quint16 port, bool tls) {
    // Wired once: each wait only runs the loop, so a large mailbox's
    // thousands of waits cost little.
    silence = new QTimer(this);
    silence->setSingleShot(true);
    silence->setInterval(timeoutMs);
    connect(silence, &QTimer::timeout, this, &PopConnection::wake);

    std::vector<Address> addresses;
    OpenResult result = lookUp(host, port, addresses);
    if (result.kind != OpenResult::Open)
        return result;
    int socket = -1;
    result = connectTo(addresses, tls, socket);
    if (result.kind != OpenResult::Open)
        return result;

    line = new SocketLine(socket, tls ? std::optional<QString>(host) : std::nullopt, reader, this);
    connect(line, &SocketLine::changed, this, &PopConnection::wake);
    Wait wait = Data;
    if (line->state() == SocketLine::Handshaking)
        wait = runLoop();
    if (line->state() == SocketLine::Open && wait != Aborted)
        return {};
    // A handshake that timed out must not finish later on its own.
    result = wait == Aborted ? OpenResult{OpenResult::Aborted, 0, QString()} : tlsFailure(wait);
    line->abort();
    return result;
}

PopConnection::OpenResult PopConnection::tlsFailure(Wait wait) const {
    OpenResult result;
    result.text = line->errorText();
    if (line->state() == SocketLine::Handshaking && wait == TimedOut)
        result.kind = OpenResult::TimedOut;
    else if (line->certificateError())
        result.kind = OpenResult::CertificateFailed;
    else
        result.kind = OpenResult::TlsFailed;
    result.certificateError = line->certificateError();
    return result;
}

void PopConnection::send(const QByteArray& commandLine) {
    if (connected())
        line->write(commandLine + "\r\n");
}

PopConnection::Wait PopConnection::waitForData() {
    if (aborted)
        return Aborted;
    // Read first: should the write fail, what the server said before it
    // hung up is still read.
    if (pull())
        return Data;
    if (line)
        line->flush();
    return runLoop();
}

bool PopConnection::connected() const {
    return line && line->state() == SocketLine::Open;
}

bool PopConnection::alive() const {
    return line && (line->state() == SocketLine::Handshaking || line->state() == SocketLine::Open);
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

PopConnection::Wait PopConnection::runLoop() {
    if (!alive())
        return Closed;
    const Wait wait = pause();
    if (wait == Aborted)
        return Aborted;
    if (pull())
        return Data;
    if (connected() && wait != TimedOut)
        return Data;
    if (wait == TimedOut && alive())
        return TimedOut;
    return Closed;
}

// The line signals every time it reads; one quit a wait is enough, and each
// further one would cost a wake-up of the event loop.
void PopConnection::wake() {
    if (loop && !wakeRequested) {
        wakeRequested = true;
        loop->quit();
    }
}

bool PopConnection::pull() {
    if (!line)
        return false;
    line->pull();
    return line->takeArrived();
}

void PopConnection::abort() {
    aborted = true;
    if (line)
        line->abort();
    wake();
}

void PopConnection::close() {
    if (line)
        line->close();
}

bool PopConnection::isOpen() const {
    return !aborted && connected();
}

QString PopConnection::peerSubject() const {
    return line ? line->peerSubject() : QString();
}

} // namespace velmora
