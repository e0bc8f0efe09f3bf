#include "app/frmMainEvents.h"
#include "checking/CheckCycle.h"
#include "messages/MessageList.h"
#include "messages/Sorting.h"
#include "platform/Controls.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

// The Email page at work: what the list shows, what a click allows, the
// order a header click gives, and what Delete and Spam take off a server.
class EmailListTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void rowPictureFollowsTheFlags_data();
    void rowPictureFollowsTheFlags();
    void tabPictureFollowsTheCheck_data();
    void tabPictureFollowsTheCheck();
    void clicksDecideTheSelectionActions();
    void rightClickPopsTheMenuEvenOffTheRows();
    void focusIsParkedOffTheListAndTabs_data();
    void focusIsParkedOffTheListAndTabs();
    void headerClicksSortAndReverse();
    void headerClicksDoNothingWithoutSorting();
    void columnWidthsGoBackToTheStartUpDefaults();
    void accountChosenElsewhereIsShownOnTheEmailPage();
    void deleteTakesTheSelectedRows_data();
    void deleteTakesTheSelectedRows();
    void spamWalkGoesOverEveryAccount();
};

namespace {

const QStringList kSelectionActions = {
    "tbrEmail/EmailPreview", "tbrEmail/EmailDelete", "tbrEmail/EmailReply", "tbrEmail/EmailOpen",
    ctl::mnuEmailPreview,    ctl::mnuEmailDelete,    ctl::mnuEmailReply,    ctl::mnuEmailOpen};

struct Started {
    std::unique_ptr<TestRig> rig;
    std::unique_ptr<frmMainEvents> events;

    AppContext& ctx() { return *rig->ctx; }
    StateView& view() { return rig->view; }
    // The actions bound to a selection that are enabled, as a count.
    int enabledActions() {
        int n = 0;
        for (const QString& name : kSelectionActions)
            n += view().isEnabled(name) ? 1 : 0;
        return n;
    }
    // Selects rows as the user's press does, then reports the click.
    void clickRow(int row) {
        for (int r = 1; r <= view().messageList.rowCount(); ++r)
            view().messageList.setRowSelected(r, r == row);
        view().messageList.setCurrentRow(row);
        events->ListRowClick(row);
    }
    QStringList column(int column) {
        QStringList texts;
        for (const ListRow& r : view().messageList.rows)
            texts.append(r.cells.value(column - 1));
        return texts;
    }
};

// Accounts Box1..BoxN on the fake server, each with the given mail.
Started Start(const QList<QStringList>& mail, const std::function<void(TestRig&)>& before = {}) {
    Started s{std::make_unique<TestRig>(), nullptr};
    s.rig->settings.set("Settings\\FirstUse", "1");
    for (int n = 1; n <= mail.size(); ++n) {
        s.rig->addAccount(n, "Box" + QString::number(n));
        s.rig->mailbox("Box" + QString::number(n)).mail = mail[n - 1];
    }
    if (before)
        before(*s.rig);
    s.rig->start();
    s.events = std::make_unique<frmMainEvents>(s.ctx());
    return s;
}

MailMessage Message(const QString& from, const QString& subject, const QString& date,
                    const QString& size) {
    MailMessage m;
    m.From = from;
    m.To = "me";
    m.Subject = subject;
    m.Date = date;
    m.Size = size;
    return m;
}

} // namespace

void EmailListTest::rowPictureFollowsTheFlags_data() {
    QTest::addColumn<QString>("flags"); // D S A N, as letters present
    QTest::addColumn<QString>("picture");
    QTest::addColumn<bool>("spamOffered");
    QTest::addColumn<QList<int>>("counters"); // attach, delete+attach, new+attach
    auto row = [](const char* name, const char* flags, const char* picture, bool spamOffered,
                  const QList<int>& counters) {
        QTest::newRow(name) << QString(flags) << QString(picture) << spamOffered << counters;
    };
    row("delete, attached", "DA", "DeleteAttach", false, {0, 1, 0});
    row("delete over spam", "DSN", "Delete", false, {0, 0, 0});
    row("spam, new", "SAN", "SpamNew", true, {0, 0, 0});
    row("spam", "SA", "Spam", true, {0, 0, 0});
    row("attached, new", "AN", "AttachNew", false, {0, 0, 1});
    row("attached", "A", "Attach", false, {1, 0, 0});
    row("new", "N", "New", false, {0, 0, 0});
    row("plain", "", "Normal", false, {0, 0, 0});
}

