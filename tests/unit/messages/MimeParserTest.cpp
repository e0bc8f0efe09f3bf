#include "messages/MimeParser.h"

#include <QtTest>

using namespace velmora;

class MimeParserTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void parse_data();
    void parse();
    void quickMatchesTree_data();
    void quickMatchesTree();
    void quickMatchesTreeOnDamagedMessages();
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

// The quick reading of single text parts must give what the full tree
// gives, and must leave to the tree whatever it cannot read the same.
namespace {

struct QuickCase {
    const char* name;
    QByteArray raw;
    bool quick; // whether the quick reading takes it
};

QList<QuickCase> QuickCases() {
    QList<QuickCase> cases;
    auto row = [&cases](const char* name, const QByteArray& header, const QByteArray& body,
                        bool quick) {
        cases.append({name, header + "\r\n" + body, quick});
    };
    const QByteArray head = "From: A <a@b>\r\nTo: c@d\r\nSubject: Hi\r\n"
                            "Date: Sat, 21 Nov 2026 09:15:00 +0000\r\n";
    row("bare", head, "Hello\r\n", true);
    row("no fields of ours", "X-A: 1\r\n", "text", true);
    row("folded and encoded",
        "fROM:  =?UTF-8?Q?J=C3=B6rg?=\r\n\t<j@x>  \r\nSubject: =?ISO-8859-1?B?5A==?=\r\n "
        "=?UTF-8?B?w6Q=?= x\r\nTo:\r\nDate:\r\n",
        "b", true);
    row("8-bit values", "From: Ren\xe9 <r@x>\r\nSubject: \xc3\xa9t\xc3\xa9\r\n", "b", true);
    row("repeated fields, the first counts", head + "From: other <o@x>\r\nSubject: two\r\n", "b",
        true);
    row("odd dates", "Date: 21 Nov 2026 25:99\r\nDate: Sat, 21 Nov 2026 09:15:00 +0000\r\n", "b",
        true);
    row("quoted-printable",
        head + "Content-Type: text/plain; charset=\"UTF-8\"\r\n"
               "Content-Transfer-Encoding: Quoted-Printable\r\n",
        "caf=C3=A9 =\r\nsoft=3D break=\r\n=ZZ end=", true);
    row("base64 with noise", head + "Content-Transfer-Encoding: base64\r\n",
        "SGVs\r\nbG8g!!d29y\r\nbGQ=\r\n==", true);
    row("unknown encoding", head + "Content-Transfer-Encoding: x-gzip\r\n", "raw", true);
    row("uuencode", head + "Content-Transfer-Encoding: x-uuencode\r\n",
        "begin 644 a\r\n#86)C\r\n`\r\nend\r\n", false);
    row("html", head + "Content-Type: TEXT/HTML;\r\n charset=us-ascii\r\n",
        "<p>a &amp; b</p><p>c</p>", true);
    row("invalid UTF-8 body", head + "Content-Type: text/plain; charset=utf-8\r\n", "caf\xe9\r\n",
        true);
    row("inline with a name",
        head + "Content-Type: text/plain; name=a.txt\r\n"
               "Content-Disposition: inline; filename=a.txt\r\n",
        "t", true);
    row("empty body", head, "", true);
    row("unreadable type", head + "Content-Type: ;;;\r\n", "x", true);
    row("type without subtype", head + "Content-Type: text\r\n", "x", true);
    row("Latin-1 charset", head + "Content-Type: text/plain; charset=iso-8859-1\r\n", "caf\xe9",
        false);
    row("attachment", head + "Content-Disposition: attachment; filename=a.txt\r\n", "t", true);
    row("not text", head + "Content-Type: application/pdf\r\n", "%PDF", true);
    row("forwarded", head + "Content-Type: message/rfc822\r\n", "Subject: s\r\n\r\nx", true);
    const QByteArray mixed = head + "Content-Type: multipart/mixed; boundary=\"=_M\"\r\n";
    const QByteArray alternative =
        "Content-Type: multipart/alternative; boundary=A1\r\n\r\n"
        "--A1\r\nContent-Type: text/html; charset=windows-1252\r\n\r\n<p>caf\xe9</p>\r\n"
        "--A1\r\nContent-Type: text/plain; charset=utf-8\r\n"
        "Content-Transfer-Encoding: quoted-printable\r\n\r\ncaf=C3=A9\r\n\r\n--A1--\r\n";
    row("nested, with attachments", mixed,
        "preamble\r\n--=_M\r\n" + alternative +
            "epilogue\r\n"
            "--=_M\r\nContent-Type: text/plain; name=notes.txt\r\n"
            "Content-Disposition: attachment\r\n\r\nnotes\r\n"
            "--=_M\r\nContent-Type: image/png; name=a.png\r\nContent-Transfer-Encoding: base64\r\n"
            "\r\niVBORw0K\r\n"
            "--=_M\r\nContent-Type: image/gif; name=b.gif\r\nContent-Disposition: "
            "inline\r\n\r\nGIF\r\n"
            "--=_M\r\nContent-Type: message/rfc822\r\n\r\nSubject: old\r\n\r\nold\r\n"
            "--=_M--\r\nafter\r\n",
        true);
    row("nested, closing back to back", mixed,
        "--=_M\r\n" + alternative +
            "--=_M\r\nContent-Type: text/plain\r\n\r\nsecond\r\n--=_M--\r\n",
        true);
    row("encoded attachment names", mixed,
        "--=_M\r\nContent-Type: text/plain\r\n\r\nbody\r\n"
        "--=_M\r\nContent-Type: application/pdf; name=\"=?UTF-8?Q?Pr=C3=A4sentation=2Epdf?=\"\r\n"
        "Content-Disposition: attachment;\r\n "
        "filename*=UTF-8''Pr%C3%A4sentation.pdf\r\n\r\n%PDF\r\n"
        "--=_M\r\nContent-Type: image/png; name=\"=?ISO-8859-1?Q?B=E4r.png?=\"\r\n\r\nPNG\r\n"
        "--=_M--\r\n",
        true);
    row("encoded word that reads as parameters", mixed,
        "--=_M\r\nContent-Type: text/plain; name=\"=?UTF-8?Q?a=22;_charset=3Dkoi8-r;_x=3D=22?=\";"
        " charset=utf-8\r\n\r\nbody\r\n--=_M--\r\n",
        false);
    row("html alone", mixed,
        "--=_M\r\nContent-Type: text/html; charset=utf-8\r\n"
        "Content-Transfer-Encoding: base64\r\n\r\nPHA+aMOpPC9wPg==\r\n--=_M--\r\n",
        true);
    row("chosen part in Latin-1", mixed,
        "--=_M\r\nContent-Type: text/plain; charset=iso-8859-1\r\n\r\ncaf\xe9\r\n--=_M--\r\n",
        false);
    row("part without a header", mixed, "--=_M\r\n\r\nx\r\n--=_M--\r\n", false);
    row("empty part", mixed, "--=_M\r\n--=_M--\r\n", false);
    row("never closed", mixed, "--=_M\r\nContent-Type: text/plain\r\n\r\nx\r\n", false);
    row("blanks after a boundary", mixed,
        "--=_M \r\nContent-Type: text/plain\r\n\r\nx\r\n--=_M--\r\n", false);
    row("inner boundary inside the outer", head + "Content-Type: multipart/mixed; boundary=A\r\n",
        "--A\r\nContent-Type: multipart/alternative; boundary=A1\r\n\r\n--A1\r\n"
        "Content-Type: text/plain\r\n\r\nx\r\n--A1--\r\n--A--\r\n",
        false);
    row("digest", head + "Content-Type: multipart/digest; boundary=D\r\n",
        "--D\r\n\r\nSubject: s\r\n\r\nx\r\n--D--\r\n", false);
    row("no boundary", head + "Content-Type: multipart/mixed\r\n", "x", false);
    row("second type", head + "Content-Type: text/plain\r\nContent-Type: text/html\r\n", "x",
        false);
    row("blank before the colon", "Subject : Hi\r\n", "x", false);
    row("line without a colon", "From: a@b\r\nnonsense\r\n", "x", false);
    row("folded first line", " From: a@b\r\n", "x", false);
    row("bare CR in a field", "Subject: a\rb\r\n", "x", false);
    row("mbox separator", "From a@b Sat Nov 21 09:15:00 2026\r\nSubject: s\r\n", "x", false);
    row("no header", "", "text", false);
    cases.append({"no blank line", "Subject: s\r\nFrom: a@b\r\n", false});
    return cases;
}

} // namespace

