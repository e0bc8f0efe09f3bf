#include "platform/PopErrors.h"
#include "platform/qt/QtPopClient.h"
#include "support/ScriptedPopServer.h"
#include "support/TestCertificate.h"

#include <QtTest>

using namespace velmora;
using Stage = ScriptedPopServer::Stage;

// Our client against the scriptable server: every failure it must number,
// and the protocol habits a real server would not show.
class PopClientTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void failures_data();
    void failures();
    void stalledServerTimesOutWithinTheTimeout();
    void fetchesWholeMessagesPipelined();
    void withoutUidlMessagesKeepTheirIdentifier();
    void withoutPipeliningOneCommandAtATime();
    void progressMovesWithinOneMessageAndStopEndsTheFetch();
    void deletionsGoOnlyWithAConfirmedQuit_data();
    void deletionsGoOnlyWithAConfirmedQuit();

private:
    struct Events : PopNotify {
        void Connected() override { ++connected; }
        void Progress(qint64 position, qint64 total) override {
            positions.append(position);
            totals = total;
            if (onProgress)
                onProgress();
        }
        void Received(PopMessage&) override { ++received; }
        int connected = 0;
        int received = 0;
        QList<qint64> positions;
        qint64 totals = 0;
        std::function<void()> onProgress;
    };
    static QList<ScriptedPopServer::Message> mailbox(int count, int bodyBytes = 300);
    static void aim(QtPopClient& client, quint16 port, bool tls = false);
    // Runs a call; the client's number when it failed, else 0.
    template <class Call> static int failureOf(QtPopClient& client, Call call);

    std::unique_ptr<QTemporaryDir> dir;
    std::unique_ptr<TestCertificate> certificate;
};

QList<ScriptedPopServer::Message> PopClientTest::mailbox(int count, int bodyBytes) {
    QList<ScriptedPopServer::Message> list;
    for (int n = 1; n <= count; ++n) {
        QByteArray data =
            "From: a@example.com\r\nSubject: message " + QByteArray::number(n) + "\r\n\r\n";
        while (data.size() < bodyBytes)
            data += ".dotted line to stuff\r\nplain line\r\n";
        list.append({data, "uid-" + QByteArray::number(n)});
    }
    return list;
}

void PopClientTest::aim(QtPopClient& client, quint16 port, bool tls) {
    client.setHostName("127.0.0.1");
    client.setPort(port);
    client.setLogin("user");
    client.setPassword("secret");
    client.setTimeout(1);
    client.setSecurity(tls ? PopClient::SecurityImplicitTls : PopClient::SecurityNone);
}

template <class Call> int PopClientTest::failureOf(QtPopClient& client, Call call) {
    try {
        call();
        return 0;
    } catch (const Failure& f) {
        if (f.number != client.LastError())
            return -1;
        return f.number;
    }
}

void PopClientTest::initTestCase() {
    dir = std::make_unique<QTemporaryDir>();
    certificate = std::make_unique<TestCertificate>(dir->path());
    QVERIFY2(certificate->ok(), qPrintable(certificate->error()));
    qputenv("VELMORA_CA_FILE", certificate->caFile().toUtf8());
}

void PopClientTest::failures_data() {
    QTest::addColumn<std::function<void(ScriptedPopServer&)>>("script");
    QTest::addColumn<bool>("tls");
    QTest::addColumn<bool>("untrusted");
    QTest::addColumn<int>("fetchStep"); // 0 Connect, 1 ListMessages, 2 FetchAll
    QTest::addColumn<int>("number");
    using Script = std::function<void(ScriptedPopServer&)>;
    const Script none = [](ScriptedPopServer&) {
    };
    QTest::newRow("reset before the greeting")
        << Script([](ScriptedPopServer& s) { s.resetAt(Stage::Greeting); }) << false << false << 0
        << PopError::ConnectionReset;
    QTest::newRow("reset at the password")
        << Script([](ScriptedPopServer& s) { s.resetAt(Stage::Pass); }) << false << false << 0
        << PopError::ConnectionReset;
    QTest::newRow("not a POP3 greeting")
        << Script([](ScriptedPopServer& s) { s.setGreeting("HTTP/1.1 400 Bad Request"); }) << false
        << false << 0 << PopError::NotPop3Greeting;
    QTest::newRow("busy greeting")
        << Script([](ScriptedPopServer& s) { s.failAt(Stage::Greeting, "-ERR busy"); }) << false
        << false << 0 << PopError::ServerRefused;
    QTest::newRow("wrong password")
        << Script([](ScriptedPopServer& s) { s.setCredentials("user", "other"); }) << false << false
        << 0 << PopError::LoginRejected;
    QTest::newRow("unknown user") << Script([](ScriptedPopServer& s) {
        s.failAt(Stage::User, "-ERR who?");
    }) << false << false << 0 << PopError::LoginRejected;
    QTest::newRow("STAT refused") << Script([](ScriptedPopServer& s) { s.failAt(Stage::Stat); })
                                  << false << false << 0 << PopError::StatFailed;
    QTest::newRow("LIST refused") << Script([](ScriptedPopServer& s) { s.failAt(Stage::List); })
                                  << false << false << 1 << PopError::ListingFailed;
    QTest::newRow("offered UIDL refused")
        << Script([](ScriptedPopServer& s) { s.failAt(Stage::Uidl); }) << false << false << 2
        << PopError::ListingFailed;
    QTest::newRow("RETR refused") << Script([](ScriptedPopServer& s) {
        s.failAt(Stage::Retr, "-ERR gone", 2);
    }) << false << false << 2 << PopError::RetrieveFailed;
    QTest::newRow("reset in the middle of a message")
        << Script([](ScriptedPopServer& s) { s.resetAt(Stage::Retr, 2, 100); }) << false << false
        << 2 << PopError::ConnectionLost;
    QTest::newRow("stall in the middle of a message")
        << Script([](ScriptedPopServer& s) { s.stallAt(Stage::Retr, 2, 100); }) << false << false
        << 2 << PopError::RetrieveTimedOut;
    QTest::newRow("TLS against a plain server")
        << none << false << false << -1 << PopError::TlsHandshake;
    QTest::newRow("certificate nobody vouches for") << none << true << true << 0 << -2;
}

