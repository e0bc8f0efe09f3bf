#include "platform/qt/ParseWorker.h"
#include "messages/RetrievedMessage.h"

#include <QtTest>

using namespace velmora;

class ParseWorkerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void resultsAsParsedHereInAnyOrder();
    void textIsLetGoOnceParsed();
};

namespace {

QByteArray Message(int n) {
    return "From: a" + QByteArray::number(n) + "@x\r\nSubject: =?UTF-8?Q?n=C2=B0_" +
           QByteArray::number(n) + "?=\r\n\r\n" + QByteArray(n * 997, 'b') + "\r\n";
}

const QDateTime kAt(QDate(2026, 11, 21), QTime(12, 0));

} // namespace

// Whether the worker got to a message first or the caller did, and in
// whatever order the results are asked for, each is its own message's.
void ParseWorkerTest::resultsAsParsedHereInAnyOrder() {
    for (const bool backwards : {false, true}) {
        ParseWorker worker;
        QList<std::function<ParsedMessage()>> pending;
        for (int n = 0; n < 200; ++n)
            pending.append(worker.submit(Message(n), kAt));
        for (int k = 0; k < 200; ++k) {
            const int n = backwards ? 199 - k : k;
            const ParsedMessage got = pending[n]();
            const ParsedMessage want = ParseMessage(Message(n), kAt);
            QCOMPARE(got.from, want.from);
            QCOMPARE(got.subject, want.subject);
            QCOMPARE(got.body, want.body);
        }
    }
}

// A retrieval holds every message until it is over; the text of each must
// not stay that long, only what was parsed from it.
void ParseWorkerTest::textIsLetGoOnceParsed() {
    ParseWorker worker;
    const QByteArray text = Message(300);
    RetrievedMessage item;
    item.setData(text, kAt);
    item.setParse(worker.submit(text, kAt));
    QTRY_VERIFY(text.isDetached());
    QCOMPARE(item.Size(), text.size());
    QCOMPARE(item.From(), QString("a300@x"));
}

QTEST_GUILESS_MAIN(ParseWorkerTest)
#include "ParseWorkerTest.moc"
