#pragma once

#include "messages/RetrievedMessage.h"
#include "platform/PopClient.h"
#include "platform/qt/PopReader.h"

#include <memory>
#include <vector>

namespace velmora {

class PopConnection;

// Our POP3 client (RFC 1939, with CAPA and PIPELINING of RFC 2449) on a Qt
// socket. Every call blocks its caller and turns the event loop while it
// waits; Timeout bounds each wait for the server. Failures set LastError and
// ErrorText from PopErrors.h and raise a Failure.
//
// Messages are identified by UIDL. On a server without UIDL a message's
// identifier is a digest of its header block (see RetrievedMessage), read
// with TOP where the server has it.
class QtPopClient : public PopClient, private PopMessages {
public:
    QtPopClient();
    ~QtPopClient() override;

    void setHostName(const QString& host) override { hostName = host; }
    void setPort(qint32 value) override { port = value; }
    void setLogin(const QString& value) override { login = value; }
    void setPassword(const QString& value) override { password = value; }
    void setBlocking(bool) override {}
    void setTimeout(int seconds) override { timeoutSeconds = seconds; }
    void setSecurity(int mode) override { security = mode; }
    void setNotification(PopNotify* receiver) override { notify = receiver; }
    void setMaxMessageSize(qint64 bytes) override { maxMessageBytes = qMax<qint64>(bytes, 1); }

    static constexpr qint64 DefaultMaxMessageSize = 100 * 1000 * 1000;

    void Connect() override;
    void Disconnect() override;
    void Abort() override;
    PopMessages& Messages() override { return *this; }
    int LastError() const override { return lastError; }
    QString ErrorText() const override { return errorText; }

private:
    int Count() const override { return int(items.size()); }
    PopMessage& Item(int index) override;
    void FetchAll() override;
    void ListMessages() override;

    [[noreturn]] void fail(int number, const QString& text);
    // Fails where the line is out of step with the server, mid-reply or
    // silent: it is dropped, since a QUIT would only wait in vain.
    [[noreturn]] void failAndDrop(int number, const QString& text);
    void requireConnection();
    void openSocket();
    QByteArray readStatus(int timeoutError, int lostError);
    // Waits for more of a reply; fails with the number for silence or loss.
    void waitForMore(int timeoutError, int lostError);
    // Sends a command and reads its status line; `expected` is the size of
    // the reply that follows, which sets its deadline.
    PopReader::Status command(const QByteArray& line, int timeoutError, int lostError,
                              qint64 expected = 0);
    // Reads a block to its end; false, with the block unfinished, once it
    // holds more than `limit` bytes.
    bool readBlock(QByteArray& out, int timeoutError, int lostError, qint64 limit,
                   qint64* progress = nullptr, qint64 total = 0);
    // Whether a listed size already passes the size limit.
    bool tooLarge(const RetrievedMessage& item) const;
    // What a message's block may hold: its listed size and a margin, and
    // never more than the size limit.
    qint64 blockLimit(const RetrievedMessage& item) const;
    // Fails for message n (1-based) whose block ran past blockLimit.
    [[noreturn]] void failOverrun(int number, const char* verb, size_t n,
                                  const RetrievedMessage& item);
    QString tooLargeText(size_t n, qint64 bytes) const;
    void readCapabilities();
    void logIn();
    void readListing();
    void readIdentifiers();
    void sendDeletions();
    void retrieveAll();
    void checkStopped();

    int busy = 0;

    QString hostName;
    qint32 port = 110;
    QString login;
    QString password;
    int timeoutSeconds = 10;
    qint64 maxMessageBytes = DefaultMaxMessageSize;
    int security = SecurityNone;
    PopNotify* notify = nullptr;

    std::unique_ptr<PopConnection> connection;
    std::vector<std::unique_ptr<RetrievedMessage>> items;
    bool loggedIn = false;
    bool listed = false;
    bool capaAnswered = false;
    bool pipelining = false;
    bool uidlOffered = false;
    bool topOffered = false;
    int lastError = 0;
    QString errorText;
};

class QtPopClientFactory : public PopClientFactory {
public:
    std::unique_ptr<PopClient> create() override { return std::make_unique<QtPopClient>(); }
};

} // namespace velmora
