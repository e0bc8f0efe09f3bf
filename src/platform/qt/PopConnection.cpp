#include "platform/qt/PopConnection.h"

#include "platform/qt/SocketLine.h"

#include <QEventLoop>
#include <QSocketNotifier>
#include <QTimer>
#include <QUrl>

#include <netdb.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace velmora {

PopConnection::PopConnection(int timeoutSeconds) : timeoutMs(qMax(1, timeoutSeconds) * 1000) {}

PopConnection::~PopConnection() {
    wake();
    delete line;
}

struct PopConnection::Address {
    sockaddr_storage storage;
    socklen_t length;
};

namespace {

// A name lookup on a thread of its own, since the system's resolver blocks
// for as long as a name server takes. The thread tells it is done through
// an event descriptor; whoever lets go last closes it, so a connection that
// gave up waiting leaves the thread nothing to trip over.
struct Lookup {
    std::mutex mutex;
    bool finished = false;
    int error = 0;
    addrinfo* found = nullptr;
    int event = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);

    ~Lookup() {
        if (found)
            ::freeaddrinfo(found);
        if (event >= 0)
            ::close(event);
    }
};

int Resolve(const QByteArray& name, quint16 port, int flags, addrinfo** found) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = flags | AI_NUMERICSERV;
    return ::getaddrinfo(name.constData(), QByteArray::number(port).constData(), &hints, found);
}

// Starts the lookup of `name`; null, with the reason, when no thread or
// descriptor can be had.
std::shared_ptr<Lookup> StartLookup(const QByteArray& name, quint16 port, QString& problem) {
    auto lookup = std::make_shared<Lookup>();
    if (lookup->event < 0) {
        problem = qt_error_string(errno);
        return nullptr;
    }
    try {
        std::thread([lookup, name, port] {
            addrinfo* found = nullptr;
            const int error = Resolve(name, port, AI_ADDRCONFIG, &found);
            {
                const std::lock_guard<std::mutex> lock(lookup->mutex);
                lookup->error = error;
                lookup->found = error == 0 ? found : nullptr;
                lookup->finished = true;
            }
            const quint64 one = 1;
            [[maybe_unused]] const ssize_t written = ::write(lookup->event, &one, sizeof one);
        }).detach();
    } catch (const std::system_error& e) {
        problem = QString::fromLocal8Bit(e.what());
        return nullptr;
    }
    return lookup;
}

// How telling a failure to connect is, of several addresses tried.
int Weight(int error) {
    switch (error) {
    case ECONNREFUSED:
        return 3;
    case ETIMEDOUT:
        return 2;
    case ECONNRESET:
        return 1;
    default:
        return 0;
    }
}

} // namespace

PopConnection::OpenResult PopConnection::lookUp(const QString& host, quint16 port,
                                                std::vector<Address>& addresses,
                                                const QDeadlineTimer& deadline) {
    const auto take = [&addresses](const addrinfo* list) {
        for (const addrinfo* at = list; at; at = at->ai_next) {
            if (at->ai_addrlen > sizeof(sockaddr_storage))
                continue;
            Address address{};
            std::memcpy(&address.storage, at->ai_addr, at->ai_addrlen);
            address.length = at->ai_addrlen;
            addresses.push_back(address);
        }
    };
    // An address needs no lookup and no thread.
    addrinfo* numeric = nullptr;
    if (Resolve(host.toLatin1(), port, AI_NUMERICHOST, &numeric) == 0) {
        take(numeric);
        ::freeaddrinfo(numeric);
        return addresses.empty() ? OpenResult{OpenResult::HostNotFound, 0, QString()}
                                 : OpenResult{};
    }

    const QByteArray name = QUrl::toAce(host);
    if (name.isEmpty())
        return {OpenResult::HostNotFound, 0, QString()};
    QString problem;
    const std::shared_ptr<Lookup> lookup = StartLookup(name, port, problem);
    if (!lookup)
        return {OpenResult::OtherError, 0, problem};
    const auto finished = [&lookup] {
        const std::lock_guard<std::mutex> lock(lookup->mutex);
        return lookup->finished;
    };
    const Wait wait = waitFor(lookup->event, QSocketNotifier::Read, deadline, finished);
    if (wait != Data)
        return {wait == Aborted ? OpenResult::Aborted : OpenResult::TimedOut, 0, QString()};
    // Whatever the resolver's reason, the name led nowhere.
    if (lookup->error != 0)
        return {OpenResult::HostNotFound, 0, QString::fromLocal8Bit(::gai_strerror(lookup->error))};
    take(lookup->found);
    if (addresses.empty())
        return {OpenResult::HostNotFound, 0, QString()};
    return {};
}

