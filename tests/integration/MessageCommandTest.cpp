#include "support/DovecotFixture.h"
#include "support/SandboxEnvironment.h"
#include "support/ScratchFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

#include <sys/stat.h>

using namespace velmora;

// velmora-cli message and the preview in a ui script, on a real server: what
// the user reads, saves, prints and answers.
class MessageCommandTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void rawShowsFieldsBodyAndHeader();
    void replyIsQuoted();
    void saveWritesThePrivateFile();
    void printsIntoAPdf();
    void missingMessageIsSaid();
    void scriptReadsPrintsRepliesAndDeletes();

private:
    struct Run {
        int code;
        QJsonObject shown;
        QByteArray out, err;
    };
    Run run(const QStringList& args, const QByteArray& input = {});

    std::unique_ptr<SandboxEnvironment> sandbox;
    DovecotFixture dovecot;
};

namespace {

QByteArray Mail(int n, const QByteArray& body) {
    return QString("From: Ann Lee <ann@example.com>\r\nTo: me@example.com\r\n"
                   "Subject: Plan %1\r\nDate: Thu, 05 Mar 2026 21:15:00 +0000\r\n"
                   "Message-ID: <%1@example.com>\r\nContent-Type: text/plain; charset=utf-8\r\n"
                   "Content-Transfer-Encoding: 8bit\r\n\r\n")
               .arg(n)
               .toUtf8() +
           body;
}

} // namespace

void MessageCommandTest::initTestCase() {
    sandbox = std::make_unique<SandboxEnvironment>();
    QByteArray longBody;
    for (int line = 1; line <= 300; ++line)
        longBody += "Line " + QByteArray::number(line) + " of a long message\r\n";
    QVERIFY2(dovecot.start(
                 {{"user", "secret", {Mail(1, "Grüße,\r\nsee you at 8\r\n"), Mail(2, longBody)}}}),
             qPrintable(dovecot.error()));
    sandbox->writeOneAccount(dovecot.plainPort(), "user");
}

MessageCommandTest::Run MessageCommandTest::run(const QStringList& args, const QByteArray& input) {
    QProcess p;
    p.start(qEnvironmentVariable("VELMORA_BIN_DIR") + "/velmora-cli", args);
    if (!input.isEmpty())
        p.write(input);
    p.closeWriteChannel();
    p.waitForFinished(60000);
    Run r{p.exitCode(), {}, p.readAllStandardOutput(), p.readAllStandardError()};
    r.shown = QJsonDocument::fromJson(r.out).object();
    return r;
}

void MessageCommandTest::rawShowsFieldsBodyAndHeader() {
    const Run r = run({"message", "1", "1", "--raw", "--json"});
    QCOMPARE(r.code, 0);
    QCOMPARE(r.shown["Subject"].toString(), QString("Plan 1"));
    QCOMPARE(r.shown["From"].toString(), QString("Ann Lee <ann@example.com>"));
    QCOMPARE(r.shown["caption"].toString(), QString("Velmora - Preview  "));
    const QString body = r.shown["body"].toString();
    QVERIFY2(body.startsWith("Grüße,\r\nsee you at 8"), qPrintable(body));
    const QString raw = r.shown["raw"].toString();
    QVERIFY(raw.contains("Message-ID: <1@example.com>"));
    QVERIFY(raw.endsWith("\r\n\r\n" + body));

    const Run text = run({"message", "1", "1", "--raw"});
    QCOMPARE(text.code, 0);
    QVERIFY(text.out.startsWith("From: Ann Lee <ann@example.com>\nTo: me@example.com\n"));
    QVERIFY(text.out.contains("== Raw Message =="));
}