void EmailListTest::rowPictureFollowsTheFlags() {
    QFETCH(QString, flags);
    QFETCH(QString, picture);
    QFETCH(bool, spamOffered);
    QFETCH(QList<int>, counters);
    Started s = Start({{}});
    AppContext& ctx = s.ctx();
    ctx.messages.GrowMessageStore(1);
    ctx.accounts[1].AcntMsgCount = 1;
    MailMessage& m = ctx.messages.at(1, 1);
    m = Message("a@b", "Hello", "Nov 20, 2026 09:30:00 AM", "12");
    m.Delete = flags.contains('D');
    m.Spam = flags.contains('S');
    m.Attach = flags.contains('A');
    m.New = flags.contains('N');
    ShowAccountMessages(ctx, 1);
    const ListRow row = s.view().messageList.row(1);
    QCOMPARE(row.picture, picture);
    QCOMPARE(row.bold, m.New);
    QCOMPARE(row.cells, QStringList({"a@b", "me", "Hello", "Nov 20, 2026 09:30:00 AM", "12 KB"}));
    QCOMPARE(s.view().isEnabled("tbrEmail/EmailSpam"), spamOffered);
    QCOMPARE((QList<int>{ctx.list.ListAttachCount, ctx.list.ListDeleteAttachCount,
                         ctx.list.ListNewAttachCount}),
             counters);
    QCOMPARE(s.view().emailTabs.caption(1), QString("Box1  (1)"));
    QCOMPARE(ctx.list.SelectedMessage, 1);
    QVERIFY(!s.view().messageList.isRowSelected(1));
    QCOMPARE(s.enabledActions(), 0);
}

void EmailListTest::tabPictureFollowsTheCheck_data() {
    QTest::addColumn<bool>("checked");
    QTest::addColumn<bool>("connected");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QString>("picture");
    QTest::addColumn<QString>("caption");
    auto row = [](const char* name, bool checked, bool connected, int count, bool enabled,
                  const char* picture, const char* caption) {
        QTest::newRow(name) << checked << connected << count << enabled << QString(picture)
                            << QString(caption);
    };
    row("never checked", false, false, 0, true, "MailNo", "Box1");
    row("mail", true, true, 2, true, "MailYes", "Box1  (2)");
    row("failed", true, false, 0, true, "MailError", "Box1");
    row("disabled with mail", true, true, 3, false, "MailYesDisabled", "Box1  (3)");
    row("disabled, failed", true, false, 0, false, "MailErrorDisabled", "Box1");
}

void EmailListTest::tabPictureFollowsTheCheck() {
    QFETCH(bool, checked);
    QFETCH(bool, connected);
    QFETCH(int, count);
    QFETCH(bool, enabled);
    QFETCH(QString, picture);
    QFETCH(QString, caption);
    Started s = Start({{}});
    Account& a = s.ctx().accounts[1];
    a.AcntChecked = checked;
    a.AcntConnected = connected;
    s.ctx().messages.GrowMessageStore(count);
    a.AcntMsgCount = count;
    a.AcntEnabled = enabled ? 1 : 0;
    ShowAccountMessages(s.ctx(), 1);
    QCOMPARE(s.view().emailTabs.image(1), picture);
    QCOMPARE(s.view().acntTabs.image(1), picture);
    QCOMPARE(s.view().emailTabs.caption(1), caption);
    QCOMPARE(s.view().messageList.rowCount(), count);
}

void EmailListTest::clicksDecideTheSelectionActions() {
    Started s = Start({{"u1", "u2", "u3"}});
    // The tabs stand from the start, before any check.
    QCOMPARE(s.view().emailTabs.count(), 1);
    QCOMPARE(s.view().emailTabs.caption(1), QString("Box1"));
    CheckAllAccounts(s.ctx());
    QCOMPARE(s.view().messageList.rowCount(), 3);
    QCOMPARE(s.enabledActions(), 0);

    s.clickRow(3);
    QCOMPARE(s.ctx().list.SelectedMessage, 3);
    QCOMPARE(s.enabledActions(), 8);

    // A click on the tab already showing changes nothing.
    s.events->TabClick(ctl::TabStripEmail);
    QCOMPARE(s.enabledActions(), 8);

    // The empty area below the rows: the row goes, so do the actions.
    s.events->ListRowClick(0);
    QVERIFY(!s.view().messageList.isRowSelected(3));
    QCOMPARE(s.enabledActions(), 0);

    // Double click opens only what Preview may open.
    s.clickRow(2);
    s.events->ListDoubleClick(2);
    QVERIFY(s.rig->boxes.boxes.isEmpty());

    // A new fill takes the selection away again.
    CheckAllAccounts(s.ctx());
    QCOMPARE(s.enabledActions(), 0);
    QCOMPARE(s.ctx().list.SelectedMessage, 1);
}

