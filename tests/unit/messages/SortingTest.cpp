#include "messages/Sorting.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class SortingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void order_data();
    void order();
    void sameOrderAsTheLiteralWalk();
};

void SortingTest::order_data() {
    QTest::addColumn<QString>("column");
    QTest::addColumn<int>("descending");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QList<int>>("order"); // original positions, as sorted
    QTest::addColumn<QString>("picture");
    // The exchange walk swaps the two equal "B" subjects past each other.
    QTest::newRow("equal keys are not stable") << "Subject" << 0 << QStringList{"B", "a", "b", "A"}
                                               << QList<int>{2, 4, 3, 1} << "Ascending";
    QTest::newRow("case alone is equal")
        << "Subject" << 0 << QStringList{"b", "B", "a"} << QList<int>{3, 2, 1} << "Ascending";
    // Month name first, and the hours of a twelve-hour clock before AM/PM.
    QTest::newRow("dates sort as text")
        << "Date" << 0
        << QStringList{"Jan 05, 2026 09:00:00 AM", "Apr 01, 2027 09:00:00 AM",
                       "Jan 05, 2026 01:00:00 PM"}
        << QList<int>{2, 3, 1} << "Ascending";
    QTest::newRow("sizes padded to six digits")
        << "Size" << 0 << QStringList{"100", "9", "1000000", "10", "999999"}
        << QList<int>{2, 4, 1, 3, 5} << "Ascending";
    QTest::newRow("descending") << "From" << 1 << QStringList{"a", "c", "b"} << QList<int>{2, 3, 1}
                                << "Descending";
    QTest::newRow("no column of that name")
        << "4" << 0 << QStringList{"b", "a"} << QList<int>{1, 2} << "";
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
    AppContext& ctx = *rig.ctx;
    ctx.messages.GrowMessageStore(int(values.size()));
    ctx.accounts[1].AcntMsgCount = int(values.size());
    for (int i = 0; i < values.size(); ++i) {
        MailMessage& m = ctx.messages.at(1, i + 1);
        m.From = m.Subject = m.Date = m.Size = values[i];
        m.MsgID = QString::number(i + 1);
    }
    ctx.SortDescending = descending;
    SortMessages(ctx, 1, column);
    QList<int> sorted;
    for (int i = 1; i <= values.size(); ++i)
        sorted.append(ctx.messages.at(1, i).MsgID.toInt());
    QCOMPARE(sorted, order);
    QCOMPARE(rig.view.control("lvwEmail/" + column).image, picture);
    QCOMPARE(rig.view.control("lvwEmail/To").image, QString("Blank"));
}

// The sort keeps the literal walk's order exactly, equal keys included, on
// many random mailboxes with few distinct keys.
void SortingTest::sameOrderAsTheLiteralWalk() {
    QRandomGenerator random(11);
    for (int round = 0; round < 40; ++round) {
        const int count = 2 + int(random.bounded(60));
        QStringList subjects;
        for (int i = 0; i < count; ++i)
            subjects.append(QString(QChar('a' + int(random.bounded(5)))) +
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
        rig.ctx->messages.GrowMessageStore(count);
        rig.ctx->accounts[1].AcntMsgCount = count;
        for (int i = 0; i < count; ++i) {
            rig.ctx->messages.at(1, i + 1).Subject = subjects[i];
            rig.ctx->messages.at(1, i + 1).MsgID = QString::number(i + 1);
        }
        rig.ctx->SortDescending = descending;
        SortMessages(*rig.ctx, 1, "Subject");
        QList<int> sorted;
        for (int i = 1; i <= count; ++i)
            sorted.append(rig.ctx->messages.at(1, i).MsgID.toInt());
        QCOMPARE(sorted, expected);
    }
}

QTEST_GUILESS_MAIN(SortingTest)
#include "SortingTest.moc"
