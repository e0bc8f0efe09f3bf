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
    void numbers_data();
    void numbers();
    void numberedLines_data();
    void numberedLines();
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
    const QByteArray a(100000, 'a');
    const QByteArray b(100000, 'b');
    row("long stuffed line in pieces, its CR LF split", {".." + a, b + "\r", "\n.\r\n"},
        "." + a + b + "\r\n");
    row("long line with a dot after its first piece", {a, ".\r\n.\r\n"}, a + ".\r\n");
    row("long line ending in a bare line feed", {a, b + "\n.\n"}, a + b + "\r\n");
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
        // However long a line, the reader holds no more than a piece of it.
        QVERIFY(r.buffered() <= PopReader::LongLine);
    }
    QCOMPARE(result, PopReader::Done);
    QCOMPARE(out, content);
    QCOMPARE(consumed + r.buffered(), fed);
    QCOMPARE(r.buffered(), after.size());
}

// Counts and sizes are the server's word: past 64 bits they stay at the
// largest value rather than wrap, and a sign is no number.
void PopReaderTest::numbers_data() {
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<qint64>("value"); // -1: no number
    const qint64 most = std::numeric_limits<qint64>::max();
    auto row = [](const char* word, qint64 value) {
        QTest::newRow(word) << QByteArray(word) << value;
    };
    row("0", 0);
    row("1000000000000", 1000000000000);
    row("9223372036854775807", most);
    row("9223372036854775808", most);
    row("99999999999999999999999", most);
    row("-300", -1);
    row("+5", -1);
    row("12k", -1);
    row("", -1);
}

void PopReaderTest::numbers() {
    QFETCH(QByteArray, word);
    QFETCH(qint64, value);
    QCOMPARE(PopReader::parseNumber(word).value_or(-1), value);
}

void PopReaderTest::numberedLines_data() {
    using Lines = QList<PopReader::NumberedLine>;
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<bool>("readable");
    QTest::addColumn<Lines>("lines");
    QTest::newRow("listing") << QByteArray("1 300\r\n\r\n2  400 more\r\n") << true
                             << Lines{{1, "300"}, {2, "400 more"}};
    QTest::newRow("empty") << QByteArray() << true << Lines{};
    QTest::newRow("no number") << QByteArray("1 300\r\nx 2\r\n") << false << Lines{};
    QTest::newRow("number alone") << QByteArray("7\r\n") << false << Lines{};
    QTest::newRow("negative number") << QByteArray("-1 300\r\n") << false << Lines{};
}

void PopReaderTest::numberedLines() {
    QFETCH(QByteArray, block);
    QFETCH(bool, readable);
    QFETCH(QList<PopReader::NumberedLine>, lines);
    const auto parsed = PopReader::parseNumberedLines(block);
    QCOMPARE(parsed.has_value(), readable);
    if (parsed)
        QCOMPARE(*parsed, lines);
}

QTEST_GUILESS_MAIN(PopReaderTest)
#include "PopReaderTest.moc"
