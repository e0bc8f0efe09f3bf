#include "app/frmMainEvents.h"
#include "options/FileReports.h"
#include "platform/Controls.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class AccountsPageTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void addFillsTheGapAndWritesTheKeys();
    void renameFollowsInRulesAndTabs();
    void refusedNames_data();
    void refusedNames();
    void leavingAChangedAccount_data();
    void leavingAChangedAccount();
    void deleteRewritesTheKeys_data();
    void deleteRewritesTheKeys();
    void deletingTheOnlyAccountTurnsChecksOff();
    void swapCarriesMessagesAndKeys_data();
    void swapCarriesMessagesAndKeys();
    void moveButtonsFollowThePosition();
    void failedWriteKeepsThePageDirty();
    void colourBoxesGoWhenThePointerLeavesThem();
};

namespace {

const QString S = QStringLiteral("Settings\\");

// A store whose file can be made unwritable: writes then change nothing
// and are told once, as the real store does.
class BreakableStore : public SettingsStore {
public:
    explicit BreakableStore(FakeSettingsStore& inner) : inner(inner) {}
    QString GetSetting(const QString& a, const QString& s, const QString& k,
                       const QString& d) override {
        return inner.GetSetting(a, s, k, d);
    }
    void SaveSetting(const QString& a, const QString& s, const QString& k,
                     const QString& v) override {
        if (!fail())
            inner.SaveSetting(a, s, k, v);
    }
    void DeleteSetting(const QString& a, const QString& s, const QString& k) override {
        if (!fail())
            inner.DeleteSetting(a, s, k);
    }
    bool broken = false;

private:
    bool fail() {
        if (broken && !told && onProblem)
            onProblem(FileProblem::notWritten("/home/u/.config/Kestrum/Velmora.conf", "No space"));
        told = broken;
        return broken;
    }
    FakeSettingsStore& inner;
    bool told = false;
};

struct Page {
    std::unique_ptr<TestRig> rig = std::make_unique<TestRig>();
    std::unique_ptr<frmMainEvents> events;

    explicit Page(const QStringList& names) {
        rig->settings.set(S + "FirstUse", "1");
        for (int n = 1; n <= names.size(); ++n)
            rig->addAccount(n, names[n - 1]);
        rig->start();
        events = std::make_unique<frmMainEvents>(ctx());
        click("tbrMainButtons/Accounts");
    }
    AppContext& ctx() { return *rig->ctx; }
    StateView& view() { return rig->view; }
    void click(const QString& name) { DeliverClick(*events, name); }
    void set(const QString& control, const QString& text) {
        view().setText(control, text);
        events->ValueChanged(control);
    }
    void tab(int n) {
        view().acntTabs.select(n);
        events->TabClick(ctl::TabStripAcnts);
    }
    void answer(BoxAnswer a) { rig->boxes.answers.append(a); }
    QString key(const QString& field, int n) {
        return rig->settings.get(S + field + QString::number(n));
    }
    bool hasKeys(int n) {
        for (const AccountStore::Field& f : AccountStore::fields()) {
            if (rig->settings.has(S + f.key + QString::number(n)))
                return true;
        }
        return false;
    }
    QStringList names() {
        QStringList list;
        const int count = rig->settings.get(S + "AcntNum").toInt();
        for (int n = 1; n <= count; ++n)
            list << key("AcntName", n);
        return list;
    }
    QStringList captions() {
        QStringList list;
        for (const auto& t : view().acntTabs.tabs)
            list << t.caption;
        return list;
    }
    // Account n holds `count` messages whose subjects name it.
    void giveMessages(int n, int count) {
        ctx().messages.MessageCapacity = 8;
        ctx().messages.GrowMessageStore(8);
        for (int m = 1; m <= count; ++m)
            ctx().messages.at(n, m).Subject =
                QStringLiteral("%1-%2").arg(ctx().accounts[n].AcntName).arg(m);
        ctx().accounts[n].AcntMsgCount = count;
    }
    bool dirty() { return view().isEnabled("tbrButtons(6)"); }
};

} // namespace

