#include "checking/CheckCycle.h"
#include "checking/PopSession.h"
#include "platform/PopErrors.h"
#include "platform/qt/PopConnection.h"
#include "platform/qt/QtPopClient.h"
#include "support/ManualTimer.h"
#include "support/ScriptedPopServer.h"
#include "support/TestCertificate.h"
#include "support/TestRig.h"

#include <QSslError>
#include <QtTest>

#if defined(__SANITIZE_ADDRESS__)
#define VELMORA_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VELMORA_ASAN 1
#endif
#endif

using namespace velmora;
using Stage = ScriptedPopServer::Stage;
using Server = ScriptedPopServer&;
using Script = std::function<void(Server)>;

// Our client against the scriptable server: every failure it must number,
// and the protocol habits a real server would not show.
class PopClientTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void failures_data();
    void failures();
    void hostileServers_data();
    void hostileServers();
    void fetchesWholeMessages_data();
    void fetchesWholeMessages();
    void withoutUidlMessagesKeepTheirIdentifier();
    void progressMovesWithinOneMessageAndStopEndsTheFetch();
    void deletionsGoOnlyWithAConfirmedQuit_data();
    void deletionsGoOnlyWithAConfirmedQuit();
    void certificateErrorsKeepTheirNumbersAndWords();
    void trustedCasAddUp_data();
    void trustedCasAddUp();

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
    static void aim(QtPopClient& client, quint16 port, bool tls = false,
                    const QString& host = "127.0.0.1");
    // Runs a call; the client's number when it failed, else 0.
    template <class Call> static int failureOf(QtPopClient& client, Call call);

    // Sets the account's fields ("Field=value,..."; "Port=closed" for a
    // port nobody listens on) and "Key=value" options; certificate markers
    // among the fields are passed over.
    static void configure(TestRig& rig, quint16 port, const QString& account,
                          const QString& options);

    std::unique_ptr<QTemporaryDir> dir;
    std::unique_ptr<TestCertificate> certificate;
    QtPopClientFactory pop;
};

namespace {

// The peak resident memory of this process from its making on, in MB above
// what it held then. Unknown (-1) where the kernel keeps the peak of the
// whole run, and under AddressSanitizer, whose shadow and quarantine would
// be counted.
class PeakMemory {
public:
    PeakMemory() {
#ifndef VELMORA_ASAN
        QFile reset("/proc/self/clear_refs");
        known = reset.open(QIODevice::WriteOnly) && reset.write("5") == 1;
#endif
        base = field("VmRSS:");
    }
    qint64 megabytes() const {
        return known ? (field("VmHWM:") - base) / 1024 : -1;
    }

private:
    static qint64 field(const QByteArray& name) {
        QFile status("/proc/self/status");
        if (!status.open(QIODevice::ReadOnly))
            return 0;
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith(name))
                return line.mid(name.size()).trimmed().split(' ').value(0).toLongLong();
        }
        return 0;
    }
    bool known = false;
    qint64 base = 0;
};

} // namespace

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

