#include "app/frmMainEvents.h"
#include "context/Product.h"
#include "platform/Controls.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

// What the user did, as the control names clicked in order; "rclick:" names
// a right click.
using Clicks = QStringList;

class ShellActionsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void helpFollowsThePageAndSection_data();
    void helpFollowsThePageAndSection();
    void linksOpenThroughTheShell_data();
    void linksOpenThroughTheShell();
    void trayEntriesBringTheOptionsSection_data();
    void trayEntriesBringTheOptionsSection();
    void rightClickOpensTheMenuOnly();
    void clientStartsOrSaysWhy_data();
    void clientStartsOrSaysWhy();
    void trayTogglesSaveTheOptions();
    void heldPressBecomesADrag();
    void withoutATrayTheWindowStaysAndSaysSoOnce();
};

namespace {

struct Started {
    std::unique_ptr<TestRig> rig;
    std::unique_ptr<frmMainEvents> events;

    void click(const QString& name) {
        if (name.startsWith("rclick:"))
            events->TrayClick(MouseButton::Right);
        else
            DeliverClick(*events, name);
    }
    void clicks(const Clicks& names) {
        for (const QString& name : names)
            click(name);
    }
    AppContext& ctx() { return *rig->ctx; }
    StateView& view() { return rig->view; }
};

Started Start(int accounts, const std::function<void(TestRig&)>& before = {}) {
    Started s{std::make_unique<TestRig>(), nullptr};
    s.rig->settings.set("Settings\\FirstUse", "1");
    for (int n = 1; n <= accounts; ++n)
        s.rig->addAccount(n, "Box" + QString::number(n));
    if (before)
        before(*s.rig);
    s.rig->start();
    s.events = std::make_unique<frmMainEvents>(s.ctx());
    return s;
}

} // namespace

void ShellActionsTest::helpFollowsThePageAndSection_data() {
    QTest::addColumn<Clicks>("clicks");
    QTest::addColumn<QList<int>>("topics");
    QTest::newRow("tray menu") << Clicks{ctl::mnuTrayHelp} << QList<int>{100};
    QTest::newRow("each page") << Clicks{"tbrButtons(0)", "tbrMainButtons/Accounts",
                                         "tbrButtons(5)", "tbrMainButtons/Rules", "tbrButtons(8)"}
                               << QList<int>{130, 140, 150};
    QTest::newRow("options, first section")
        << Clicks{"tbrMainButtons/Options", "tbrButtons(11)"} << QList<int>{210};
    QTest::newRow("options through the tray")
        << Clicks{ctl::mnuTrayMenuColours, "tbrButtons(11)", ctl::mnuTrayAbout, "tbrButtons(11)"}
        << QList<int>{240, 260};
}

void ShellActionsTest::helpFollowsThePageAndSection() {
    QFETCH(Clicks, clicks);
    QFETCH(QList<int>, topics);
    Started s = Start(1);
    s.clicks(clicks);
    QList<int> shown;
    for (const RecordedHelp::Request& r : s.rig->headless.help.requests) {
        QVERIFY(r.file.endsWith("/help/velmora.html"));
        shown.append(r.context);
    }
    QCOMPARE(shown, topics);
}

void ShellActionsTest::linksOpenThroughTheShell_data() {
    QTest::addColumn<Clicks>("clicks");
    QTest::addColumn<QString>("target");
    QTest::newRow("tray updates") << Clicks{ctl::mnuTrayUpdates} << Product::HomePage();
    QTest::newRow("about updates")
        << Clicks{"tbrMainButtons/Options", "tbrOptAbout/Update"} << Product::HomePage();
    QTest::newRow("web site") << Clicks{ctl::lblAboutWebSite} << Product::HomePage();
    // The blank after the colon is kept.
    QTest::newRow("support mail") << Clicks{ctl::lblAboutEmail}
                                  << "mailto: " + Product::SupportAddress();
    QTest::newRow("new message") << Clicks{ctl::mnuTrayNewMessage} << "mailto:";
    QTest::newRow("read me") << Clicks{"tbrOptAbout/ReadMe"} << "/help/readme.html";
}

void ShellActionsTest::linksOpenThroughTheShell() {
    QFETCH(Clicks, clicks);
    QFETCH(QString, target);
    Started s = Start(1);
    s.clicks(clicks);
    const auto& requests = s.rig->headless.shell.requests;
    QCOMPARE(requests.size(), 1);
    QVERIFY2(requests[0].target.endsWith(target), qPrintable(requests[0].target));
}

void ShellActionsTest::trayEntriesBringTheOptionsSection_data() {
    QTest::addColumn<QString>("entry");
    QTest::addColumn<int>("accounts");
    QTest::addColumn<int>("section");
    QTest::newRow("options") << QString(ctl::mnuTrayOptions) << 2 << 1;
    QTest::newRow("menu colours") << QString(ctl::mnuTrayMenuColours) << 2 << 4;
    // With no account the entry is off, and About is the way in.
    QTest::newRow("about, no account") << QString(ctl::mnuTrayAbout) << 0 << 6;
}