void AccountsPageTest::addFillsTheGapAndWritesTheKeys() {
    Page p({"New Account1", "New Account3"});
    p.click("tbrAcnts/AcntAdd");
    QCOMPARE(p.rig->settings.get(S + "AcntNum"), QString("3"));
    QCOMPARE(p.key("AcntName", 3), QString("New Account2"));
    QCOMPARE(p.key("AcntPort", 3), QString("110"));
    QCOMPARE(p.key("AcntColour", 3), QString("255"));
    QCOMPARE(p.key("AcntColourIndex", 3), QString("5"));
    // The fields come first, the count after them.
    const QStringList& w = p.rig->settings.writes;
    QVERIFY(w.indexOf(S + "AcntSoundOn3") < w.indexOf(S + "AcntNum"));
    QCOMPARE(p.captions(), (QStringList{"New Account1", "New Account3", "New Account2"}));
    QCOMPARE(p.view().acntTabs.current, 3);
    QCOMPARE(p.view().text(ctl::txtAcntName), QString("New Account2"));
    QCOMPARE(p.view().focus, QString(ctl::txtAcntName));
    QVERIFY(!p.dirty());

    // From an empty list the placeholder tab gives way and the page opens.
    Page empty({});
    QVERIFY(empty.view().isVisible(ctl::fraNoAcntsBanner));
    empty.click("tbrAcnts/AcntAdd");
    QCOMPARE(empty.captions(), QStringList{"New Account1"});
    QVERIFY(!empty.view().isVisible(ctl::fraNoAcntsBanner));
    QVERIFY(empty.view().isEnabled("tbrAcnts/AcntDelete"));
}

void AccountsPageTest::renameFollowsInRulesAndTabs() {
    Page p({"Home", "Work"});
    RuleSet& rules = p.ctx().rules.LiveRules;
    rules.rules.resize(3);
    rules.RuleCount = 2;
    rules[1].Account = "Home";
    rules[2].Account = "HOME";
    p.ctx().accounts[1].AcntMsgCount = 0;
    p.view().emailTabs.setCaption(1, "Home  (4)");
    p.set(ctl::txtAcntName, "House");
    QVERIFY(p.dirty());
    QVERIFY(!p.view().isEnabled(ctl::tbrMainButtons));
    p.click("tbrButtons(6)");
    QVERIFY(!p.dirty());
    QCOMPARE(p.key("AcntName", 1), QString("House"));
    // Rules by exact name; the caption keeps what a check added.
    QCOMPARE(rules[1].Account, QString("House"));
    QCOMPARE(rules[2].Account, QString("HOME"));
    QCOMPARE(p.view().emailTabs.caption(1), QString("House  (4)"));
    QCOMPARE(p.view().acntTabs.caption(1), QString("House"));
    QCOMPARE(p.view().statusBar.panels[0], QString("House"));

    // A change typed back clears the dirty state by itself.
    p.set(ctl::txtAcntServer, "x");
    p.set(ctl::txtAcntServer, "Home.example");
    QVERIFY(!p.dirty());
}

void AccountsPageTest::refusedNames_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title");
    QTest::newRow("blank") << ""
                           << "Blank Account Name";
    QTest::newRow("other's name, other case") << "WORK"
                                              << "Duplicate Account Name";
    QTest::newRow("own name, other case") << "home"
                                          << "";
}

void AccountsPageTest::refusedNames() {
    QFETCH(QString, name);
    QFETCH(QString, title);
    Page p({"Home", "Work"});
    p.set(ctl::txtAcntName, name);
    p.click("tbrButtons(6)");
    if (title.isEmpty()) {
        QCOMPARE(p.rig->boxes.boxes.size(), 0);
        QCOMPARE(p.key("AcntName", 1), name);
        return;
    }
    QCOMPARE(p.rig->boxes.boxes.size(), 1);
    QCOMPARE(p.rig->boxes.boxes[0].title, title);
    QCOMPARE(p.key("AcntName", 1), QString("Home"));
    QVERIFY(p.dirty());
    QCOMPARE(p.view().focus, QString(ctl::txtAcntName));
    if (!name.isEmpty())
        QCOMPARE(p.rig->boxes.boxes[0].text,
                 "The following Account Name is already used.          \r\nAccount Name: 'WORK'"
                 "\r\n\r\nDuplicate Account Names are not allowed.\r\nPlease re-enter a name "
                 "for this Account.\r\n\r\n");
}

void AccountsPageTest::leavingAChangedAccount_data() {
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("current");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<bool>("dirty");
    QTest::newRow("yes saves and moves") << int(BoxAnswer::Yes) << "Hut" << 2 << "Hut" << false;
    QTest::newRow("no stays with the changes")
        << int(BoxAnswer::No) << "Hut" << 1 << "Home" << true;
    QTest::newRow("cancel discards and moves")
        << int(BoxAnswer::Cancel) << "Hut" << 2 << "Home" << false;
    // A refused save still moves on, and its changes are gone.
    QTest::newRow("yes with a blank name") << int(BoxAnswer::Yes) << "" << 2 << "Home" << false;
}

