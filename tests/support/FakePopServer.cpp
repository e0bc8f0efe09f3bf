#include "support/FakePopServer.h"

#include "platform/PopErrors.h"

#include <vector>

namespace velmora {

namespace {

class FakeMessage : public PopMessage {
public:
    explicit FakeMessage(const FakeMailbox::Mail& mail) : mail(mail) {}
    qint64 Size() const override { return mail.size; }
    QString From() const override { return mail.from; }
    QString To() const override { return mail.to; }
    QString Subject() const override { return mail.subject; }
    QDateTime Date() const override { return mail.date; }
    QString HeaderText() const override { return mail.header; }
    QString BodyText() const override { return mail.body; }
    QString Uid() const override { return mail.uid; }
    int AttachmentCount() const override { return mail.attachments; }
    bool Deleted() const override { return deleted; }
    void setDeleted(bool on) override { deleted = on; }

    FakeMailbox::Mail mail;
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
        for (const auto& mail : box->mail)
            items.emplace_back(mail);
        connected = true;
        if (box->sendsConnected && notify)
            notify->Connected();
    }
    void Disconnect() override {
        if (connected && box) {
            for (const FakeMessage& item : items) {
                if (item.deleted)
                    box->deletedUids.append(item.mail.uid);
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
        qint64 total = 0;
        for (const FakeMessage& item : items)
            total += item.mail.size;
        qint64 position = 0;
        for (size_t i = 0; i < items.size(); ++i) {
            if (box->fetchFailure && int(i) == int(items.size()) / 2)
                fail(box->fetchFailure);
            if (box->duringFetch)
                box->duringFetch(int(i) + 1);
            position += items[i].mail.size;
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
        errorText = box ? box->failureText : QStringLiteral("Host not found");
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
    ++made;
    return std::make_unique<FakeClient>(server);
}

} // namespace velmora