void EmailListTest::rightClickPopsTheMenuEvenOffTheRows() {
    Started s = Start({{"u1", "u2"}});
    CheckAllAccounts(s.ctx());
    s.view().messageList.setRowSelected(2, true);
    s.view().messageList.setCurrentRow(2);
    s.events->ListContextMenu(2);
    QCOMPARE(s.view().poppedUpMenus, QStringList{ctl::mnuEmailPopMenu});
    QCOMPARE(s.ctx().list.SelectedMessage, 2);
    QVERIFY(s.view().isEnabled(ctl::mnuEmailDelete));

    s.events->ListContextMenu(0);
    QCOMPARE(s.view().poppedUpMenus.size(), 2);
    QCOMPARE(s.enabledActions(), 0);
    // Before any check the menu still pops up, its entries greyed.
    Started fresh = Start({{}});
    fresh.events->ListContextMenu(0);
    QCOMPARE(fresh.view().poppedUpMenus, QStringList{ctl::mnuEmailPopMenu});
    for (const QString& entry : EmailMenuEntries())
        QVERIFY(!fresh.view().isEnabled(entry));
}

void EmailListTest::focusIsParkedOffTheListAndTabs_data() {
    QTest::addColumn<QString>("control");
    QTest::addColumn<int>("hover");
    QTest::addColumn<bool>("previewOpen");
    QTest::addColumn<bool>("parked");
    QTest::newRow("list, pointer off the rows") << QString(ctl::lvwEmail) << 0 << false << true;
    QTest::newRow("list, pointer on a row") << QString(ctl::lvwEmail) << 2 << false << false;
    QTest::newRow("tabs") << QString(ctl::TabStripEmail) << 0 << false << true;
    QTest::newRow("tabs under the preview") << QString(ctl::TabStripAcnts) << 0 << true << false;
}

void EmailListTest::focusIsParkedOffTheListAndTabs() {
    QFETCH(QString, control);
    QFETCH(int, hover);
    QFETCH(bool, previewOpen);
    QFETCH(bool, parked);
    Started s = Start({{"a", "b", "c"}});
    s.ctx().list.HoverMessage = hover;
    s.ctx().shell.PreviewOpen = previewOpen;
    s.view().setFocus(control);
    s.events->FocusArrived(control);
    QCOMPARE(s.view().focus, parked ? QString(ctl::cmdTakeFocus) : control);
}

void EmailListTest::headerClicksSortAndReverse() {
    Started s = Start({{}}, [](TestRig& r) {
        r.settings.set("Settings\\Options\\MessageSort", "1");
        r.settings.set("Settings\\Options\\SortColumn", "5");
        r.settings.set("Settings\\Options\\SortOrder", "0");
    });
    AppContext& ctx = s.ctx();
    const QStringList subjects = {"b", "C", "a"};
    const QStringList dates = {"Apr 02, 2027 10:00:00 AM", "Jan 05, 2026 10:00:00 AM",
                               "Jan 09, 2026 10:00:00 AM"};
    ctx.messages.GrowMessageStore(3);
    ctx.accounts[1].AcntMsgCount = 3;
    for (int i = 1; i <= 3; ++i)
        ctx.messages.at(1, i) = Message("f", subjects[i - 1], dates[i - 1], "1");
    ShowAccountMessages(ctx, 1);

    struct Step {
        const char* column;
        QStringList subjects;
        const char* picture;
    };
    const QList<Step> steps = {
        // A new column keeps the order in force; the same column turns it.
        {"Subject", {"a", "b", "C"}, "Ascending"},
        {"Subject", {"C", "b", "a"}, "Descending"},
        // Dates sort as text: April of a later year before January.
        {"Date", {"a", "C", "b"}, "Descending"},
        {"Date", {"b", "C", "a"}, "Ascending"},
    };
    for (const Step& step : steps) {
        s.events->ListHeaderClick(int(ListColumns().indexOf(step.column)) + 1);
        QCOMPARE(s.column(3), step.subjects);
        for (const QString& column : ListColumns())
            QCOMPARE(s.view().image("lvwEmail/" + column),
                     QString(column == step.column ? step.picture : "Blank"));
    }
    QCOMPARE(ctx.options.SortColumnLastUsed, QString("Date"));
}