void AccountsPageTest::leavingAChangedAccount() {
    QFETCH(int, answer);
    QFETCH(QString, typed);
    QFETCH(int, current);
    QFETCH(QString, stored);
    QFETCH(bool, dirty);
    Page p({"Home", "Work"});
    p.set(ctl::txtAcntName, typed);
    p.answer(BoxAnswer(answer));
    p.tab(2);
    const auto& boxes = p.rig->boxes.boxes;
    QCOMPARE(boxes.first().title, QString("Changes Not Saved!"));
    QVERIFY(boxes.first().text.contains("Account Name: 'Home'\r\n\r\nHow would you like"));
    QCOMPARE(boxes.size(), typed.isEmpty() ? 2 : 1);
    QCOMPARE(p.ctx().accounts.AcntCurrent, current);
    QCOMPARE(p.view().acntTabs.current, current);
    QCOMPARE(p.key("AcntName", 1), stored);
    QCOMPARE(p.dirty(), dirty);
    QCOMPARE(p.view().text(ctl::txtAcntName), current == 1 ? typed : QString("Work"));
}

void AccountsPageTest::deleteRewritesTheKeys_data() {
    QTest::addColumn<int>("deleted");
    QTest::addColumn<QStringList>("left");
    QTest::addColumn<int>("current");
    QTest::newRow("first") << 1 << QStringList{"B", "C"} << 1;
    QTest::newRow("middle") << 2 << QStringList{"A", "C"} << 2;
    QTest::newRow("last") << 3 << QStringList{"A", "B"} << 2;
}

void AccountsPageTest::deleteRewritesTheKeys() {
    QFETCH(int, deleted);
    QFETCH(QStringList, left);
    QFETCH(int, current);
    Page p({"A", "B", "C"});
    p.giveMessages(3, 2);
    p.tab(deleted);
    p.answer(BoxAnswer::No);
    p.click("tbrAcnts/AcntDelete");
    QCOMPARE(p.names(), (QStringList{"A", "B", "C"}));
    p.answer(BoxAnswer::Yes);
    p.click("tbrAcnts/AcntDelete");
    QCOMPARE(p.rig->boxes.boxes.last().text.section("\r\n", 1, 1),
             QString("Account Name:  '%1'").arg(QString("ABC")[deleted - 1]));
    QCOMPARE(p.names(), left);
    QVERIFY(!p.hasKeys(3));
    QCOMPARE(p.key("AcntServer", 2), left[1] + ".example");
    QCOMPARE(p.ctx().accounts.AcntCurrent, current);
    QCOMPARE(p.captions(), left);
    // C's messages go with it to its new number.
    const int c = int(left.indexOf("C")) + 1;
    if (c > 0) {
        QCOMPARE(p.ctx().accounts[c].AcntMsgCount, 2);
        QCOMPARE(p.ctx().messages.at(c, 2).Subject, QString("C-2"));
    }
}

void AccountsPageTest::deletingTheOnlyAccountTurnsChecksOff() {
    Page p({"A"});
    p.rig->settings.set(S + "Options\\UseInterval", "1");
    p.ctx().options.UseInterval = 1;
    p.ctx().options.EmailCheckStartUp = 1;
    p.answer(BoxAnswer::Yes);
    p.click("tbrAcnts/AcntDelete");
    QCOMPARE(p.rig->settings.get(S + "AcntNum"), QString("0"));
    QVERIFY(!p.hasKeys(1));
    QCOMPARE(p.ctx().accounts.AcntCurrent, 0);
    QCOMPARE(p.ctx().options.UseInterval, 0);
    QCOMPARE(p.rig->settings.get("Settings\\Options\\UseInterval"), QString("0"));
    QCOMPARE(p.rig->settings.get("Settings\\Options\\EmailCheckStartUp"), QString("0"));
    QVERIFY(p.view().isVisible(ctl::fraNoAcntsBanner));
    QVERIFY(!p.view().isEnabled("tbrAcnts/AcntDelete"));
    QCOMPARE(p.view().statusBar.panels[0], QString("No Accounts have been created..."));
    QCOMPARE(p.view().text(ctl::txtAcntName), QString());
}

void AccountsPageTest::swapCarriesMessagesAndKeys_data() {
    QTest::addColumn<QString>("how");
    QTest::newRow("drag on the accounts strip") << "TabStripAcnts";
    QTest::newRow("drag on the email strip") << "TabStripEmail";
}

