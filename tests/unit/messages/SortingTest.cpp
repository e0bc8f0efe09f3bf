#include "messages/Sorting.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class SortingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void order_data();
    void order();
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

QTEST_GUILESS_MAIN(SortingTest)
#include "SortingTest.moc"
