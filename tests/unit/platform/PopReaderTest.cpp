#include "platform/qt/PopReader.h"

#include <QtTest>

using namespace velmora;

class PopReaderTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void status_data();
    void status();
    void linesAcrossChunks();
    void block_data();
    void block();
};

void PopReaderTest::status_data() {
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QByteArray>("text");
    auto row = [](const char* name, const char* line, bool valid, bool ok, const char* text) {
        QTest::newRow(name) << QByteArray(line) << valid << ok << QByteArray(text);
    };
    row("ok with text", "+OK 2 320", true, true, "2 320");
    row("bare ok", "+OK", true, true, "");
    row("small letters", "+ok fine", true, true, "fine");
    row("err", "-ERR [AUTH] no", true, false, "[AUTH] no");
    row("glued word", "+OKAY", false, false, "");
    row("no sign", "OK ready", false, false, "");
    row("empty", "", false, false, "");
    row("http", "HTTP/1.1 400 Bad Request", false, false, "");
}

void PopReaderTest::status() {
    QFETCH(QByteArray, line);
    QFETCH(bool, valid);
    QFETCH(bool, ok);
    QFETCH(QByteArray, text);
    const PopReader::Status s = PopReader::parseStatus(line);
    QCOMPARE(s.valid, valid);
    QCOMPARE(s.ok, ok);
    QCOMPARE(s.text, text);
}

void PopReaderTest::linesAcrossChunks() {
    PopReader r;
    QByteArray line;
    r.append("+OK hel");
    QCOMPARE(r.takeLine(line), PopReader::NeedMore);
    r.append("lo\r");
    QCOMPARE(r.takeLine(line), PopReader::NeedMore);
    r.append("\n-ERR bare lf\n+OK");
    QCOMPARE(r.takeLine(line), PopReader::Done);
    QCOMPARE(line, QByteArray("+OK hello"));
    QCOMPARE(r.takeLine(line), PopReader::Done);
    QCOMPARE(line, QByteArray("-ERR bare lf"));
    QCOMPARE(r.takeLine(line), PopReader::NeedMore);
    QCOMPARE(r.buffered(), 3);
    // A runaway line is refused, not buffered without end.
    r.append(QByteArray(PopReader::MaxStatusLine, 'x'));
    QCOMPARE(r.takeLine(line), PopReader::TooLong);
}

void PopReaderTest::block_data() {
    QTest::addColumn<QList<QByteArray>>("chunks");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("after");
    auto row = [](const char* name, const QList<QByteArray>& chunks, const QByteArray& content,
                  const char* after = "") {
        QTest::newRow(name) << chunks << content << QByteArray(after);
    };
    row("empty block", {".\r\n+OK"}, "", "+OK");
    row("stuffed dots", {"a\r\n..b\r\n...\r\n.\r\n"}, "a\r\n.b\r\n..\r\n");
    row("terminator split", {"x\r\n.", "\r", "\n"}, "x\r\n");
    row("line split", {"hel", "lo\r\n.\r\n"}, "hello\r\n");
    row("bare line feeds become CR LF", {"a\nb\n.\n"}, "a\r\nb\r\n");
    row("a dot inside a line is content", {"x.\r\n. \r\n.\r\n"}, "x.\r\n \r\n");
    row("long line", {QByteArray(300000, 'z') + "\r\n.\r\n"}, QByteArray(300000, 'z') + "\r\n");
}

void PopReaderTest::block() {
    QFETCH(QList<QByteArray>, chunks);
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, after);
    PopReader r;
    QByteArray out;
    qint64 consumed = 0;
    qint64 fed = 0;
    PopReader::Result result = PopReader::NeedMore;
    for (const QByteArray& chunk : chunks) {
        QCOMPARE(result, PopReader::NeedMore);
        r.append(chunk);
        fed += chunk.size();
        result = r.takeBlock(out, consumed);
    }
    QCOMPARE(result, PopReader::Done);
    QCOMPARE(out, content);
    QCOMPARE(consumed + r.buffered(), fed);
    QCOMPARE(r.buffered(), after.size());
}

QTEST_GUILESS_MAIN(PopReaderTest)
#include "PopReaderTest.moc"