void EmailListTest::headerClicksDoNothingWithoutSorting() {
    Started s = Start({{"u2", "u1"}},
                      [](TestRig& r) { r.settings.set("Settings\\Options\\MessageSort", "0"); });
    CheckAllAccounts(s.ctx());
    const QStringList before = s.column(3);
    s.events->ListHeaderClick(3);
    s.events->ListHeaderClick(3);
    QCOMPARE(s.column(3), before);
    QCOMPARE(s.ctx().list.LastClickedColumn, s.ctx().list.SortColumnName);
}

void EmailListTest::columnWidthsGoBackToTheStartUpDefaults() {
    Started s = Start({{}}, [](TestRig& r) {
        r.settings.set("Settings\\Options\\RestoreColWidth", "0");
        r.settings.set("Settings\\Options\\ColSubjectWidth", "333");
    });
    StateMessageList& list = s.view().messageList;
    QCOMPARE(list.columnWidth(3), 333);
    QCOMPARE(list.columnWidth(5), 900 / 4.5); // a missing key takes the full default
    // A wider window since start-up changes nothing: the defaults stay.
    list.pixelWidth = 1800;
    list.setColumnWidth(1, 17);
    RestoreColumnWidths(s.ctx());
    QCOMPARE((QList<int>{list.columnWidth(1), list.columnWidth(2), list.columnWidth(3),
                         list.columnWidth(4), list.columnWidth(5)}),
             (QList<int>{200, 200, 200, 200, 93}));
}

void EmailListTest::accountChosenElsewhereIsShownOnTheEmailPage() {
    Started s = Start({{"a1"}, {"b1", "b2"}});
    CheckAllAccounts(s.ctx());
    QCOMPARE(s.view().messageList.rowCount(), 1);
    s.events->MainButtonClick("Accounts");
    s.view().acntTabs.select(2);
    s.events->TabClick(ctl::TabStripAcnts);
    s.events->MainButtonClick("Email");
    QCOMPARE(s.view().emailTabs.selected(), 2);
    QCOMPARE(s.view().messageList.rowCount(), 2);
    QCOMPARE(s.view().messageList.row(1).cells.value(2), QString("Subject b1"));
    QVERIFY(s.view().statusBar.panelText(1).startsWith("Box2"));
}

void EmailListTest::deleteTakesTheSelectedRows_data() {
    QTest::addColumn<QList<int>>("rows");
    QTest::addColumn<QStringList>("goneMeanwhile"); // taken off the server after the check
    QTest::addColumn<int>("confirm");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("server");
    QTest::addColumn<QStringList>("listed");
    QTest::addColumn<QString>("question");
    const QStringList all = {"u1", "u2", "u3", "u4", "u5"};
    const QString two = "Ready to Delete 2 Message(s) from 'Box1'                \r\n\r\n"
                        "This operation is NOT reversible!\r\n\r\n"
                        "Would you like to proceed?\r\n";
    QTest::newRow("two rows, yes")
        << QList<int>{2, 4} << QStringList{} << 1 << "Yes" << QStringList{"u1", "u3", "u5"}
        << QStringList{"Subject u1", "Subject u3", "Subject u5"} << two;
    QTest::newRow("two rows, no") << QList<int>{2, 4} << QStringList{} << 1 << "No" << all
                                  << QStringList{"Subject u1", "Subject u2", "Subject u3",
                                                 "Subject u4", "Subject u5"}
                                  << two;
    QTest::newRow("no question") << QList<int>{1} << QStringList{} << 0 << ""
                                 << QStringList{"u2", "u3", "u4", "u5"}
                                 << QStringList{"Subject u2", "Subject u3", "Subject u4",
                                                "Subject u5"}
                                 << "";
    // The server's numbering moved: only the identifier decides.
    QTest::newRow("gone meanwhile")
        << QList<int>{2, 3} << QStringList{"u2"} << 0 << "" << QStringList{"u1", "u4", "u5"}
        << QStringList{"Subject u1", "Subject u4", "Subject u5"} << "";
    QTest::newRow("nothing selected")
        << QList<int>{} << QStringList{} << 1 << "Yes" << all
        << QStringList{"Subject u1", "Subject u2", "Subject u3", "Subject u4", "Subject u5"}
        << QString(two).replace("Delete 2", "Delete 0");
}