void AccountsPageTest::swapCarriesMessagesAndKeys() {
    QFETCH(QString, how);
    Page p({"A", "B", "C"});
    p.giveMessages(1, 5);
    p.giveMessages(3, 2);
    p.ctx().accounts[1].AcntNewCount = 3;
    const TabStrip strip = how == ctl::TabStripEmail ? TabStrip::Email : TabStrip::Accounts;
    p.view().tabs(strip).select(1);
    p.events->TabPress(how, 1);
    dynamic_cast<ManualTimer&>(*p.ctx().shell.tmrDragTab).fire();
    QCOMPARE(p.view().tabs(strip).selected(), 1);
    p.events->TabDrop(how, 1, 3);
    // A swap, not a move: B stays where it was.
    QCOMPARE(p.names(), (QStringList{"C", "B", "A"}));
    QCOMPARE(p.ctx().accounts[1].AcntMsgCount, 2);
    QCOMPARE(p.ctx().accounts[3].AcntMsgCount, 5);
    QCOMPARE(p.ctx().accounts[3].AcntNewCount, 3);
    QCOMPARE(p.ctx().messages.at(3, 5).Subject, QString("A-5"));
    QCOMPARE(p.ctx().messages.at(1, 1).Subject, QString("C-1"));
    QCOMPARE(p.ctx().accounts.AcntCurrent, 3);
    QCOMPARE(p.view().emailTabs.current, 3);
    QCOMPARE(p.view().acntTabs.current, 3);
    QCOMPARE(p.view().emailTabs.caption(3), QString("A  (5)"));
    QCOMPARE(p.view().messageList.rowCount(), 5);
    // Onto itself or beside the tabs: nothing.
    p.events->TabDrop(how, 3, 3);
    p.events->TabDrop(how, 3, 0);
    QCOMPARE(p.names(), (QStringList{"C", "B", "A"}));
}

void AccountsPageTest::moveButtonsFollowThePosition() {
    Page p({"A", "B"});
    const QString back = "tbrMoveButtons(0)/Backward", forward = "tbrMoveButtons(0)/Forward";
    QVERIFY(!p.view().isEnabled(back));
    QVERIFY(p.view().isEnabled(forward));
    p.click(forward);
    QCOMPARE(p.names(), (QStringList{"B", "A"}));
    QCOMPARE(p.ctx().accounts.AcntCurrent, 2);
    QVERIFY(p.view().isEnabled(back));
    QVERIFY(!p.view().isEnabled(forward));
    p.set(ctl::txtAcntPort, "995");
    QVERIFY(!p.view().isEnabled(back));
    p.click("tbrButtons(7)");
    QCOMPARE(p.view().text(ctl::txtAcntPort), QString("110"));
    QVERIFY(p.view().isEnabled(back));
}

void AccountsPageTest::failedWriteKeepsThePageDirty() {
    Page p({"Home"});
    BreakableStore store(p.rig->settings);
    p.ctx().svc.settings = &store;
    ReportSettingsProblems(p.ctx());
    store.broken = true;
    p.set(ctl::txtAcntName, "Hut");
    p.click("tbrButtons(6)");
    QCOMPARE(p.rig->boxes.boxes.size(), 1);
    QCOMPARE(p.rig->boxes.boxes[0].title, QString("Velmora - File Not Saved"));
    // Again: the store says nothing twice, the page does.
    p.click("tbrButtons(6)");
    QCOMPARE(p.rig->boxes.boxes.size(), 2);
    QCOMPARE(p.rig->boxes.boxes[1].title, QString("Velmora - Account Not Saved"));
    QCOMPARE(p.ctx().accounts[1].AcntName, QString("Home"));
    QCOMPARE(p.view().acntTabs.caption(1), QString("Home"));
    QVERIFY(p.dirty());
    QCOMPARE(p.view().text(ctl::txtAcntName), QString("Hut"));
    store.broken = false;
    p.click("tbrButtons(6)");
    QCOMPARE(p.key("AcntName", 1), QString("Hut"));
    QVERIFY(!p.dirty());
    p.ctx().svc.settings = &p.rig->settings;
}

void AccountsPageTest::colourBoxesGoWhenThePointerLeavesThem() {
    Page p({"Home"});
    p.click("tbrColour/Colour");
    QVERIFY(p.view().isVisible(ctl::fraColourBox));
    p.events->FramePointer(ctl::fraAcnt);
    QVERIFY(!p.view().isVisible(ctl::fraColourBox));
    // Leaving chose nothing.
    QVERIFY(!p.dirty());
    QVERIFY_THROWS_EXCEPTION(UnknownControl, p.events->FramePointer(ctl::fraMainButtons));
}

QTEST_GUILESS_MAIN(AccountsPageTest)
#include "AccountsPageTest.moc"
