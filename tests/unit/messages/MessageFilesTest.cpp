#include "messages/MessageFiles.h"
#include "support/ScratchFile.h"

#include <QFileInfo>
#include <QUrl>
#include <QtTest>

#include <sys/stat.h>

using namespace velmora;

// Message files, proposed file names and the reply handed to the mail
// program.
class MessageFilesTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void subjectBecomesAFileName_data();
    void subjectBecomesAFileName();
    void fileHoldsRawTextAndBodyWhatever();
    void fileIsPrivateAndReplacedWhole();
    void replyQuotesEveryLine_data();
    void replyQuotesEveryLine();
    void sentLineReadsTheStoredDate_data();
    void sentLineReadsTheStoredDate();
    void longReplyIsCutWithANote();
    void mailtoAddressCarriesUtf8AndCrLf();
};

namespace {

MailMessage Message(const QString& body) {
    MailMessage m;
    m.From = "Ann Lee <ann@example.com>";
    m.To = "me@example.com";
    m.Subject = "Lunch";
    m.Date = "Mar 05, 2026 09:15:00 PM";
    m.Raw = "From: Ann Lee <ann@example.com>\r\nSubject: Lunch";
    m.Body = body;
    return m;
}

} // namespace

void MessageFilesTest::subjectBecomesAFileName_data() {
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("plain") << "Minutes of May"
                           << "Minutes of May";
    QTest::newRow("reply with path") << "[Re]: a/b?"
                                     << "Re ab";
    QTest::newRow("every character") << "/?<>\\:*|\"[],;"
                                     << "";
    QTest::newRow("blanks and dots stay") << "v1.2 - final.eml"
                                          << "v1.2 - final.eml";
    QTest::newRow("not ASCII") << "Grüße; Ärger*"
                               << "Grüße Ärger";
}

void MessageFilesTest::subjectBecomesAFileName() {
    QFETCH(QString, subject);
    QFETCH(QString, name);
    QCOMPARE(CleanFileName(subject), name);
}

void MessageFilesTest::fileHoldsRawTextAndBodyWhatever() {
    const MailMessage m = Message("Hi\r\nsee you");
    QCOMPARE(RawMessageText(m),
             QString("From: Ann Lee <ann@example.com>\r\nSubject: Lunch\r\n\r\nHi\r\nsee you"));
    // The type of file chosen changes nothing in it.
    for (const char* name : {"a.eml", "a.msg", "a.txt"}) {
        ScratchFile file(name);
        QVERIFY(WriteMessageFile(file.path(), m));
        QCOMPARE(QString::fromUtf8(file.read()), RawMessageText(m) + "\r\n");
    }
}

void MessageFilesTest::fileIsPrivateAndReplacedWhole() {
    ScratchFile file("temporary.eml");
    QVERIFY(file.write(QByteArray(5000, 'x')));
    QFile::setPermissions(file.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                           QFileDevice::ReadOther);
    const MailMessage m = Message("é");
    QVERIFY(WriteMessageFile(file.path(), m));
    QCOMPARE(file.read(), (RawMessageText(m) + "\r\n").toUtf8());
    struct stat info {};
    QCOMPARE(::stat(QFile::encodeName(file.path()).constData(), &info), 0);
    QCOMPARE(info.st_mode & 0777, mode_t(0600));

    // Into a folder that is not there: nothing, and no throw.
    QVERIFY(!WriteMessageFile(file.folder() + "/missing/x.eml", m));
    QVERIFY(!WriteMessageFile(QString(), m));
}

void MessageFilesTest::replyQuotesEveryLine_data() {
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("replySubject");
    QTest::addColumn<QString>("quoted");
    QTest::newRow("plain") << "Lunch"
                           << "Hi\r\nsee you"
                           << "Re: Lunch"
                           << "\r\n>Hi\r\n>see you";
    QTest::newRow("already a reply") << "Re: Lunch"
                                     << "ok"
                                     << "Re: Re: Lunch"
                                     << "\r\n>ok";
    QTest::newRow("quoted before") << "Lunch"
                                   << "> earlier\r\nnow"
                                   << "Re: Lunch"
                                   << "\r\n>> earlier\r\n>now";
    QTest::newRow("empty body") << ""
                                << ""
                                << "Re: "
                                << "\r\n>";
}

