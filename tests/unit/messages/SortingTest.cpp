#include "messages/Sorting.h"
#include "platform/Controls.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class SortingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void order_data();
    void order();
    void sameOrderAsTheLiteralWalk();

private:
    // Sorts account 1 of a started rig, its messages holding these values in
    // every field; their original positions, as sorted.
    static QList<int> sorted(TestRig& rig, const QStringList& values, const QString& column,
                             int descending);
};

QList<int> SortingTest::sorted(TestRig& rig, const QStringList& values, const QString& column,
                               int descending) {
    AppContext& ctx = *rig.ctx;
    const int count = int(values.size());
    ctx.messages.GrowMessageStore(count);
    ctx.accounts[1].AcntMsgCount = count;
    for (int i = 0; i < count; ++i) {
        MailMessage& m = ctx.messages.at(1, i + 1);
        m.From = m.Subject = m.Date = m.Size = values[i];
        m.MsgID = QString::number(i + 1);
    }
    ctx.list.SortDescending = descending;
    SortMessages(ctx, 1, column);
    QList<int> order;
    for (int i = 1; i <= count; ++i)
        order.append(ctx.messages.at(1, i).MsgID.toInt());
    return order;
}

void SortingTest::order_data() {
    QTest::addColumn<QString>("column");
    QTest::addColumn<int>("descending");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QList<int>>("order"); // original positions, as sorted
    QTest::addColumn<QString>("picture");
    auto row = [](const char* name, const char* column, int descending, const QStringList& values,
                  const QList<int>& order, const char* picture) {
        QTest::newRow(name) << column << descending << values << order << picture;
    };
    // The exchange walk swaps the two equal "B" subjects past each other.
    row("equal keys are not stable", "Subject", 0, {"B", "a", "b", "A"}, {2, 4, 3, 1}, "Ascending");
    row("case alone is equal", "Subject", 0, {"b", "B", "a"}, {3, 2, 1}, "Ascending");
    // Month name first, and the hours of a twelve-hour clock before AM/PM.
    row("dates sort as text", "Date", 0,
        {"Jan 05, 2026 09:00:00 AM", "Apr 01, 2027 09:00:00 AM", "Jan 05, 2026 01:00:00 PM"},
        {2, 3, 1}, "Ascending");
    row("sizes padded to six digits", "Size", 0, {"100", "9", "1000000", "10", "999999"},
        {2, 4, 1, 3, 5}, "Ascending");
    row("descending", "From", 1, {"a", "c", "b"}, {2, 3, 1}, "Descending");
    row("no column of that name", "4", 0, {"b", "a"}, {1, 2}, "");
}

void SortingTest::order() {
    QFETCH(QString, column);
    QFETCH(int, descending);
    QFETCH(QStringList, values);
    QFETCH(QList<int>, order);
    QFETCH(QString, picture);
    TestRig rig;
    rig.addAccount(1, "Home");
    QVERIFY(rig.start());
    QCOMPARE(sorted(rig, values, column, descending), order);
    for (const QString& header : ListColumns())
        QCOMPARE(rig.view.image("lvwEmail/" + header), header == column ? picture : "Blank");
}

// The sort keeps the literal walk's order exactly, equal keys included, on
// many random mailboxes, every other one with few distinct keys.
void SortingTest::sameOrderAsTheLiteralWalk() {
    QRandomGenerator random(11);
    for (int round = 0; round < 40; ++round) {
        const int count = 2 + int(random.bounded(60));
        QStringList subjects;
        for (int i = 0; i < count; ++i)
            subjects.append(QString::number(random.bounded(round % 2 ? 5 : 100000)) +
                            (random.bounded(2) ? "" : "x"));
        const int descending = int(random.bounded(2));
        // The walk as written: compare keys, exchange whole messages.
        QList<int> expected;
        QStringList keys;
        for (int i = 0; i < count; ++i) {
            expected.append(i + 1);
            keys.append(subjects[i].toUpper());
        }
        for (int i = 0; i < count - 1; ++i) {
            for (int j = i + 1; j < count; ++j) {
                const int c = keys[j].compare(keys[i]);
                if (descending ? c > 0 : c < 0) {
                    keys.swapItemsAt(i, j);
                    expected.swapItemsAt(i, j);
                }
            }
        }
        TestRig rig;
        rig.addAccount(1, "Home");
        QVERIFY(rig.start());
        QCOMPARE(sorted(rig, subjects, "Subject", descending), expected);
    }
}

QTEST_GUILESS_MAIN(SortingTest)
#include "SortingTest.moc"
