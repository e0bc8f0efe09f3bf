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

// "n value" lines of a LIST or UIDL block.
QList<std::pair<int, QByteArray>> NumberedLines(const QByteArray& block, bool* readable) {
    QList<std::pair<int, QByteArray>> lines;
    *readable = true;
    for (const QByteArray& line : block.split('\n')) {
        const QByteArray trimmed = line.trimmed();
        if (trimmed.isEmpty())
            continue;
        const qsizetype blank = trimmed.indexOf(' ');
        bool ok = false;
        const int number = blank < 0 ? 0 : trimmed.left(blank).toInt(&ok);
        if (!ok) {
            *readable = false;
            return {};
        }
        lines.append({number, trimmed.mid(blank + 1).trimmed()});
    }
    return lines;
}

} // namespace

QtPopClient::QtPopClient() = default;

QtPopClient::~QtPopClient() = default;

void QtPopClient::fail(int number, const QString& text) {
    lastError = number;
    errorText = text;
    throw Failure{number, text};
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
    bool ok = false;
    const qint64 count = stat.text.split(' ').value(0).toLongLong(&ok);
    if (!ok || count < 0)
        fail(PopError::UnexpectedReply,
             QStringLiteral("Unreadable reply to STAT: ") + Quote(stat.text));
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
            fail(PopError::ReplyTooLong, QStringLiteral("The server sent a line without end"));
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
        fail(timeoutError,
             QStringLiteral("No answer from the server within %1 seconds").arg(timeoutSeconds));
    case PopConnection::Closed:
    case PopConnection::Aborted:
        fail(lostError, QStringLiteral("The connection was lost"));
    }
}

PopReader::Status QtPopClient::command(const QByteArray& line, int timeoutError, int lostError) {
    connection->send(line);
    return PopReader::parseStatus(readStatus(timeoutError, lostError));
}

void QtPopClient::readBlock(QByteArray& out, int timeoutError, int lostError, qint64* progress,
                            qint64 total) {
    for (;;) {
        qint64 consumed = 0;
        const PopReader::Result result = connection->reader.takeBlock(out, consumed);
        if (progress && consumed > 0) {
            *progress += consumed;
            if (notify)
                notify->Progress(*progress, total);
            checkStopped();
        }
        if (result == PopReader::Done)
            return;
        waitForMore(timeoutError, lostError);
    }
}

void QtPopClient::readCapabilities() {
    const PopReader::Status capa = command("CAPA", PopError::TimedOut, PopError::ConnectionReset);
    if (!capa.valid)
        fail(PopError::UnexpectedReply, QStringLiteral("Unreadable reply to CAPA"));
    if (!capa.ok)
        return;
    QByteArray block;
    readBlock(block, PopError::TimedOut, PopError::ConnectionReset);
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

    const PopReader::Status list =
        PopReader::parseStatus(readStatus(PopError::RetrieveTimedOut, PopError::ConnectionLost));
    if (!list.valid || !list.ok)
        fail(PopError::ListingFailed, QStringLiteral("LIST failed: ") + Quote(list.text));
    QByteArray block;
    readBlock(block, PopError::RetrieveTimedOut, PopError::ConnectionLost);
    bool readable = false;
    for (const auto& [number, value] : NumberedLines(block, &readable)) {
        if (number >= 1 && number <= int(items.size()))
            items[size_t(number - 1)]->setListing(value.toLongLong(), QString());
    }
    if (!readable)
        fail(PopError::ListingFailed, QStringLiteral("Unreadable LIST reply"));

    if (askUidl) {
        if (!pipelining)
            connection->send("UIDL");
        const PopReader::Status uidl = PopReader::parseStatus(
            readStatus(PopError::RetrieveTimedOut, PopError::ConnectionLost));
        if (uidl.valid && uidl.ok) {
            block.clear();
            readBlock(block, PopError::RetrieveTimedOut, PopError::ConnectionLost);
            for (const auto& [number, value] : NumberedLines(block, &readable)) {
                if (number >= 1 && number <= int(items.size()))
                    items[size_t(number - 1)]->setUid(QString::fromLatin1(value));
            }
            if (!readable)
                fail(PopError::ListingFailed, QStringLiteral("Unreadable UIDL reply"));
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
        PopReader::Status reply = command(top ? "TOP " + number + " 0" : "RETR " + number,
                                          PopError::RetrieveTimedOut, PopError::ConnectionLost);
        if (top && reply.valid && !reply.ok && !topOffered)
            reply = command("RETR " + number, PopError::RetrieveTimedOut, PopError::ConnectionLost);
        if (!reply.valid || !reply.ok)
            fail(PopError::ListingFailed, QStringLiteral("Listing failed: ") + Quote(reply.text));
        QByteArray block;
        readBlock(block, PopError::RetrieveTimedOut, PopError::ConnectionLost);
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
        total += item->Size();
    qint64 position = 0;
    // Where the server takes pipelining, commands go out in batches of half
    // the window: every write wakes the server (and is a record of its own
    // over TLS), so a write a message costs more than the commands do. The
    // window bounds what is queued.
    const size_t window = pipelining ? 512 : 1;
    size_t sent = 0;
    for (size_t done = 0; done < items.size(); ++done) {
        // What is sent is queued until the next wait, so a batch leaves
        // together.
        if (sent - done <= window / 2) {
            for (; sent < items.size() && sent - done < window; ++sent)
                connection->send("RETR " + QByteArray::number(qulonglong(sent + 1)));
        }
        const PopReader::Status reply = PopReader::parseStatus(
            readStatus(PopError::RetrieveTimedOut, PopError::ConnectionLost));
        if (!reply.valid || !reply.ok)
            fail(PopError::RetrieveFailed,
                 QStringLiteral("RETR %1 failed: ").arg(done + 1) + Quote(reply.text));
        RetrievedMessage& item = *items[done];
        QByteArray data;
        data.reserve(item.Size() + 64);
        readBlock(data, PopError::RetrieveTimedOut, PopError::ConnectionLost, &position, total);
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