void MessageCommandTest::replyIsQuoted() {
    const Run r = run({"message", "1", "1", "--reply", "--json"});
    QCOMPARE(r.code, 0);
    QCOMPARE(r.shown["recipient"].toString(), QString("Ann Lee <ann@example.com>"));
    QCOMPARE(r.shown["subject"].toString(), QString("Re: Plan 1"));
    const QString body = r.shown["body"].toString();
    QVERIFY(body.startsWith("\r\n-----Original Message-----\r\nFrom: Ann Lee"));
    QVERIFY(body.contains("\r\n>Grüße,\r\n>see you at 8"));
    QVERIFY(r.shown["mailto"].toString().startsWith("mailto:Ann%20Lee%20%3Cann@example.com%3E"));
}

void MessageCommandTest::saveWritesThePrivateFile() {
    ScratchFile file("Plan 1.eml");
    const Run r = run({"message", "1", "1", "--save", file.path(), "--json"});
    QCOMPARE(r.code, 0);
    QCOMPARE(r.shown["saved"].toString(), file.path());
    const QByteArray saved = file.read();
    QVERIFY(saved.startsWith("Return-Path") || saved.startsWith("From: "));
    QVERIFY(saved.contains("\r\n\r\nGrüße,\r\nsee you at 8"));
    QVERIFY(saved.endsWith("\r\n"));
    struct stat info {};
    QCOMPARE(::stat(QFile::encodeName(file.path()).constData(), &info), 0);
    QCOMPARE(info.st_mode & 0777, mode_t(0600));

    QCOMPARE(run({"message", "1", "1", "--save", "/nonexistent/x.eml"}).code, 1);
}

void MessageCommandTest::printsIntoAPdf() {
    ScratchFile file("plan.pdf");
    const Run r = run({"message", "1", "2", "--print-pdf", file.path(), "--tab", "2"});
    QCOMPARE(r.code, 0);
    QCOMPARE(r.out, "printed " + file.path().toUtf8() + "\n");
    QVERIFY(file.read().startsWith("%PDF-"));
}

void MessageCommandTest::missingMessageIsSaid() {
    const Run r = run({"message", "1", "9", "--raw"});
    QCOMPARE(r.code, 1);
    QVERIFY(r.err.contains("there is no message 9"));
    QCOMPARE(run({"message", "1", "1", "--raw", "--reply"}).code, 2);
    QCOMPARE(run({"message", "4", "1", "--raw"}).code, 2);
}

void MessageCommandTest::scriptReadsPrintsRepliesAndDeletes() {
    const Run r = run({"ui", "-"}, "click tbrEmail/EmailCheck\n"
                                   "click tbrPreview/Save\n"
                                   "dblclick lvwEmail 2\n"
                                   "tab TabStrip 2\n"
                                   "click tbrPreview/Print\n"
                                   "click tbrPreview/Reply\n"
                                   "answer Yes\n"
                                   "click tbrPreview/Delete\n");
    QCOMPARE(r.code, 0);
    const QJsonObject preview = r.shown["preview"].toObject();
    QCOMPARE(preview["Subject"].toString(), QString("Plan 2"));
    QCOMPARE(preview["tab"].toInt(), 2);
    QVERIFY(!preview["open"].toBool());
    QVERIFY(!preview["shown"].toBool());
    // Before the preview opened, its button could not be reached.
    QCOMPARE(r.shown["refused"].toArray().at(0).toObject()["why"].toString(),
             QString("frmPreview is not open"));
    const QString printed = r.shown["printed"].toArray().at(0).toString();
    QVERIFY(printed.startsWith("Velmora - Plan 2\nFrom:  Ann Lee"));
    QVERIFY(printed.contains("Message-ID: <2@example.com>"));
    QCOMPARE(r.shown["composed"].toArray().at(0).toObject()["subject"].toString(),
             QString("Re: Plan 2"));
    QCOMPARE(r.shown["boxes"].toArray().size(), 1);

    // The server no longer has it.
    const Run after = run({"message", "1", "2", "--raw"});
    QCOMPARE(after.code, 1);
}

QTEST_GUILESS_MAIN(MessageCommandTest)
#include "MessageCommandTest.moc"