void PopClientTest::failures() {
    QFETCH(std::function<void(ScriptedPopServer&)>, script);
    QFETCH(bool, tls);
    QFETCH(bool, untrusted);
    QFETCH(int, fetchStep);
    QFETCH(int, number);
    ScriptedPopServer server;
    QVERIFY(server.listen(tls ? certificate.get() : nullptr, untrusted));
    server.setMessages(mailbox(3));
    script(server);
    QtPopClient client;
    // -1: the client asks for TLS where the server has none.
    aim(client, server.port(), tls || fetchStep < 0);
    int failed = failureOf(client, [&] { client.Connect(); });
    if (failed == 0 && fetchStep == 1)
        failed = failureOf(client, [&] { client.Messages().ListMessages(); });
    if (failed == 0 && fetchStep == 2)
        failed = failureOf(client, [&] { client.Messages().FetchAll(); });
    if (number == -2) {
        QVERIFY2(failed > PopError::TlsHandshake, qPrintable(client.ErrorText()));
        QVERIFY(client.ErrorText().contains("certificate"));
    } else {
        QVERIFY2(failed == number,
                 qPrintable(QString("%1: %2").arg(failed).arg(client.ErrorText())));
    }
    client.Disconnect();
}

void PopClientTest::stalledServerTimesOutWithinTheTimeout() {
    ScriptedPopServer server;
    QVERIFY(server.listen());
    server.stallAt(Stage::Greeting);
    QtPopClient client;
    aim(client, server.port());
    QElapsedTimer elapsed;
    elapsed.start();
    QCOMPARE(failureOf(client, [&] { client.Connect(); }), PopError::TimedOut);
    QVERIFY(elapsed.elapsed() >= 900);
    QVERIFY(elapsed.elapsed() < 3000);

    QtPopClient refused;
    aim(refused, ScriptedPopServer::closedPort());
    QCOMPARE(failureOf(refused, [&] { refused.Connect(); }), PopError::ConnectionRefused);
    refused.setPort(70000);
    QCOMPARE(failureOf(refused, [&] { refused.Connect(); }), PopError::BadPort);
    refused.setHostName(" ");
    QCOMPARE(failureOf(refused, [&] { refused.Connect(); }), PopError::NoHostName);
}

void PopClientTest::fetchesWholeMessagesPipelined() {
    ScriptedPopServer server;
    QVERIFY(server.listen(certificate.get()));
    const auto stored = mailbox(20);
    server.setMessages(stored);
    QtPopClient client;
    Events events;
    client.setNotification(&events);
    aim(client, server.port(), true);
    client.Connect();
    QCOMPARE(events.connected, 1);
    QCOMPARE(client.Messages().Count(), 20);
    client.Messages().FetchAll();
    client.Disconnect();
    QCOMPARE(events.received, 20);
    for (int i = 0; i < 20; ++i) {
        PopMessage& m = client.Messages().Item(i);
        QCOMPARE(m.Uid(), QString::fromLatin1(stored[i].uid));
        QCOMPARE(m.Size(), stored[i].data.size());
        QCOMPARE(m.Subject(), QString("message %1").arg(i + 1));
    }
    QVERIFY(server.sawQuit());
    // USER and PASS went one at a time; RETR went several in one go.
    int mostRetrs = 0;
    for (const QList<QByteArray>& batch : server.batches()) {
        const bool hasUser = std::any_of(batch.begin(), batch.end(),
                                         [](const QByteArray& c) { return c.startsWith("USER"); });
        if (hasUser)
            QCOMPARE(batch.size(), 1);
        mostRetrs = std::max<int>(
            mostRetrs, int(std::count_if(batch.begin(), batch.end(), [](const QByteArray& c) {
                return c.startsWith("RETR");
            })));
    }
    QVERIFY(mostRetrs > 1);
}