void MessageFilesTest::replyQuotesEveryLine() {
    QFETCH(QString, subject);
    QFETCH(QString, body);
    QFETCH(QString, replySubject);
    QFETCH(QString, quoted);
    MailMessage m = Message(body);
    m.Subject = subject;
    const ReplyText r = BuildReply(m, QLocale::c());
    QCOMPARE(r.recipient, m.From);
    QCOMPARE(r.subject, replySubject);
    QCOMPARE(r.body, "\r\n-----Original Message-----\r\nFrom: Ann Lee <ann@example.com>\r\n"
                     "To: me@example.com\r\nSent: Thursday, March 5, 2026 at 9:15 PM\r\n"
                     "Subject: " +
                         subject + "\r\n\r\n" + quoted);
}

void MessageFilesTest::sentLineReadsTheStoredDate_data() {
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("sent");
    QTest::newRow("afternoon") << "Mar 05, 2026 09:15:00 PM"
                               << "Thursday, March 5, 2026 at 9:15 PM";
    QTest::newRow("morning") << "Nov 21, 2026 12:05:00 AM"
                             << "Saturday, November 21, 2026 at 12:05 AM";
    QTest::newRow("unreadable") << "sometime last week"
                                << "sometime last week";
    QTest::newRow("empty") << ""
                           << "";
}

void MessageFilesTest::sentLineReadsTheStoredDate() {
    QFETCH(QString, stored);
    QFETCH(QString, sent);
    QCOMPARE(SentDate(stored, QLocale::c()), sent);
}

void MessageFilesTest::longReplyIsCutWithANote() {
    const QString shortBody = "short";
    QCOMPARE(FitForHandOver("a@b", "Re: x", shortBody, 1000), shortBody);

    // Characters that take nine bytes encoded, and one outside the basic
    // plane that must not be split.
    QString body;
    for (int i = 0; i < 4000; ++i)
        body += i % 7 == 0 ? QString::fromUtf8("\xF0\x9F\x98\x80") : QString("é");
    const QString cut = FitForHandOver("a@b", "Re: x", body, 10000);
    QVERIFY(cut.size() < body.size());
    QVERIFY(MailtoAddress("a@b", "Re: x", cut).size() <= 10000);
    QVERIFY(cut.endsWith("in one piece.]"));
    const QString kept = cut.left(cut.indexOf("\r\n\r\n[The rest"));
    QVERIFY(body.startsWith(kept));
    QVERIFY(!kept.isEmpty() && !kept.back().isHighSurrogate());
    // Not cut more than it must: one more character would not fit.
    QVERIFY(
        MailtoAddress("a@b", "Re: x", body.left(kept.size() + 2) + cut.mid(kept.size())).size() >
        10000 - 20);
}

void MessageFilesTest::mailtoAddressCarriesUtf8AndCrLf() {
    const QString address =
        MailtoAddress("Ann <ann@example.com>", "Re: Grüße & more", "line one\nline two\r\nthree");
    QVERIFY(address.startsWith("mailto:Ann%20%3Cann@example.com%3E?subject="));
    const QUrl url(address);
    QVERIFY(url.isValid());
    QCOMPARE(QUrl::fromPercentEncoding(address.section("subject=", 1).section('&', 0, 0).toUtf8()),
             QString("Re: Grüße & more"));
    QCOMPARE(QUrl::fromPercentEncoding(address.section("&body=", 1).toUtf8()),
             QString("line one\r\nline two\r\nthree"));
}

QTEST_GUILESS_MAIN(MessageFilesTest)
#include "MessageFilesTest.moc"