void EmailListTest::deleteTakesTheSelectedRows() {
    QFETCH(QList<int>, rows);
    QFETCH(QStringList, goneMeanwhile);
    QFETCH(int, confirm);
    QFETCH(QString, answer);
    QFETCH(QStringList, server);
    QFETCH(QStringList, listed);
    QFETCH(QString, question);
    Started s = Start({{"u1", "u2", "u3", "u4", "u5"}}, [&](TestRig& r) {
        r.settings.set("Settings\\Options\\DeleteConfirmation", QString::number(confirm));
    });
    CheckAllAccounts(s.ctx());
    for (const QString& uid : goneMeanwhile)
        s.rig->mailbox("Box1").mail.removeOne(uid);
    for (int row : rows)
        s.view().messageList.setRowSelected(row, true);
    if (answer == "No")
        s.rig->boxes.answers.append(BoxAnswer::No);
    s.events->ToolbarButtonClick(ctl::tbrEmail, "EmailDelete");

    QCOMPARE(s.rig->mailbox("Box1").mail, server);
    QCOMPARE(s.column(3), listed);
    const auto& boxes = s.rig->boxes.boxes;
    QCOMPARE(boxes.size(), question.isEmpty() ? 0 : 1);
    if (!question.isEmpty()) {
        QCOMPARE(boxes[0].title, QString("Velmora - Ready to Delete Message(s)"));
        QCOMPARE(boxes[0].text, question);
        QCOMPARE(boxes[0].icon, BoxIcon::Critical);
        QCOMPARE(boxes[0].buttons, BoxButtons::YesNo);
    }
    const Account& a = s.ctx().accounts[1];
    QCOMPARE(a.AcntMsgCount, int(listed.size()));
    if (answer != "No") {
        QCOMPARE(a.AcntPrevCount, int(listed.size()));
        QCOMPARE(a.AcntStatusText, QString("Box1 - %1 Message(s)").arg(listed.size()));
    }
    QCOMPARE(s.ctx().check.TotalMessages, int(listed.size()));
    QCOMPARE(s.ctx().check.TotalNew, int(listed.size()));
    QVERIFY(!s.ctx().check.InterfaceHeld);
    QCOMPARE(s.enabledActions(), 0);
}

void EmailListTest::spamWalkGoesOverEveryAccount() {
    Started s = Start({{"a1", "a2"}, {"b1"}, {"c1", "c2", "c3"}});
    AppContext& ctx = s.ctx();
    CheckAllAccounts(ctx);
    // What the rules would have marked.
    auto mark = [&](int account, QList<int> spam) {
        for (int n : spam)
            ctx.messages.at(account, n).Spam = true;
        ctx.accounts[account].AcntSpamCount = int(spam.size());
    };
    mark(1, {2});
    mark(3, {1, 3});
    s.view().emailTabs.select(2);
    s.events->TabClick(ctl::TabStripEmail);
    // No for the first account; the walk goes on with the third.
    s.rig->boxes.answers = {BoxAnswer::No, BoxAnswer::Yes};
    s.events->ToolbarButtonClick(ctl::tbrEmail, "EmailSpam");

    const auto& boxes = s.rig->boxes.boxes;
    QCOMPARE(boxes.size(), 2);
    QCOMPARE(boxes[0].title, QString("Velmora - Ready to Delete Spam Message(s)"));
    QVERIFY(boxes[0].text.startsWith("Ready to Delete 1 Spam Message(s) from 'Box1' "));
    QVERIFY(boxes[1].text.startsWith("Ready to Delete 2 Spam Message(s) from 'Box3' "));
    QCOMPARE(s.rig->mailbox("Box1").mail, QStringList({"a1", "a2"}));
    QCOMPARE(s.rig->mailbox("Box3").mail, QStringList{"c2"});
    QCOMPARE(s.rig->mailbox("Box2").lists, 0);
    QCOMPARE(ctx.accounts[3].AcntSpamCount, 0);
    QCOMPARE(ctx.accounts[1].AcntSpamCount, 1);
    // Back on the account that showed.
    QCOMPARE(ctx.accounts.AcntCurrent, 2);
    QCOMPARE(s.view().emailTabs.selected(), 2);
    QCOMPARE(s.view().messageList.rowCount(), 1);
    QVERIFY(!ctx.check.InterfaceHeld);
}

QTEST_GUILESS_MAIN(EmailListTest)
#include "EmailListTest.moc"
