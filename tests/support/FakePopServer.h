#pragma once

#include "platform/PopClient.h"

#include <QMap>
#include <QStringList>
#include <functional>

namespace velmora {

// Mailboxes in memory, by host name, for clients made by FakePopClientFactory.
// A test fills them, scripts failures, and reads what the clients did.
struct FakeMailbox {
    QStringList mail; // the identifiers of its messages, in order
    // A client number for Connect or FetchAll to fail with.
    int connectFailure = 0;
    int fetchFailure = 0;
    // Runs before each message's progress event during FetchAll.
    std::function<void(int message)> duringFetch;

    int connects = 0;
    int fetches = 0;
    int lists = 0;
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

private:
    FakePopServer& server;
};

} // namespace velmora