void ShellActionsTest::trayEntriesBringTheOptionsSection() {
    QFETCH(QString, entry);
    QFETCH(int, accounts);
    QFETCH(int, section);
    Started s = Start(accounts);
    s.click("tbrMainButtons/Rules");
    s.click("tbrButtons(2)"); // to the tray
    s.click(entry);
    QVERIFY(s.view().windowVisible);
    QCOMPARE(s.ctx().shell.CurrentPage, 3);
    QCOMPARE(s.view().caption(ctl::lblBanner), QString("Options"));
    QVERIFY(s.view().isVisible(Element(ctl::fraMain, 3)));
    QVERIFY(!s.view().isVisible(Element(ctl::fraMain, 2)));
    QVERIFY(!s.view().isVisible(ctl::fraNoAcntsBanner));
    QCOMPARE(s.ctx().shell.OptionsPage, section);
}

void ShellActionsTest::rightClickOpensTheMenuOnly() {
    Started s = Start(1);
    s.click("tbrButtons(2)");
    s.click("rclick:TrayIcon");
    QCOMPARE(s.view().poppedUpMenus, QStringList{ctl::mnuTrayPopMenu});
    QVERIFY(!s.view().windowVisible);
    QCOMPARE(s.view().state, WindowState::Minimized);
}

void ShellActionsTest::clientStartsOrSaysWhy_data() {
    QTest::addColumn<bool>("defaultValid");
    QTest::addColumn<bool>("accountValid");
    QTest::addColumn<bool>("shellStarts");
    QTest::addColumn<int>("windowState"); // of the start asked for; -1 none
    QTest::addColumn<bool>("errorBox");
    QTest::newRow("default, run size") << true << false << true << 3 << false;
    QTest::newRow("account's, always normal") << false << true << true << 1 << false;
    QTest::newRow("neither") << false << false << true << -1 << true;
    QTest::newRow("the start fails") << true << true << false << 3 << true;
}

void ShellActionsTest::clientStartsOrSaysWhy() {
    QFETCH(bool, defaultValid);
    QFETCH(bool, accountValid);
    QFETCH(bool, shellStarts);
    QFETCH(int, windowState);
    QFETCH(bool, errorBox);
    Started s = Start(1, [](TestRig& rig) { rig.settings.set("Settings\\Options\\RunSize", "3"); });
    s.ctx().shell.DefaultClientValid = defaultValid;
    s.ctx().accounts[1].AcntClientValid = accountValid;
    s.rig->headless.shell.succeeds = shellStarts;
    s.click(ctl::mnuTrayRunClient);
    const auto& requests = s.rig->headless.shell.requests;
    QCOMPARE(requests.isEmpty() ? -1 : requests[0].windowState, windowState);
    const auto& boxes = s.rig->boxes.boxes;
    QCOMPARE(boxes.size(), errorBox ? 1 : 0);
    if (errorBox) {
        QCOMPARE(boxes[0].title, QString("Velmora - Email Client Error"));
        QVERIFY(boxes[0].text.startsWith("The Email Client Program failed!\r\n\r\nIt appears the "
                                         "path and/or filename                    \r\n"));
    }
}

void ShellActionsTest::trayTogglesSaveTheOptions() {
    Started s = Start(1);
    const QString tipBefore = s.view().trayEntry.tipText;
    const auto stored = [&](const char* key) {
        return s.rig->settings.get(QString("Settings\\Options\\") + key);
    };
    s.click(ctl::mnuTraySounds);
    QCOMPARE(stored("PlaySound"), QString("0"));
    QCOMPARE(s.view().caption(ctl::mnuTraySounds), QString("Soun&ds - Off|#SoundOff"));
    QVERIFY(!s.ctx().shell.SoundMaster);
    s.click(ctl::mnuTraySounds);
    QCOMPARE(stored("PlaySound"), QString("1"));
    QCOMPARE(s.view().caption(ctl::mnuTraySounds), QString("Soun&ds - On|#SoundOn"));

    const QString interval = stored("UseInterval");
    s.click(ctl::mnuTrayAutoCheck);
    QVERIFY(stored("UseInterval") != interval);
    s.click(ctl::mnuTrayAutoCheck);
    QCOMPARE(stored("UseInterval"), interval);
    QCOMPARE(s.view().trayEntry.tipText, tipBefore);
}

void ShellActionsTest::heldPressBecomesADrag() {
    Started s = Start(2);
    auto& drag = dynamic_cast<ManualTimer&>(*s.ctx().shell.tmrDragTab);
    s.view().emailTabs.select(2);
    // Let go before the tick: a click.
    s.events->TabPress(ctl::TabStripEmail, 2);
    s.events->TabRelease(ctl::TabStripEmail);
    drag.fire();
    QVERIFY(s.view().emailTabs.draggedTabs.isEmpty());
    // Held through the tick: the strip drags its tab, once.
    s.events->TabPress(ctl::TabStripEmail, 2);
    drag.fire();
    drag.fire();
    QCOMPARE(s.view().emailTabs.draggedTabs, QList<int>{2});
    QVERIFY(s.view().acntTabs.draggedTabs.isEmpty());
}

void ShellActionsTest::withoutATrayTheWindowStaysAndSaysSoOnce() {
    Started s = Start(1);
    s.view().trayEntry.available = false;
    s.view().windowVisible = true;
    s.click("tbrButtons(2)");
    QVERIFY(s.view().windowVisible);
    const QString said = s.view().statusBar.panelText(1);
    QVERIFY(said.contains("task bar"));
    s.view().statusBar.setPanelText(1, "Checking");
    s.click(ctl::mnuTrayShow);
    s.click("tbrButtons(2)");
    QCOMPARE(s.view().statusBar.panelText(1), QString("Checking"));
}

QTEST_GUILESS_MAIN(ShellActionsTest)
#include "ShellActionsTest.moc"