void PopClientTest::withoutUidlMessagesKeepTheirIdentifier() {
    ScriptedPopServer server;
    QVERIFY(server.listen());
    server.setCapabilities(true, true, false);
    server.setMessages(mailbox(3));
    QStringList listed;
    QStringList fetched;
    for (int run = 0; run < 2; ++run) {
        QtPopClient client;
        aim(client, server.port());
        client.Connect();
        if (run == 0)
            client.Messages().ListMessages();
        else
            client.Messages().FetchAll();
        for (int i = 0; i < 3; ++i)
            (run == 0 ? listed : fetched).append(client.Messages().Item(i).Uid());
        client.Disconnect();
    }
    QCOMPARE(listed, fetched);
    QVERIFY(listed[0].startsWith("sha1-"));
    QCOMPARE(QSet<QString>(listed.begin(), listed.end()).size(), 3);
    QVERIFY(!server.commands().contains("UIDL"));
}

void PopClientTest::withoutPipeliningOneCommandAtATime() {
    ScriptedPopServer server;
    QVERIFY(server.listen());
    server.setCapabilities(false, false, true);
    server.setMessages(mailbox(5));
    QtPopClient client;
    aim(client, server.port());
    client.Connect();
    client.Messages().FetchAll();
    client.Disconnect();
    for (const QList<QByteArray>& batch : server.batches())
        QCOMPARE(batch.size(), 1);
    QCOMPARE(client.Messages().Item(4).Uid(), QString("uid-5"));
}

void PopClientTest::progressMovesWithinOneMessageAndStopEndsTheFetch() {
    ScriptedPopServer server;
    QVERIFY(server.listen());
    server.setMessages(mailbox(2, 200000));
    server.setThrottle(20000, 5);
    QtPopClient client;
    Events events;
    client.setNotification(&events);
    aim(client, server.port());
    client.Connect();
    events.onProgress = [&] {
        if (events.positions.size() == 4)
            client.Disconnect(); // the Stop button, from inside the fetch
    };
    QCOMPARE(failureOf(client, [&] { client.Messages().FetchAll(); }), PopError::ConnectionLost);
    QCOMPARE(events.received, 0);
    QCOMPARE(events.positions.size(), 4);
    QVERIFY(std::is_sorted(events.positions.begin(), events.positions.end()));
    QVERIFY(events.positions.last() < events.totals / 2);
    client.Disconnect();
}

void PopClientTest::deletionsGoOnlyWithAConfirmedQuit_data() {
    QTest::addColumn<std::function<void(ScriptedPopServer&)>>("script");
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("number");
    using Script = std::function<void(ScriptedPopServer&)>;
    QTest::newRow("confirmed") << Script([](ScriptedPopServer&) {}) << 2 << 0;
    QTest::newRow("one DELE refused")
        << Script([](ScriptedPopServer& s) { s.failAt(Stage::Dele, "-ERR locked", 3); }) << 4
        << PopError::DeleteFailed;
    QTest::newRow("QUIT refused") << Script([](ScriptedPopServer& s) {
        s.failAt(Stage::Quit, "-ERR later");
    }) << 4 << PopError::DeleteFailed;
    QTest::newRow("line lost at QUIT")
        << Script([](ScriptedPopServer& s) { s.resetAt(Stage::Quit); }) << 4
        << PopError::ConnectionLost;
}

void PopClientTest::deletionsGoOnlyWithAConfirmedQuit() {
    QFETCH(std::function<void(ScriptedPopServer&)>, script);
    QFETCH(int, left);
    QFETCH(int, number);
    ScriptedPopServer server;
    QVERIFY(server.listen());
    server.setMessages(mailbox(4));
    script(server);
    QtPopClient client;
    aim(client, server.port());
    client.Connect();
    client.Messages().ListMessages();
    client.Messages().Item(0).setDeleted(true);
    client.Messages().Item(2).setDeleted(true);
    QCOMPARE(failureOf(client, [&] { client.Disconnect(); }), number);
    QTRY_COMPARE(server.messages().size(), left);
    if (left == 2)
        QCOMPARE(server.messages()[1].uid, QByteArray("uid-4"));
}

QTEST_GUILESS_MAIN(PopClientTest)
#include "PopClientTest.moc"
