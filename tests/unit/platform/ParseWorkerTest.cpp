#include "platform/qt/ParseWorker.h"
#include "messages/RetrievedMessage.h"

#include <QtTest>

using namespace velmora;

class ParseWorkerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void resultsAsParsedHereInAnyOrder();
    void textIsLetGoOnceParsed();
    void bodiesLieInHugePageMemory();
};

namespace {

QByteArray Message(int n) {
    return "From: a" + QByteArray::number(n) + "@x\r\nSubject: =?UTF-8?Q?n=C2=B0_" +
           QByteArray::number(n) + "?=\r\n\r\n" + QByteArray(n * 997, 'b') + "\r\n";
}

const QDateTime kAt(QDate(2026, 11, 21), QTime(12, 0));

// The kernel's flags of the mapping that holds `p`, blank when none does.
QByteArray FlagsOfMapping(const void* p) {
    QFile smaps("/proc/self/smaps");
    if (!smaps.open(QIODevice::ReadOnly))
        return {};
    const auto at = quintptr(p);
    bool inside = false;
    for (const QByteArray& line : smaps.readAll().split('\n')) {
        const qsizetype dash = line.indexOf('-');
        const qsizetype blank = line.indexOf(' ');
        if (dash > 0 && blank > dash && !line.endsWith(" kB")) {
            bool ok1 = false, ok2 = false;
            const quintptr start = line.left(dash).toULongLong(&ok1, 16);
            const quintptr end = line.mid(dash + 1, blank - dash - 1).toULongLong(&ok2, 16);
            if (ok1 && ok2)
                inside = at >= start && at < end;
        } else if (inside && line.startsWith("VmFlags:")) {
            return line.mid(8) + ' ';
        }
    }
    return {};
}

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

// Messages fill tens of megabytes during a check: the memory the worker
// parses them into is asked to come in huge pages.
void ParseWorkerTest::bodiesLieInHugePageMemory() {
    if (!QFile::exists("/sys/kernel/mm/transparent_hugepage/enabled"))
        QSKIP("this kernel has no huge pages");
    ParseWorker worker;
    QList<QByteArray> texts;
    QList<std::function<ParsedMessage()>> pending;
    for (int n = 0; n < 50; ++n) {
        texts.append(Message(n));
        pending.append(worker.submit(texts.last(), kAt));
    }
    // Each text is let go once the worker has parsed it.
    QTRY_VERIFY(std::all_of(texts.begin(), texts.end(),
                            [](const QByteArray& text) { return text.isDetached(); }));
    for (const auto& parse : pending) {
        const ParsedMessage message = parse();
        const QByteArray flags = FlagsOfMapping(message.body.constData());
        QVERIFY2(flags.contains(" hg "), flags.constData());
    }
}

QTEST_GUILESS_MAIN(ParseWorkerTest)
#include "ParseWorkerTest.moc"