void MimeParserTest::quickMatchesTree_data() {
    QTest::addColumn<QByteArray>("raw");
    QTest::addColumn<bool>("quick");
    for (const QuickCase& c : QuickCases())
        QTest::newRow(c.name) << c.raw << c.quick;
}

namespace {

const QDateTime kRetrieved(QDate(2026, 11, 21), QTime(12, 0));

// Where the quick reading takes a message, what it read, as the tree reads it.
bool SameAsTree(const QByteArray& raw, const ParsedMessage& q) {
    const ParsedMessage t = ParseMessageTree(raw, kRetrieved);
    return q.from == t.from && q.to == t.to && q.subject == t.subject && q.date == t.date &&
           q.header == t.header && q.body == t.body && q.attachments == t.attachments &&
           q.from.isNull() == t.from.isNull();
}

} // namespace

void MimeParserTest::quickMatchesTree() {
    QFETCH(QByteArray, raw);
    QFETCH(bool, quick);
    ParsedMessage q;
    QCOMPARE(ParseQuickly(raw, kRetrieved, q), quick);
    if (quick)
        QVERIFY(SameAsTree(raw, q));
}

// Every row again with bytes cut, doubled or replaced by the characters
// the structure hangs on: what the quick reading still takes must read
// as the tree reads it.
void MimeParserTest::quickMatchesTreeOnDamagedMessages() {
    static const char pieces[][10] = {"\r\n",      "\r",     "\n", "--", ":",    " ",
                                      "\r\n\r\n",  "=",      "\"", ";",  "\xe9", "\0",
                                      "\r\n--=_M", "--A1--", "=?", "\t", "?=",   "=22"};
    QRandomGenerator random(20261121);
    int taken = 0;
    for (const QuickCase& c : QuickCases()) {
        for (int n = 0; n < 400; ++n) {
            QByteArray raw = c.raw;
            for (int edits = 1 + int(random.bounded(3)); edits > 0; --edits) {
                const qsizetype at = random.bounded(raw.size() + 1);
                const char* piece = pieces[random.bounded(int(std::size(pieces)))];
                const QByteArray bytes(piece, qMax<qsizetype>(1, qstrlen(piece)));
                switch (random.bounded(3)) {
                case 0:
                    raw.remove(at, 1 + random.bounded(4));
                    break;
                case 1:
                    raw.insert(at, bytes);
                    break;
                default:
                    raw.replace(at, bytes.size(), bytes);
                }
            }
            ParsedMessage q;
            if (!ParseQuickly(raw, kRetrieved, q))
                continue;
            ++taken;
            if (!SameAsTree(raw, q))
                QFAIL(qPrintable(QStringLiteral("%1, damaged: %2")
                                     .arg(c.name, QString::fromLatin1(raw.toPercentEncoding()))));
        }
    }
    QVERIFY(taken > 1000);
}

QTEST_GUILESS_MAIN(MimeParserTest)
#include "MimeParserTest.moc"
