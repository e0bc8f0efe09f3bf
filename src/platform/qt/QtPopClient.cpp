#include "platform/qt/QtPopClient.h"

#include "platform/PopErrors.h"
#include "platform/RuntimeErrors.h"
#include "platform/qt/PopConnection.h"

#include <QDateTime>
#include <limits>

namespace velmora {

namespace {

// Counts the blocking calls in progress, so that a Disconnect from a handler
// inside one aborts the line rather than pulling it away under the call.
struct Busy {
    explicit Busy(int& depth) : depth(depth) { ++depth; }
    ~Busy() { --depth; }
    int& depth;
};

QString Quote(const QByteArray& text) {
    return QString::fromUtf8(text.left(200));
}

constexpr qint64 Largest = std::numeric_limits<qint64>::max();

qint64 SaturatingAdd(qint64 a, qint64 b) {
    return a > Largest - b ? Largest : a + b;
}

// What is reserved for a message before it comes: the listed size is the
// server's word, so no more than this is taken on it.
constexpr qint64 MostReserved = 8 * 1024 * 1024;

// A message may run this far past its listed size: servers that store bare
// line feeds list fewer bytes than the CR LF lines that come.
qint64 OverrunLimit(qint64 listed) {
    return SaturatingAdd(SaturatingAdd(listed, listed / 2), 64 * 1024);
}

// Replies that are not messages: a CAPA list, a LIST or UIDL listing.
constexpr qint64 MostCapabilities = 64 * 1024;
qint64 ListingLimit(size_t messages) {
    return 1024 * 1024 + qint64(messages) * 128;
}

} // namespace

QtPopClient::QtPopClient() = default;

QtPopClient::~QtPopClient() = default;

void QtPopClient::fail(int number, const QString& text) {
    lastError = number;
    errorText = text;
    throw Failure{number, text};
}

void QtPopClient::failAndDrop(int number, const QString& text) {
    if (connection)
        connection->abort();
    fail(number, text);
}

PopMessage& QtPopClient::Item(int index) {
    if (index < 0 || index >= int(items.size())) {
        lastError = 0;
        throw Failure{RuntimeError::SubscriptOutOfRange, QStringLiteral("Subscript out of range")};
    }
    return *items[size_t(index)];
}

void QtPopClient::Connect() {
    Busy guard(busy);
    lastError = 0;
    errorText.clear();
    connection.reset();
    items.clear();
    loggedIn = listed = capaAnswered = pipelining = uidlOffered = topOffered = false;

    if (hostName.trimmed().isEmpty())
        fail(PopError::NoHostName, QStringLiteral("No host name given"));
    if (port < 1 || port > 65535)
        fail(PopError::BadPort, QStringLiteral("Port %1 is outside 1 to 65535").arg(port));
    openSocket();

    connection->startReply();
    const QByteArray greeting = readStatus(PopError::TimedOut, PopError::ConnectionReset);
    const PopReader::Status hello = PopReader::parseStatus(greeting);
    if (!hello.valid)
        fail(PopError::NotPop3Greeting,
             QStringLiteral("The server's greeting is not a POP3 greeting: ") + Quote(greeting));
    if (!hello.ok)
        fail(PopError::ServerRefused,
             QStringLiteral("The server refused the connection: ") + Quote(hello.text));

    readCapabilities();
    logIn();

    const PopReader::Status stat = command("STAT", PopError::TimedOut, PopError::ConnectionReset);
    if (!stat.valid)
        fail(PopError::UnexpectedReply, QStringLiteral("Unreadable reply to STAT"));
    if (!stat.ok)
        fail(PopError::StatFailed, QStringLiteral("STAT failed: ") + Quote(stat.text));
    const std::optional<qint64> counted = PopReader::parseStatCount(stat.text);
    if (!counted)
        fail(PopError::UnexpectedReply,
             QStringLiteral("Unreadable reply to STAT: ") + Quote(stat.text));
    const qint64 count = *counted;
    // Counts are 16-bit: what passes here, the counters can hold.
    if (count > std::numeric_limits<qint16>::max())
        fail(PopError::TooManyMessages,
             QStringLiteral("The mailbox holds %1 messages, more than can be counted").arg(count));
    items.resize(size_t(count));
    for (auto& item : items)
        item = std::make_unique<RetrievedMessage>();
    loggedIn = true;
    if (notify)
        notify->Connected();
}

void QtPopClient::openSocket() {
    const bool tls = security == SecurityImplicitTls;
    connection = std::make_unique<PopConnection>(timeoutSeconds);
    const PopConnection::OpenResult opened = connection->open(hostName, quint16(port), tls);
    using R = PopConnection::OpenResult;
    switch (opened.kind) {
    case R::Open:
        if (tls && notify)
            notify->HostCertificate(connection->peerSubject(), 0, QString());
        return;
    case R::TimedOut:
        fail(PopError::TimedOut, QStringLiteral("Connection timed out"));
    case R::Refused:
        fail(PopError::ConnectionRefused, QStringLiteral("Connection refused"));
    case R::HostNotFound:
        fail(PopError::HostNotFound, QStringLiteral("Host not found: ") + hostName);
    case R::TlsFailed:
        fail(PopError::TlsHandshake, QStringLiteral("TLS handshake failed: ") + opened.text);
    case R::CertificateFailed:
        fail(PopError::CertificateBase + opened.certificateError,
             QStringLiteral("The server's certificate failed verification: ") + opened.text);
    case R::Reset:
    case R::Aborted:
        fail(PopError::ConnectionReset, QStringLiteral("Connection reset by peer"));
    case R::OtherError:
        fail(PopError::ConnectionReset, opened.text);
    }
}

QByteArray QtPopClient::readStatus(int timeoutError, int lostError) {
    QByteArray line;
    for (;;) {
        switch (connection->reader.takeLine(line)) {
        case PopReader::Done:
            return line;
        case PopReader::TooLong:
            failAndDrop(PopError::ReplyTooLong,
                        QStringLiteral("The server sent a line without end"));
        case PopReader::NeedMore:
            break;
        }
        waitForMore(timeoutError, lostError);
    }
}

void QtPopClient::waitForMore(int timeoutError, int lostError) {
    switch (connection->waitForData()) {
    case PopConnection::Data:
        return;
    case PopConnection::TimedOut:
        failAndDrop(
            timeoutError,
            QStringLiteral("No answer from the server within %1 seconds").arg(timeoutSeconds));
    case PopConnection::TooSlow:
        failAndDrop(PopError::TimedOut,
                    QStringLiteral("The server answered too slowly: less than %1 KB a second")
                        .arg(PopConnection::FloorBytesPerSecond / 1024));
    case PopConnection::Closed:
    case PopConnection::Aborted:
        fail(lostError, QStringLiteral("The connection was lost"));
    }
}

PopReader::Status QtPopClient::command(const QByteArray& line, int timeoutError, int lostError,
                                       qint64 expected) {
    connection->send(line);
    connection->startReply(expected);
    return PopReader::parseStatus(readStatus(timeoutError, lostError));
}

bool QtPopClient::readBlock(QByteArray& out, int timeoutError, int lostError, qint64 limit,
                            qint64* progress, qint64 total) {
    for (;;) {
        qint64 consumed = 0;
        const PopReader::Result result = connection->reader.takeBlock(out, consumed);
        if (progress && consumed > 0) {
            *progress = SaturatingAdd(*progress, consumed);
            if (notify)
                notify->Progress(*progress, total);
            checkStopped();
        }
        if (result == PopReader::Done)
            return out.size() <= limit;
        // What is left in the reader is the start of a line of this block.
        if (out.size() + connection->reader.buffered() > limit)
            return false;
        waitForMore(timeoutError, lostError);
    }
}

bool QtPopClient::tooLarge(const RetrievedMessage& item) const {
    return item.SizeListed() && item.Size() > maxMessageBytes;
}

qint64 QtPopClient::blockLimit(const RetrievedMessage& item) const {
    return item.SizeListed() ? qMin(OverrunLimit(item.Size()), maxMessageBytes) : maxMessageBytes;
}

QString QtPopClient::tooLargeText(size_t n, qint64 bytes) const {
    return QStringLiteral("Message %1 is larger than the limit of %2 MB (%3 bytes)")
        .arg(n)
        .arg(maxMessageBytes / (1000 * 1000))
        .arg(bytes);
}

void QtPopClient::failOverrun(int number, const char* verb, size_t n,
                              const RetrievedMessage& item) {
    if (item.SizeListed() && OverrunLimit(item.Size()) < maxMessageBytes)
        failAndDrop(number, QStringLiteral("%1 %2 failed: the server sent more than the %3 "
                                           "bytes it listed")
                                .arg(QLatin1String(verb))
                                .arg(n)
                                .arg(item.Size()));
    failAndDrop(number, QStringLiteral("%1 %2 failed: ").arg(QLatin1String(verb)).arg(n) +
                            tooLargeText(n, maxMessageBytes));
}

void QtPopClient::readCapabilities() {
    const PopReader::Status capa = command("CAPA", PopError::TimedOut, PopError::ConnectionReset);
    if (!capa.valid)
        fail(PopError::UnexpectedReply, QStringLiteral("Unreadable reply to CAPA"));
    if (!capa.ok)
        return;
    QByteArray block;
    if (!readBlock(block, PopError::TimedOut, PopError::ConnectionReset, MostCapabilities))
        failAndDrop(PopError::ReplyTooLong, QStringLiteral("The server's CAPA list has no end"));
    capaAnswered = true;
    for (const QByteArray& line : block.split('\n')) {
        const QByteArray word = line.trimmed().split(' ').value(0).toUpper();
        pipelining = pipelining || word == "PIPELINING";
        uidlOffered = uidlOffered || word == "UIDL";
        topOffered = topOffered || word == "TOP";
    }
}

// USER and PASS go one at a time, never pipelined: a pipelined login waits
// on delayed acknowledgements.
void QtPopClient::logIn() {
    const PopReader::Status user =
        command("USER " + login.toUtf8(), PopError::TimedOut, PopError::ConnectionReset);
    if (!user.valid)
        fail(PopError::UnexpectedReply, QStringLiteral("Unreadable reply to USER"));
    if (!user.ok)
        fail(PopError::LoginRejected,
             QStringLiteral("The server rejected the login: ") + Quote(user.text));
    const PopReader::Status pass =
        command("PASS " + password.toUtf8(), PopError::TimedOut, PopError::ConnectionReset);
    if (!pass.valid)
        fail(PopError::UnexpectedReply, QStringLiteral("Unreadable reply to PASS"));
    if (!pass.ok)
        fail(PopError::LoginRejected,
             QStringLiteral("The server rejected the password: ") + Quote(pass.text));
}

void QtPopClient::requireConnection() {
    if (!loggedIn || !connection || !connection->isOpen())
        fail(PopError::NotConnected, QStringLiteral("Not connected to a server"));
}

void QtPopClient::checkStopped() {
    if (connection && connection->wasAborted())
        fail(PopError::ConnectionLost, QStringLiteral("The retrieval was stopped"));
}

void QtPopClient::readListing() {
    if (listed)
        return;
    // Without CAPA the server may still know UIDL; with CAPA it says so.
    const bool askUidl = uidlOffered || !capaAnswered;
    connection->send("LIST");
    if (askUidl && pipelining)
        connection->send("UIDL");

    connection->startReply();
    const PopReader::Status list =
        PopReader::parseStatus(readStatus(PopError::RetrieveTimedOut, PopError::ConnectionLost));
    if (!list.valid || !list.ok)
        fail(PopError::ListingFailed, QStringLiteral("LIST failed: ") + Quote(list.text));
    const qint64 listingLimit = ListingLimit(items.size());
    QByteArray block;
    if (!readBlock(block, PopError::RetrieveTimedOut, PopError::ConnectionLost, listingLimit))
        failAndDrop(PopError::ListingFailed, QStringLiteral("Unreadable LIST reply"));
    const auto sizes = PopReader::parseNumberedLines(block);
    if (!sizes)
        failAndDrop(PopError::ListingFailed, QStringLiteral("Unreadable LIST reply"));
    for (const auto& [number, value] : *sizes) {
        // Anything after the size is the server's own; the size must be a
        // number, however large.
        const std::optional<qint64> size = PopReader::parseNumber(value.split(' ').value(0));
        if (!size)
            failAndDrop(PopError::ListingFailed, QStringLiteral("Unreadable LIST reply"));
        if (number >= 1 && number <= qint64(items.size()))
            items[size_t(number - 1)]->setListing(*size, QString());
    }

    if (askUidl) {
        if (!pipelining)
            connection->send("UIDL");
        connection->startReply();
        const PopReader::Status uidl = PopReader::parseStatus(
            readStatus(PopError::RetrieveTimedOut, PopError::ConnectionLost));
        if (uidl.valid && uidl.ok) {
            block.clear();
            if (!readBlock(block, PopError::RetrieveTimedOut, PopError::ConnectionLost,
                           listingLimit))
                failAndDrop(PopError::ListingFailed, QStringLiteral("Unreadable UIDL reply"));
            const auto uids = PopReader::parseNumberedLines(block);
            if (!uids)
                failAndDrop(PopError::ListingFailed, QStringLiteral("Unreadable UIDL reply"));
            for (const auto& [number, value] : *uids) {
                if (number >= 1 && number <= qint64(items.size()))
                    items[size_t(number - 1)]->setUid(QString::fromLatin1(value));
            }
        } else if (uidlOffered) {
            fail(PopError::ListingFailed, QStringLiteral("UIDL failed: ") + Quote(uidl.text));
        }
    }
    listed = true;
}

// Identifiers for a server without UIDL: the digest of each header block,
// from TOP where it is offered, else from the whole message.
void QtPopClient::readIdentifiers() {
    const bool top = topOffered || !capaAnswered;
    for (size_t i = 0; i < items.size(); ++i) {
        RetrievedMessage& item = *items[i];
        if (!item.Uid().isEmpty())
            continue;
        const QByteArray number = QByteArray::number(qulonglong(i + 1));
        const auto retrieve = [&] {
            if (tooLarge(item))
                fail(PopError::ListingFailed,
                     QStringLiteral("Listing failed: ") + tooLargeText(i + 1, item.Size()));
            return command("RETR " + number, PopError::RetrieveTimedOut, PopError::ConnectionLost,
                           item.Size());
        };
        PopReader::Status reply = top ? command("TOP " + number + " 0", PopError::RetrieveTimedOut,
                                                PopError::ConnectionLost)
                                      : retrieve();
        const bool byTop = top && !(reply.valid && !reply.ok && !topOffered);
        if (!byTop && top)
            reply = retrieve();
        if (!reply.valid || !reply.ok)
            fail(PopError::ListingFailed, QStringLiteral("Listing failed: ") + Quote(reply.text));
        QByteArray block;
        if (!readBlock(block, PopError::RetrieveTimedOut, PopError::ConnectionLost,
                       blockLimit(item)))
            failOverrun(PopError::ListingFailed, byTop ? "TOP" : "RETR", i + 1, item);
        item.setUid(RetrievedMessage::HeaderDigest(block));
    }
}

void QtPopClient::ListMessages() {
    Busy guard(busy);
    lastError = 0;
    requireConnection();
    readListing();
    readIdentifiers();
}

void QtPopClient::FetchAll() {
    Busy guard(busy);
    lastError = 0;
    requireConnection();
    if (items.empty())
        return;
    readListing();
    retrieveAll();
}

void QtPopClient::retrieveAll() {
    qint64 total = 0;
    for (const auto& item : items)
        total = SaturatingAdd(total, item->Size());
    qint64 position = 0;
    // Where the server takes pipelining, commands go out in batches of half
    // the window: every write wakes the server (and is a record of its own
    // over TLS), so a write a message costs more than the commands do. The
    // window bounds what is queued.
    const size_t window = pipelining ? 512 : 1;
    size_t sent = 0;
    for (size_t done = 0; done < items.size(); ++done) {
        // What is sent is queued until the next wait, so a batch leaves
        // together. A message listed beyond the size limit is never asked
        // for: the batch stops short of it, and its turn fails with the
        // line in step.
        if (sent - done <= window / 2) {
            for (; sent < items.size() && sent - done < window && !tooLarge(*items[sent]); ++sent)
                connection->send("RETR " + QByteArray::number(qulonglong(sent + 1)));
        }
        RetrievedMessage& item = *items[done];
        if (tooLarge(item))
            fail(PopError::RetrieveFailed, QStringLiteral("RETR %1 failed: ").arg(done + 1) +
                                               tooLargeText(done + 1, item.Size()));
        connection->startReply(qMin(item.Size(), maxMessageBytes));
        const PopReader::Status reply = PopReader::parseStatus(
            readStatus(PopError::RetrieveTimedOut, PopError::ConnectionLost));
        if (!reply.valid || !reply.ok)
            fail(PopError::RetrieveFailed,
                 QStringLiteral("RETR %1 failed: ").arg(done + 1) + Quote(reply.text));
        QByteArray data;
        data.reserve(qMin(item.Size(), MostReserved) + 64);
        if (!readBlock(data, PopError::RetrieveTimedOut, PopError::ConnectionLost, blockLimit(item),
                       &position, total))
            failOverrun(PopError::RetrieveFailed, "RETR", done + 1, item);
        if (item.Uid().isEmpty())
            item.setUid(RetrievedMessage::HeaderDigest(data));
        // Parsed now, while the next replies wait in the socket; only the
        // fields stay, so one message's text is held at a time.
        item.setData(data, QDateTime::currentDateTimeUtc());
        if (notify)
            notify->Received(item);
        checkStopped();
    }
}

void QtPopClient::sendDeletions() {
    QList<size_t> marked;
    for (size_t i = 0; i < items.size(); ++i) {
        if (items[i]->Deleted())
            marked.append(i);
    }
    if (pipelining) {
        for (size_t i : marked)
            connection->send("DELE " + QByteArray::number(qulonglong(i + 1)));
    }
    for (size_t i : marked) {
        if (!pipelining)
            connection->send("DELE " + QByteArray::number(qulonglong(i + 1)));
        connection->startReply();
        const PopReader::Status reply = PopReader::parseStatus(
            readStatus(PopError::RetrieveTimedOut, PopError::ConnectionLost));
        if (!reply.valid || !reply.ok)
            fail(PopError::DeleteFailed,
                 QStringLiteral("DELE %1 failed: ").arg(i + 1) + Quote(reply.text));
    }
}

void QtPopClient::Abort() {
    if (connection)
        connection->abort();
    loggedIn = false;
}

void QtPopClient::Disconnect() {
    if (!connection)
        return;
    if (busy > 0) {
        // Called from a handler during a blocking call: end the line; the
        // call fails and returns.
        connection->abort();
        return;
    }
    if (!connection->isOpen() || !loggedIn) {
        connection.reset();
        loggedIn = false;
        if (notify)
            notify->Disconnected(0, QString());
        return;
    }
    bool deleting = false;
    for (const auto& item : items)
        deleting = deleting || item->Deleted();
    try {
        Busy guard(busy);
        sendDeletions();
        const PopReader::Status quit =
            command("QUIT", PopError::RetrieveTimedOut, PopError::ConnectionLost);
        // Marked messages go only when the server confirms the end.
        if (deleting && (!quit.valid || !quit.ok))
            fail(PopError::DeleteFailed, QStringLiteral("QUIT failed: ") + Quote(quit.text));
    } catch (const Failure&) {
        // Dropping the line without a confirmed QUIT deletes nothing.
        connection->abort();
        connection.reset();
        loggedIn = false;
        if (deleting)
            throw;
    }
    if (connection) {
        connection->close();
        connection.reset();
    }
    loggedIn = false;
    if (notify)
        notify->Disconnected(0, QString());
}

} // namespace velmora
