#pragma once

#include "platform/PopClient.h"

#include <QDateTime>
#include <QMap>
#include <QStringList>
#include <functional>

namespace velmora {

// Mailboxes in memory, by host name, for clients made by FakePopClientFactory.
// A test fills them, scripts failures, and reads what the clients did.
struct FakeMailbox {
    struct Mail {
        QString uid;
        qint64 size = 1000;
        QString from = "sender@example.com";
        QString to = "me@example.com";
        QString subject;
        QDateTime date = QDateTime(QDate(2026, 11, 20), QTime(9, 30, 0));
        QString header;
        QString body;
        int attachments = 0;

        static Mail Uid(const QString& id) {
            Mail m;
            m.uid = id;
            return m;
        }
    };
    QList<Mail> mail;
    // A client number for Connect or FetchAll to fail with, and its text.
    int connectFailure = 0;
    int fetchFailure = 0;
    QString failureText = "scripted failure";
    // Runs before each message's progress event during FetchAll.
    std::function<void(int message)> duringFetch;
    // Whether the client reports Connected after a good login.
    bool sendsConnected = true;

    int connects = 0;
    int fetches = 0;
    int lists = 0;
    QStringList deletedUids;
};

class FakePopServer {
public:
    FakeMailbox& host(const QString& name) { return hosts[name]; }
    QMap<QString, FakeMailbox> hosts;
};

class FakePopClientFactory : public PopClientFactory {
public:
    explicit FakePopClientFactory(FakePopServer& server) : server(server) {}
    std::unique_ptr<PopClient> create() override;
    int made = 0;

private:
    FakePopServer& server;
};

} // namespace velmora
