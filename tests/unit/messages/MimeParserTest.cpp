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
    const QByteArray date = "Date: Sat, 21 Nov 2026 09:15:00 +0000\r\n";
    QTest::newRow("quoted name and encoded words")
        << QByteArray("From: \"Smith & Jones\" <sj@example.com>\r\n"
                      "Subject: =?UTF-8?B?R3LDvMOfZQ==?= and\r\n more\r\n" +
                      date + "\r\nHi\r\n")
        << R"("Smith & Jones" <sj@example.com>)" << QString::fromUtf8("Grüße and more") << "Hi\r\n"
        << 0 << true;
    QTest::newRow("8-bit header") << QByteArray("From: a@b\r\nSubject: caf\xe9\r\n\r\nx") << "a@b"
                                  << QString::fromUtf8("café") << "x" << 0 << false;
    QTest::newRow("plain over html")
        << QByteArray("From: a@b\r\nContent-Type: multipart/alternative; boundary=B\r\n\r\n"
                      "--B\r\nContent-Type: text/html\r\n\r\n<p>html</p>\r\n"
                      "--B\r\nContent-Type: text/plain; charset=iso-8859-1\r\n"
                      "Content-Transfer-Encoding: quoted-printable\r\n\r\nna=EFve\r\n--B--\r\n")
        << "a@b"
        << "" << QString::fromUtf8("naïve") << 0 << false;
    QTest::newRow("html only")
        << QByteArray("From: a@b\r\nContent-Type: text/html\r\n\r\n"
                      "<html><style>p{}</style><p>Hi &amp; <b>bye</b></p><p>&#233;t&eacute;</p>")
        << "a@b"
        << "" << QString::fromUtf8("Hi & bye\r\nété") << 0 << false;
    QTest::newRow("attachments a client would list")
        << QByteArray("From: a@b\r\nContent-Type: multipart/mixed; boundary=M\r\n\r\n"
                      "--M\r\nContent-Type: text/plain\r\n\r\nbody\r\n"
                      "--M\r\nContent-Type: application/pdf; name=a.pdf\r\n"
                      "Content-Disposition: attachment; filename=a.pdf\r\n"
                      "Content-Transfer-Encoding: base64\r\n\r\nJVBERi0=\r\n"
                      "--M\r\nContent-Type: image/png\r\nContent-Disposition: inline\r\n"
                      "Content-ID: <i@x>\r\n\r\nabc\r\n"
                      "--M\r\nContent-Type: message/rfc822\r\n\r\nSubject: fwd\r\n\r\nold\r\n"
                      "--M--\r\n")
        << "a@b"
        << ""
        << "body" << 2 << false;
    QTest::newRow("unreadable date") << QByteArray("Date: sometime soon\r\n\r\nx") << ""
                                     << ""
                                     << "x" << 0 << false;
    QTest::newRow("no header at all") << QByteArray("\r\njust text") << ""
                                      << ""
                                      << "just text" << 0 << false;
    QTest::newRow("binary garbage") << QByteArray("\x00\x01\xff\xfe\r\n\x00--\r\n", 10) << ""
                                    << ""
                                    << "" << 0 << false;
    QTest::newRow("unterminated multipart")
        << QByteArray("Content-Type: multipart/mixed; boundary=Z\r\n\r\n--Z\r\n"
                      "Content-Type: text/plain\r\n\r\npart")
        << ""
        << ""
        << "part" << 0 << false;
}

void MimeParserTest::parse() {
    QFETCH(QByteArray, raw);
    QFETCH(QString, from);
    QFETCH(QString, subject);
    QFETCH(QString, body);
    QFETCH(int, attachments);
    QFETCH(bool, dated);
    const QDateTime retrieved(QDate(2026, 11, 21), QTime(12, 0));
    const ParsedMessage m = ParseMessage(raw, retrieved);
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
