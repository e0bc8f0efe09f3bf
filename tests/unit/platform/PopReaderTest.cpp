#include "platform/qt/PopReader.h"

#include <QtTest>

using namespace velmora;

class PopReaderTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void status_data();
    void status();
    void linesAcrossChunks();
    void runawayLineIsTooLong();
    void block_data();
    void block();
};

void PopReaderTest::status_data() {
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("ok with text") << QByteArray("+OK 2 320") << true << true << QByteArray("2 320");
    QTest::newRow("bare ok") << QByteArray("+OK") << true << true << QByteArray();
    QTest::newRow("small letters") << QByteArray("+ok fine") << true << true << QByteArray("fine");
    QTest::newRow("err") << QByteArray("-ERR [AUTH] no") << true << false
                         << QByteArray("[AUTH] no");
    QTest::newRow("glued word") << QByteArray("+OKAY") << false << false << QByteArray();
    QTest::newRow("no sign") << QByteArray("OK ready") << false << false << QByteArray();
    QTest::newRow("empty") << QByteArray() << false << false << QByteArray();
    QTest::newRow("http") << QByteArray("HTTP/1.1 400 Bad Request") << false << false
                          << QByteArray();
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
}

void PopReaderTest::runawayLineIsTooLong() {
    PopReader r;
    QByteArray line;
    r.append(QByteArray(PopReader::MaxStatusLine + 1, 'x'));
    QCOMPARE(r.takeLine(line), PopReader::TooLong);
}

void PopReaderTest::block_data() {
    QTest::addColumn<QList<QByteArray>>("chunks");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("empty block") << QList<QByteArray>{".\r\n+OK"} << QByteArray()
                                 << QByteArray("+OK");
    QTest::newRow("stuffed dots") << QList<QByteArray>{"a\r\n..b\r\n...\r\n.\r\n"}
                                  << QByteArray("a\r\n.b\r\n..\r\n") << QByteArray();
    QTest::newRow("terminator split")
        << QList<QByteArray>{"x\r\n.", "\r", "\n"} << QByteArray("x\r\n") << QByteArray();
    QTest::newRow("line split") << QList<QByteArray>{"hel", "lo\r\n.\r\n"}
                                << QByteArray("hello\r\n") << QByteArray();
    QTest::newRow("bare line feeds become CR LF")
        << QList<QByteArray>{"a\nb\n.\n"} << QByteArray("a\r\nb\r\n") << QByteArray();
    QTest::newRow("a dot inside a line is content")
        << QList<QByteArray>{"x.\r\n. \r\n.\r\n"} << QByteArray("x.\r\n \r\n") << QByteArray();
    QTest::newRow("long line") << QList<QByteArray>{QByteArray(300000, 'z') + "\r\n.\r\n"}
                               << QByteArray(300000, 'z') + "\r\n"
                               << QByteArray();
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
