#include "app/frmMainEvents.h"
#include "platform/Controls.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

// The tips of the message list: whole texts of cells that are cut off.
class ListTipsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void tipOnlyWhereTheTextIsCut_data();
    void tipOnlyWhereTheTextIsCut();
    void movingWithinOneCellChangesNothing();
    void optionOffKeepsTheLastTip();
    void restOfTheRowClearsTheTip_data();
    void restOfTheRowClearsTheTip();
    void rowClickStillCountsAsRowOne();
};

namespace {

constexpr int kChar = StateMessageList::CharWidth;
// Columns From, To, Subject of 200, 150 and 300 pixels: zones end at these.
constexpr int kToStart = 200;
constexpr int kSubjectStart = 350;
constexpr int kRestStart = 650;

struct Started {
    std::unique_ptr<TestRig> rig;
    std::unique_ptr<frmMainEvents> events;

    AppContext& ctx() { return *rig->ctx; }
    StateMessageList& list() { return rig->view.messageList; }
};

// One account showing the given messages, as the list fill leaves it.
Started Start(const QList<MailMessage>& messages) {
    Started s{std::make_unique<TestRig>(), nullptr};
    s.rig->settings.set("Settings\\FirstUse", "1");
    s.rig->addAccount(1, "Box1");
    s.rig->start();
    s.events = std::make_unique<frmMainEvents>(s.ctx());
    AppContext& ctx = s.ctx();
    ctx.messages.GrowMessageStore(int(messages.size()));
    for (int i = 1; i <= messages.size(); ++i)
        ctx.messages.at(1, i) = messages[i - 1];
    ctx.accounts[1].AcntMsgCount = int(messages.size());
    ctx.accounts.AcntCurrent = 1;
    for (int i = 0; i < messages.size(); ++i)
        s.list().addRow(ListRow{});
    s.list().setColumnWidth(1, 200);
    s.list().setColumnWidth(2, 150);
    s.list().setColumnWidth(3, 300);
    s.list().setColumnWidth(4, 120);
    return s;
}

MailMessage Message(const QString& from, const QString& to, const QString& subject) {
    MailMessage m;
    m.From = from;
    m.To = to;
    m.Subject = subject;
    return m;
}

} // namespace

void ListTipsTest::tipOnlyWhereTheTextIsCut_data() {
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("tip");
    // At 96 dpi the margins are 17.3 px (From, with the picture) and
    // 9.3 px (To, Subject): 18 and 10 whole pixels spare are enough.
    const QString from(20, 'f');
    QTest::newRow("From just fits") << 1 << from << 20 * kChar + 18 << "";
    QTest::newRow("From a pixel short") << 1 << from << 20 * kChar + 17 << from;
    const QString to = "a@x.org,b@x.org,c@x.org";
    QTest::newRow("To just fits") << 2 << to << int(to.size()) * kChar + 10 << "";
    QTest::newRow("To, three lines")
        << 2 << to << int(to.size()) * kChar + 9 << "a@x.org\r\nb@x.org\r\nc@x.org";
    QTest::newRow("Subject with commas") << 3 << "Hi, you, there" << 50 << "Hi\r\n you\r\n there";
    QTest::newRow("Subject kept as typed") << 3 << "<b>bold</b>" << 40 << "<b>bold</b>";
}

void ListTipsTest::tipOnlyWhereTheTextIsCut() {
    QFETCH(int, column);
    QFETCH(QString, text);
    QFETCH(int, width);
    QFETCH(QString, tip);
    QStringList fields = {"f", "t", "s"};
    fields[column - 1] = text;
    Started s =
        Start({Message("other", "other", "other"), Message(fields[0], fields[1], fields[2])});
    s.list().setColumnWidth(column, width);
    s.list().setTip("stale");
    // Just inside the column's right edge.
    int x = -1;
    for (int c = 1; c <= column; ++c)
        x += s.list().columnWidth(c);
    s.events->ListPointer(2, x);
    QCOMPARE(s.list().tip(), tip);
    QCOMPARE(s.ctx().list.HoverMessage, 2);
}

void ListTipsTest::movingWithinOneCellChangesNothing() {
    Started s = Start({Message(QString(40, 'f'), "t", "s"), Message(QString(40, 'g'), "t", "s")});
    s.events->ListPointer(1, 10);
    QCOMPARE(s.list().tip(), QString(40, 'f'));
    s.list().setTip("untouched");
    s.events->ListPointer(1, 150);
    QCOMPARE(s.list().tip(), QString("untouched"));
    // Another row in the same column is another cell.
    s.events->ListPointer(2, 150);
    QCOMPARE(s.list().tip(), QString(40, 'g'));
    // So is another column of the same row.
    s.events->ListPointer(2, kToStart);
    QCOMPARE(s.list().tip(), QString());
}

void ListTipsTest::optionOffKeepsTheLastTip() {
    const QString longTo = "a@x.org,b@x.org,c@x.org,d@x.org";
    Started s = Start({Message(QString(40, 'f'), longTo, QString(60, 's'))});
    s.ctx().options.ToToolTips = 0;
    s.events->ListPointer(1, 10);
    QCOMPARE(s.list().tip(), QString(40, 'f'));
    s.events->ListPointer(1, kToStart + 5);
    QCOMPARE(s.list().tip(), QString(40, 'f'));
    // The zone was kept even so: coming back to From sets its tip again.
    s.list().setTip("gone");
    s.events->ListPointer(1, kSubjectStart - 1);
    QCOMPARE(s.list().tip(), QString("gone"));
    s.events->ListPointer(1, 0);
    QCOMPARE(s.list().tip(), QString(40, 'f'));
    s.ctx().options.SubjectToolTips = 0;
    s.events->ListPointer(1, kSubjectStart);
    QCOMPARE(s.list().tip(), QString(40, 'f'));
}

void ListTipsTest::restOfTheRowClearsTheTip_data() {
    QTest::addColumn<int>("x");
    QTest::newRow("Date") << kRestStart;
    QTest::newRow("Size") << kRestStart + 130;
}

void ListTipsTest::restOfTheRowClearsTheTip() {
    QFETCH(int, x);
    Started s = Start({Message(QString(40, 'f'), "t", "s")});
    s.events->ListPointer(1, 10);
    QVERIFY(!s.list().tip().isEmpty());
    s.ctx().list.ItemUnderPointer = true;
    s.events->ListPointer(1, x);
    QCOMPARE(s.list().tip(), QString());
    QCOMPARE(s.ctx().list.HoverMessage, 0);
    QVERIFY(!s.ctx().list.ItemUnderPointer);
    // The stored cell was cleared: the From cell gets its tip back.
    s.events->ListPointer(1, 10);
    QCOMPARE(s.list().tip(), QString(40, 'f'));
}

void ListTipsTest::rowClickStillCountsAsRowOne() {
    Started s = Start({Message("f", "t", "s"), Message("f", "t", "s"), Message("f", "t", "s")});
    s.events->ListPointer(3, 10);
    QCOMPARE(s.ctx().list.HoverMessage, 3);
    s.list().setCurrentRow(3);
    s.events->ListRowClick(3);
    QCOMPARE(s.ctx().list.HoverMessage, 1);
    // Off the rows the last row stays.
    s.events->ListPointer(0, 10);
    QCOMPARE(s.ctx().list.HoverMessage, 1);
}

QTEST_GUILESS_MAIN(ListTipsTest)
#include "ListTipsTest.moc"