// The notifier wakes the wait once and is turned on again for each further
// pause: left on, it would fire in every turn of any loop nested in a
// handler, spinning the processor.
PopConnection::Wait PopConnection::waitFor(int descriptor, QSocketNotifier::Type type,
                                           const QDeadlineTimer& until,
                                           const std::function<bool()>& done) {
    QSocketNotifier notifier(qintptr(descriptor), type);
    connect(&notifier, &QSocketNotifier::activated, this, [this, &notifier] {
        notifier.setEnabled(false);
        wake();
    });
    while (!done()) {
        const Wait wait = pause(int(until.remainingTime()));
        if (wait != Data)
            return wait;
        if (until.hasExpired())
            return TimedOut;
        notifier.setEnabled(true);
    }
    return Data;
}

PopConnection::OpenResult PopConnection::connectTo(const std::vector<Address>& addresses, bool tls,
                                                   int& socket, const QDeadlineTimer& deadline) {
    int telling = 0; // the most telling failure so far
    bool tlsReady = !tls;
    for (size_t i = 0; i < addresses.size(); ++i) {
        const Address& address = addresses[i];
        int error = 0;
        const int fd =
            ::socket(address.storage.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        if (fd < 0) {
            error = errno;
        } else if (::connect(fd, reinterpret_cast<const sockaddr*>(&address.storage),
                             address.length) != 0 &&
                   errno != EINPROGRESS) {
            error = errno;
        } else {
            // TLS is readied while the server accepts and readies its own
            // side.
            QString unavailable;
            if (!tlsReady && !(tlsReady = SocketLine::prepareTls(unavailable))) {
                ::close(fd);
                return {OpenResult::TlsFailed, 0, unavailable};
            }
            // An address that never answers leaves the others their share
            // of the time, so a dead route does not hide a working one.
            const qint64 left = deadline.remainingTime();
            const qint64 share =
                qMin(left, qMax(left / qint64(addresses.size() - i), qint64(2000)));
            const Wait wait = waitFor(fd, QSocketNotifier::Write, QDeadlineTimer(share), [fd] {
                pollfd state{fd, POLLOUT, 0};
                return ::poll(&state, 1, 0) > 0;
            });
            if (wait == Aborted) {
                ::close(fd);
                return {OpenResult::Aborted, 0, QString()};
            }
            socklen_t size = sizeof error;
            if (wait == TimedOut)
                error = ETIMEDOUT;
            else if (::getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &size) != 0)
                error = errno;
            if (error == 0) {
                socket = fd;
                return {};
            }
        }
        if (fd >= 0)
            ::close(fd);
        if (telling == 0 || Weight(error) > Weight(telling))
            telling = error;
        if (deadline.hasExpired())
            break;
    }
    switch (telling) {
    case ECONNREFUSED:
        return {OpenResult::Refused, 0, qt_error_string(telling)};
    case ETIMEDOUT:
        return {OpenResult::TimedOut, 0, qt_error_string(telling)};
    case ECONNRESET:
        return {OpenResult::Reset, 0, qt_error_string(telling)};
    default:
        return {OpenResult::OtherError, 0, qt_error_string(telling)};
    }
}

PopConnection::OpenResult PopConnection::open(const QString& host, quint16 port, bool tls) {
    // Wired once: each wait only runs the loop, so a large mailbox's
    // thousands of waits cost little.
    silence = new QTimer(this);
    silence->setSingleShot(true);
    silence->setInterval(timeoutMs);
    connect(silence, &QTimer::timeout, this, &PopConnection::wake);

    // Blanks pasted around a host name would otherwise go into the name
    // the certificate is checked against.
    const QString server = host.trimmed();
    const QDeadlineTimer deadline(timeoutMs);
    std::vector<Address> addresses;
    OpenResult result = lookUp(server, port, addresses, deadline);
    if (result.kind != OpenResult::Open)
        return result;
    int socket = -1;
    result = connectTo(addresses, tls, socket, deadline);
    if (result.kind != OpenResult::Open)
        return result;

    line =
        new SocketLine(socket, tls ? std::optional<QString>(server) : std::nullopt, reader, this);
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

PopConnection::Wait PopConnection::pause(int ms) {
    if (ms == 0)
        return aborted ? Aborted : TimedOut;
    QEventLoop events;
    QEventLoop* outer = loop;
    const bool outerWoken = wakeRequested;
    wakeRequested = false;
    loop = &events;
    silence->start(ms < 0 ? timeoutMs : ms);
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
