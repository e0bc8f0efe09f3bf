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
    void requireConnection();
    void openSocket();
    QByteArray readStatus(int timeoutError, int lostError);
    // Waits for more of a reply; fails with the number for silence or loss.
    void waitForMore(int timeoutError, int lostError);
    PopReader::Status command(const QByteArray& line, int timeoutError, int lostError);
    void readBlock(QByteArray& out, int timeoutError, int lostError, qint64* progress = nullptr,
                   qint64 total = 0);
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