void PopClientTest::aim(QtPopClient& client, quint16 port, bool tls, const QString& host) {
    client.setHostName(host);
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

// Each failure through the logic to its dialog, with the words the client
// gives it: the connection test for the login phase, a check for the fetch.
void PopClientTest::failures_data() {
    QTest::addColumn<Script>("script");
    QTest::addColumn<QString>("account"); // account fields that differ from a good one
    QTest::addColumn<bool>("check");
    QTest::addColumn<QString>("line");
    auto row = [](const char* name, const QString& account, bool check, const QString& line,
                  Script script = nullptr) {
        QTest::newRow(name) << script << account << check << line;
    };
    row("refused", "Port=closed", false, "10061 - Connection refused");
    row("stall before the greeting", "", false, "10060 - Winsock Error - Connection Timed Out",
        [](Server s) { s.stallAt(Stage::Greeting); });
    row("reset before the greeting", "", false, "10054 - Winsock Error - Connection Reset by Peer",
        [](Server s) { s.resetAt(Stage::Greeting); });
    row("reset at the password", "", false, "10054 - Winsock Error - Connection Reset by Peer",
        [](Server s) { s.resetAt(Stage::Pass); });
    row("no host name", "Server=", false, "30001 - No host name given");
    row("not a POP3 greeting", "", false,
        "30003 - The server's greeting is not a POP3 greeting: HTTP/1.1 400 Bad Request",
        [](Server s) { s.setGreeting("HTTP/1.1 400 Bad Request"); });
    row("busy", "", false, "30004 - The server refused the connection: busy",
        [](Server s) { s.failAt(Stage::Greeting, "-ERR busy"); });
    row("wrong password", "Password=wrong", false,
        "30007 - The server rejected the password: [AUTH] Authentication failed.");
    row("unknown user", "", false, "30007 - The server rejected the login: who?",
        [](Server s) { s.failAt(Stage::User, "-ERR who?"); });
    row("STAT refused", "", false, "30010 - STAT failed: scripted failure",
        [](Server s) { s.failAt(Stage::Stat); });
    row("LIST refused", "", false, "30011 - LIST failed: scripted failure",
        [](Server s) { s.failAt(Stage::List); });
    row("offered UIDL refused", "", true, "30011 - UIDL failed: scripted failure",
        [](Server s) { s.failAt(Stage::Uidl); });
    row("RETR refused", "", true, "30012 - RETR 2 failed: gone",
        [](Server s) { s.failAt(Stage::Retr, "-ERR gone", 2); });
    row("reset in the middle of a message", "", true, "30013 - The connection was lost",
        [](Server s) { s.resetAt(Stage::Retr, 2, 100); });
    row("stall in the middle of a message", "", true,
        "30014 - No answer from the server within 1 seconds",
        [](Server s) { s.stallAt(Stage::Retr, 2, 100); });
    row("TLS against a plain server", "Secure=1", false,
        "60000 - SSL Handshake Error: This may be caused by using SSL on the\r\nwrong Port.");
    row("TLS to a server that never answers the hello", "Secure=1", false,
        "10060 - Winsock Error - Connection Timed Out",
        [](Server s) { s.stallAt(Stage::Greeting); });
    row("reset in the middle of a message, over TLS", "Secure=1,trusted", true,
        "30013 - The connection was lost", [](Server s) { s.resetAt(Stage::Retr, 2, 100); });
    row("stall in the middle of a message, over TLS", "Secure=1,trusted", true,
        "30014 - No answer from the server within 1 seconds",
        [](Server s) { s.stallAt(Stage::Retr, 2, 100); });
    row("certificate nobody vouches for", "Secure=1,selfsigned", false,
        "60009 - The server's certificate failed verification: The certificate is self-signed, "
        "and untrusted");
    const QString otherHost = "60022 - The server's certificate failed verification: The host "
                              "name did not match any of the valid hosts for this certificate";
    row("certificate for another host, reached by address", "Secure=1,otherhost", false, otherHost);
    row("certificate for another host, reached by name", "Secure=1,otherhost,Server=localhost",
        false, otherHost);
    row("wildcard name standing for an address", "Secure=1,wildcard", false, otherHost);
}

void PopClientTest::failures() {
    QFETCH(Script, script);
    QFETCH(QString, account);
    QFETCH(bool, check);
    QFETCH(QString, line);
    // A marker names the certificate a TLS server presents; without one the
    // server is plain.
    const std::pair<const char*, TestCertificate::Kind> markers[] = {
        {"trusted", TestCertificate::Trusted},
        {"selfsigned", TestCertificate::SelfSigned},
        {"otherhost", TestCertificate::ForAnotherHost},
        {"wildcard", TestCertificate::WildcardForAddress}};
    ScriptedPopServer server;
    bool listening = server.listen();
    for (const auto& [marker, kind] : markers)
        if (account.split(',').contains(marker))
            listening = server.listen(certificate.get(), kind);
    QVERIFY(listening);
    server.setMessages(mailbox(3));
    if (script)
        script(server);

    TestRig rig;
    configure(rig, server.port(), account, "ConnectTimeOut=1");
    rig.ctx->svc.pop = &pop;
    QVERIFY(rig.start());
    QElapsedTimer elapsed;
    elapsed.start();
    if (check)
        CheckAllAccounts(*rig.ctx);
    else
        TestAccountConnection(*rig.ctx);
    // Every wait is bounded by the one-second time-out.
    QVERIFY(elapsed.elapsed() < 3000);
    QCOMPARE(rig.boxes.boxes.size(), 1);
    const RecordedBoxes::Box& box = rig.boxes.boxes[0];
    QCOMPARE(box.title, check ? QString("Velmora - Error Processing Messages")
                              : QString("Velmora - Test Connection Failure"));
    QVERIFY2(box.text.contains("Error Message:\r\n" + line + "\r\n\r\n"), qPrintable(box.text));
}

void PopClientTest::configure(TestRig& rig, quint16 port, const QString& account,
                              const QString& options) {
    rig.addAccount(1, "Home");
    const QString s = "Settings\\";
    for (const QString& option : options.split(',', Qt::SkipEmptyParts))
        rig.settings.set(s + "Options\\" + option.section('=', 0, 0), option.section('=', 1));
    const QString good = "Server=127.0.0.1,LoginID=user,Password=secret,Port=%1,";
    for (const QString& field : (good.arg(port) + account).split(',', Qt::SkipEmptyParts))
        if (field.contains('='))
            rig.settings.set(s + "Acnt" + field.section('=', 0, 0) + "1", field.section('=', 1));
    if (rig.settings.get(s + "AcntPort1") == "closed")
        rig.settings.set(s + "AcntPort1", QString::number(ScriptedPopServer::closedPort()));
}

// What a server says is never trusted for memory or time: each row is one
// check against a hostile or broken server, with the number of its dialog
// (0 for none), the account's outcome, and bounds on the wall time and on
// the memory the check took.
void PopClientTest::hostileServers_data() {
    QTest::addColumn<Script>("script");
    QTest::addColumn<QString>("account");
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("stopAfterMs"); // the Stop button, that long into the check
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QByteArray>("neverSent"); // a command the client must not send
    QTest::addColumn<double>("seconds");
    QTest::addColumn<int>("megabytes");
    const QString failed = "Error Accessing Account";
    const QString stopped = "User Stopped Retrieval";
    const QString quick = "ConnectTimeOut=1";
    auto row = [](const char* name, const QString& options, int number, const QString& status,
                  Script script, const char* neverSent = "", double seconds = 3, int megabytes = 60,
                  const QString& account = "", int stopAfterMs = 0) {
        QTest::newRow(name) << script << account << options << stopAfterMs << number << status
                            << QByteArray(neverSent) << seconds << megabytes;
    };
    const auto listing = [](const QByteArray& second) {
        return [second](Server s) {
            s.failAt(Stage::List, "+OK\r\n1 300\r\n2 " + second + "\r\n3 300\r\n.");
        };
    };
    const int retr = PopError::RetrieveFailed;
    row(
        "listed beyond the limit: never asked for", quick + ",MaxMessageSize=1", retr, failed,
        [](Server s) {
            auto box = mailbox(3);
            box[1].data = mailbox(1, 2000000)[0].data;
            s.setMessages(box);
        },
        "RETR 2");
    row("listed at 2^62 bytes", quick, retr, failed, listing("4611686018427387904"), "RETR 2");
    row("listed past 64 bits", quick, retr, failed, listing("99999999999999999999999"), "RETR 2");
    row(
        "all listed near the largest 64-bit number", quick, retr, failed,
        [](Server s) {
            const QByteArray most = "9223372036854775807";
            s.failAt(Stage::List, "+OK\r\n1 " + most + "\r\n2 " + most + "\r\n3 " + most + "\r\n.");
        },
        "RETR 1");
    row("negative size", quick, PopError::ListingFailed, failed, listing("-300"), "RETR 1");
    row("endless message listed small", quick, retr, failed,
        [](Server s) { s.floodAt(Stage::Retr, 2, "filler line\r\n"); });
    row("endless line in a message", quick, retr, failed,
        [](Server s) { s.floodAt(Stage::Retr, 2, "x"); });
    row("endless message listed within the limit", quick + ",MaxMessageSize=5", retr, failed,
        [listing](Server s) {
            listing("4000000")(s);
            s.floodAt(Stage::Retr, 2, "filler line\r\n");
        });
    row("greeting a byte at a time", quick, PopError::TimedOut, failed,
        [](Server s) { s.trickleAt(Stage::Greeting, 0, 1, 200); });
    row("listing a byte at a time", quick, PopError::TimedOut, failed,
        [](Server s) { s.trickleAt(Stage::List, 0, 1, 200); });
    row("message a byte at a time", quick, PopError::TimedOut, failed,
        [](Server s) { s.trickleAt(Stage::Retr, 2, 1, 200); });
    row("10 MB greeting line", quick, PopError::ReplyTooLong, failed,
        [](Server s) { s.setGreeting(QByteArray(10 * 1000 * 1000, 'x')); });
    row("10 MB listing line", quick, PopError::ListingFailed, failed,
        [](Server s) { s.failAt(Stage::List, "+OK\r\n1 " + QByteArray(10 * 1000 * 1000, '1')); });
    row(
        "10 MB line in a message", quick, 0, "3 Messages",
        [](Server s) {
            auto box = mailbox(3);
            box[1].data += QByteArray(10 * 1000 * 1000, 'y') + "\r\n";
            s.setMessages(box);
        },
        "", 5, 3 * 10 + 60);
    row(
        "32767 messages: all of a 16-bit count", "ConnectTimeOut=5", 0, "32767 Messages",
        [](Server s) { s.setMessages(mailbox(32767, 60)); }, "", 60, 3 * 4 + 60);
    row(
        "32768 messages: refused before any is retrieved", quick, PopError::TooManyMessages, failed,
        [](Server s) { s.failAt(Stage::Stat, "+OK 32768 3000000"); }, "LIST");
    row(
        "count past 64 bits", quick, PopError::TooManyMessages, failed,
        [](Server s) { s.failAt(Stage::Stat, "+OK 99999999999999999999 0"); }, "LIST");
    const QString patient = "ConnectTimeOut=30";
    row(
        "Stop during a stalled message", patient, 0, stopped,
        [](Server s) { s.stallAt(Stage::Retr, 2, 100); }, "", 1.5, 60, "", 300);
    row(
        "Stop during a stalled greeting", patient, 0, stopped,
        [](Server s) { s.stallAt(Stage::Greeting); }, "STAT", 1.5, 60, "", 300);
    row(
        "Stop during a stalled TLS handshake", patient, 0, stopped,
        [](Server s) { s.stallAt(Stage::Greeting); }, "STAT", 1.5, 60, "Secure=1", 300);
    row(
        "Stop during a message a byte at a time", patient, 0, stopped,
        [](Server s) { s.trickleAt(Stage::Retr, 2, 1, 100); }, "", 1.5, 60, "", 300);
}

void PopClientTest::hostileServers() {
    QFETCH(Script, script);
    QFETCH(QString, account);
    QFETCH(QString, options);
    QFETCH(int, stopAfterMs);
    QFETCH(int, number);
    QFETCH(QString, status);
    QFETCH(QByteArray, neverSent);
    QFETCH(double, seconds);
    QFETCH(int, megabytes);
    ScriptedPopServer server;
    QVERIFY(server.listen());
    server.setMessages(mailbox(3));
    script(server);
    TestRig rig;
    configure(rig, server.port(), account, options);
    rig.ctx->svc.pop = &pop;
    QVERIFY(rig.start());
    AppContext& ctx = *rig.ctx;
    if (stopAfterMs > 0) {
        // The button, then the animation timer's next tick.
        QTimer::singleShot(stopAfterMs, [&ctx] {
            ctx.check.StopRequested = true;
            Manual(ctx.check.tmrRetrieveMessage).fire();
        });
    }

    const PeakMemory memory;
    QElapsedTimer elapsed;
    elapsed.start();
    CheckAllAccounts(ctx);
    const double took = elapsed.elapsed() / 1000.0;
    const qint64 used = memory.megabytes();
    qInfo("%.2f s, %lld MB", took, used);

    QCOMPARE(ctx.accounts[1].AcntStatusText, "Home - " + status);
    QCOMPARE(rig.boxes.boxes.size(), number == 0 ? 0 : 1);
    if (number != 0) {
        const QString text = rig.boxes.boxes[0].text;
        QVERIFY2(text.contains(QString("Error Message:\r\n%1 - ").arg(number)), qPrintable(text));
    }
    if (!neverSent.isEmpty())
        QVERIFY(!server.commands().contains(neverSent));
    QVERIFY2(took < seconds, qPrintable(QString::number(took)));
    QVERIFY2(used <= megabytes, qPrintable(QString::number(used)));
}

void PopClientTest::fetchesWholeMessages_data() {
    QTest::addColumn<bool>("tls");
    QTest::addColumn<QString>("host");
    QTest::addColumn<bool>("pipelining");
    QTest::newRow("TLS to an address, pipelined") << true << "127.0.0.1" << true;
    QTest::newRow("TLS to a name, pipelined") << true << "localhost" << true;
    QTest::newRow("TLS to an address with blanks around it") << true << " 127.0.0.1 " << true;
    QTest::newRow("no CAPA: one command at a time") << false << "127.0.0.1" << false;
}

void PopClientTest::fetchesWholeMessages() {
    QFETCH(bool, tls);
    QFETCH(QString, host);
    QFETCH(bool, pipelining);
    ScriptedPopServer server;
    QVERIFY(server.listen(tls ? certificate.get() : nullptr));
    server.setCapabilities(pipelining, pipelining, true);
    const auto stored = mailbox(20);
    server.setMessages(stored);
    QtPopClient client;
    Events events;
    client.setNotification(&events);
    aim(client, server.port(), tls, host);
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
    QVERIFY(server.commands().contains("QUIT"));
    // USER and PASS go one at a time; pipelined, RETRs go several in one go.
    qsizetype mostRetrs = 0;
    for (const QList<QByteArray>& batch : server.batches()) {
        const auto count = [&](const char* verb) {
            return std::count_if(batch.begin(), batch.end(),
                                 [&](const QByteArray& c) { return c.startsWith(verb); });
        };
        if (count("USER") > 0 || !pipelining)
            QCOMPARE(batch.size(), 1);
        mostRetrs = std::max<qsizetype>(mostRetrs, count("RETR"));
    }
    QCOMPARE(mostRetrs > 1, pipelining);
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
    QTest::addColumn<Script>("script");
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("number");
    auto row = [](const char* name, int left, int number, Script script = nullptr) {
        QTest::newRow(name) << script << left << number;
    };
    row("confirmed", 2, 0);
    row("one DELE refused", 4, PopError::DeleteFailed,
        [](Server s) { s.failAt(Stage::Dele, "-ERR locked", 3); });
    row("QUIT refused", 4, PopError::DeleteFailed,
        [](Server s) { s.failAt(Stage::Quit, "-ERR later"); });
    row("line lost at QUIT", 4, PopError::ConnectionLost, [](Server s) { s.resetAt(Stage::Quit); });
}

void PopClientTest::deletionsGoOnlyWithAConfirmedQuit() {
    QFETCH(Script, script);
    QFETCH(int, left);
    QFETCH(int, number);
    ScriptedPopServer server;
    QVERIFY(server.listen());
    server.setMessages(mailbox(4));
    if (script)
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

// Users and the support address have long known these numbers and words:
// Qt's first verification errors keep theirs, later ones are unknown.
void PopClientTest::certificateErrorsKeepTheirNumbersAndWords() {
    for (int n = QSslError::UnspecifiedError; n <= QSslError::HostNameMismatch; ++n) {
        const QSslError::SslError kind = QSslError::SslError(n);
        QCOMPARE(CertificateText(n), QSslError(kind).errorString());
        QCOMPARE(CertificateError(kind), n == QSslError::NoError ? -1 : n);
    }
    QCOMPARE(CertificateError(QSslError::CertificateBlacklisted), -1);
    QCOMPARE(CertificateError(QSslError::OcspNoResponseFound), -1);
    QCOMPARE(CertificateText(-1), QString("Unknown error"));
}

// Qt itself trusts only the system's CAs; each variable adds its CAs to
// those and to the others'. "ca" is the test servers' CA, "other" one that
// vouches for nothing here.
void PopClientTest::trustedCasAddUp_data() {
    QTest::addColumn<QString>("certFile"); // SSL_CERT_FILE
    QTest::addColumn<QString>("certDir");  // SSL_CERT_DIR
    QTest::addColumn<QString>("caFile");   // VELMORA_CA_FILE
    QTest::addColumn<int>("number");
    const int unknownIssuer =
        PopError::CertificateBase + QSslError::UnableToGetLocalIssuerCertificate;
    auto row = [](const char* name, const char* certFile, const char* certDir, const char* caFile,
                  int number) {
        QTest::newRow(name) << QString(certFile) << QString(certDir) << QString(caFile) << number;
    };
    row("none names the CA", "", "", "", unknownIssuer);
    row("VELMORA_CA_FILE", "", "", "ca", 0);
    row("SSL_CERT_FILE", "ca", "", "", 0);
    row("SSL_CERT_DIR, second folder", "", "missing:ca", "", 0);
    row("VELMORA_CA_FILE beside SSL_CERT_FILE", "other", "", "ca", 0);
    row("SSL_CERT_FILE beside VELMORA_CA_FILE", "ca", "", "other", 0);
    row("another CA only", "other", "other", "other", unknownIssuer);
    row("a CA file that is missing", "", "", "missing", unknownIssuer);
}

void PopClientTest::trustedCasAddUp() {
    QFETCH(QString, certFile);
    QFETCH(QString, certDir);
    QFETCH(QString, caFile);
    QFETCH(int, number);
    const QMap<QString, QString> files = {
        {"ca", certificate->caFile()},
        {"other", certificate->certFile(TestCertificate::SelfSigned)},
        {"missing", dir->path() + "/missing.pem"}};
    // A folder for each CA alone.
    for (const QString name : {"ca", "other"}) {
        QDir().mkpath(dir->path() + "/dir-" + name);
        QFile::copy(files[name], dir->path() + "/dir-" + name + "/" + name + ".pem");
    }
    const QList<std::pair<const char*, QByteArray>> saved = {
        {"SSL_CERT_FILE", qgetenv("SSL_CERT_FILE")},
        {"SSL_CERT_DIR", qgetenv("SSL_CERT_DIR")},
        {"VELMORA_CA_FILE", qgetenv("VELMORA_CA_FILE")}};
    const auto restore = qScopeGuard([&] {
        for (const auto& [name, value] : saved) {
            if (value.isNull())
                qunsetenv(name);
            else
                qputenv(name, value);
        }
    });
    const auto set = [](const char* name, const QString& value) {
        if (value.isEmpty())
            qunsetenv(name);
        else
            qputenv(name, value.toUtf8());
    };
    set("SSL_CERT_FILE", files.value(certFile));
    QStringList folders;
    for (const QString& name : certDir.split(':', Qt::SkipEmptyParts))
        folders.append(dir->path() + "/dir-" + name);
    set("SSL_CERT_DIR", folders.join(':'));
    set("VELMORA_CA_FILE", files.value(caFile));

    ScriptedPopServer server;
    QVERIFY(server.listen(certificate.get()));
    QtPopClient client;
    aim(client, server.port(), true);
    QCOMPARE(failureOf(client, [&] { client.Connect(); }), number);
    client.Disconnect();
}

QTEST_GUILESS_MAIN(PopClientTest)
#include "PopClientTest.moc"
