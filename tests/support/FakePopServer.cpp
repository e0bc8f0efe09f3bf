#include "support/FakePopServer.h"

#include "platform/PopErrors.h"

#include <vector>

namespace velmora {

namespace {

// Every message is alike but for its identifier.
class FakeMessage : public PopMessage {
public:
    explicit FakeMessage(const QString& uid) : uid(uid) {}
    qint64 Size() const override { return 1000; }
    QString From() const override { return "sender@example.com"; }
    QString To() const override { return "me@example.com"; }
    QString Subject() const override { return "Subject " + uid; }
    QDateTime Date() const override { return QDateTime(QDate(2026, 11, 20), QTime(9, 30)); }
    QString HeaderText() const override { return {}; }
    QString BodyText() const override { return {}; }
    QString Uid() const override { return uid; }
    int AttachmentCount() const override { return 0; }
    bool Deleted() const override { return deleted; }
    void setDeleted(bool on) override { deleted = on; }

    QString uid;
    bool deleted = false;
};

class FakeClient : public PopClient, public PopMessages {
public:
    explicit FakeClient(FakePopServer& server) : server(server) {}

    void setHostName(const QString& host) override { hostName = host; }
    void setPort(qint32) override {}
    void setLogin(const QString&) override {}
    void setPassword(const QString&) override {}
    void setBlocking(bool) override {}
    void setTimeout(int) override {}
    void setSecurity(int) override {}
    void setNotification(PopNotify* receiver) override { notify = receiver; }

    void Connect() override {
        lastError = 0;
        items.clear();
        if (!server.hosts.contains(hostName))
            fail(PopError::HostNotFound);
        box = &server.hosts[hostName];
        ++box->connects;
        if (box->connectFailure)
            fail(box->connectFailure);
        for (const QString& uid : box->mail)
            items.emplace_back(uid);
        connected = true;
        if (notify)
            notify->Connected();
    }
    // The QUIT makes the marked deletions final.
    void Disconnect() override {
        if (connected && box) {
            for (const FakeMessage& item : items) {
                if (item.deleted)
                    box->mail.removeOne(item.uid);
            }
        }
        connected = false;
    }
    void Abort() override { connected = false; }
    PopMessages& Messages() override { return *this; }
    int LastError() const override { return lastError; }
    QString ErrorText() const override { return errorText; }

    int Count() const override { return int(items.size()); }
    PopMessage& Item(int index) override { return items.at(size_t(index)); }
    void FetchAll() override {
        ++box->fetches;
        const qint64 total = 1000 * qint64(items.size());
        qint64 position = 0;
        for (size_t i = 0; i < items.size(); ++i) {
            if (box->fetchFailure && int(i) == int(items.size()) / 2)
                fail(box->fetchFailure);
            if (box->duringFetch)
                box->duringFetch(int(i) + 1);
            position += items[i].Size();
            if (notify)
                notify->Progress(position, total);
            // A stop tears the line down from inside the progress event.
            if (!connected)
                fail(PopError::ConnectionLost);
            if (notify)
                notify->Received(items[i]);
        }
    }
    void ListMessages() override { ++box->lists; }

private:
    [[noreturn]] void fail(int number) {
        lastError = number;
        errorText = box ? QStringLiteral("scripted failure") : QStringLiteral("Host not found");
        throw Failure{number, errorText};
    }

    FakePopServer& server;
    FakeMailbox* box = nullptr;
    QString hostName;
    PopNotify* notify = nullptr;
    std::vector<FakeMessage> items;
    bool connected = false;
    int lastError = 0;
    QString errorText;
};

} // namespace

std::unique_ptr<PopClient> FakePopClientFactory::create() {
    return std::make_unique<FakeClient>(server);
}

} // namespace velmora
