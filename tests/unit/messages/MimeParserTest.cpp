#include "messages/MimeParser.h"

#include <QtTest>

using namespace velmora;

class MimeParserTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void parse_data();
    void parse();
};

void MimeParserTest::parse_data() {
    QTest::addColumn<QByteArray>("raw");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("body");
    QTest::addColumn<int>("attachments");
    QTest::addColumn<bool>("dated");
    auto row = [](const char* name, const QByteArray& raw, const char* from, const QString& subject,
                  const QString& body, int attachments = 0, bool dated = false) {
        QTest::newRow(name) << raw << from << subject << body << attachments << dated;
    };
    row("quoted name and encoded words",
        "From: \"Smith & Jones\" <sj@example.com>\r\nSubject: =?UTF-8?B?R3LDvMOfZQ==?= and\r\n "
        "more\r\nDate: Sat, 21 Nov 2026 09:15:00 +0000\r\n\r\nHi\r\n",
        R"("Smith & Jones" <sj@example.com>)", QString::fromUtf8("Grüße and more"), "Hi\r\n", 0,
        true);
    row("8-bit header", "From: a@b\r\nSubject: caf\xe9\r\n\r\nx", "a@b", QString::fromUtf8("café"),
        "x");
    row("plain over html",
        "From: a@b\r\nContent-Type: multipart/alternative; boundary=B\r\n\r\n"
        "--B\r\nContent-Type: text/html\r\n\r\n<p>html</p>\r\n"
        "--B\r\nContent-Type: text/plain; charset=iso-8859-1\r\n"
        "Content-Transfer-Encoding: quoted-printable\r\n\r\nna=EFve\r\n--B--\r\n",
        "a@b", "", QString::fromUtf8("naïve"));
    row("html only",
        "From: a@b\r\nContent-Type: text/html\r\n\r\n"
        "<html><style>p{}</style><p>Hi &amp; <b>bye</b></p><p>&#233;t&eacute;</p>",
        "a@b", "", QString::fromUtf8("Hi & bye\r\nété"));
    row("attachments a client would list",
        "From: a@b\r\nContent-Type: multipart/mixed; boundary=M\r\n\r\n"
        "--M\r\nContent-Type: text/plain\r\n\r\nbody\r\n"
        "--M\r\nContent-Type: application/pdf; name=a.pdf\r\n"
        "Content-Disposition: attachment; filename=a.pdf\r\n"
        "Content-Transfer-Encoding: base64\r\n\r\nJVBERi0=\r\n"
        "--M\r\nContent-Type: image/png\r\nContent-Disposition: inline\r\n"
        "Content-ID: <i@x>\r\n\r\nabc\r\n"
        "--M\r\nContent-Type: message/rfc822\r\n\r\nSubject: fwd\r\n\r\nold\r\n"
        "--M--\r\n",
        "a@b", "", "body", 2);
    row("unreadable date", "Date: sometime soon\r\n\r\nx", "", "", "x");
    row("no header at all", "\r\njust text", "", "", "just text");
    row("binary garbage", QByteArray("\x00\x01\xff\xfe\r\n\x00--\r\n", 10), "", "", "");
    row("unterminated multipart",
        "Content-Type: multipart/mixed; boundary=Z\r\n\r\n--Z\r\n"
        "Content-Type: text/plain\r\n\r\npart",
        "", "", "part");
}

void MimeParserTest::parse() {
    QFETCH(QByteArray, raw);
    QFETCH(QString, from);
    QFETCH(QString, subject);
    QFETCH(QString, body);
    QFETCH(int, attachments);
    QFETCH(bool, dated);
    // Retrieval times come in as universal time; a message shows local time.
    const QDateTime retrieved(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC);
    const ParsedMessage m = ParseMessage(raw, retrieved);
    QCOMPARE(m.date.timeSpec(), Qt::LocalTime);
    QCOMPARE(m.from, from);
    QCOMPARE(m.subject, subject);
    QCOMPARE(m.body, body);
    QCOMPARE(m.attachments, attachments);
    QCOMPARE(m.date != retrieved, dated);
    if (dated)
        QCOMPARE(m.date.toUTC(), QDateTime(QDate(2026, 11, 21), QTime(9, 15), Qt::UTC));
    QVERIFY(QString::fromLatin1(raw).startsWith(m.header.left(4)));
}

QTEST_GUILESS_MAIN(MimeParserTest)
#include "MimeParserTest.moc"
