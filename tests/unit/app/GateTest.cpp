#include "app/frmMainEvents.h"
#include "checking/CheckCycle.h"
#include "platform/Controls.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

// While a check holds the interface, only Stop, Show, Auto Check and Quit
// (and the tray picture, which is Show) may act, however the event reaches
// the logic from inside the check's nested loop.
class GateTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void onlyFewEventsActDuringACheck_data();
    void onlyFewEventsActDuringACheck();
    void everyEventActsWhenIdle();

private:
    // What a user event could change that a test can see.
    struct Trace {
        int page, acntCurrent, useInterval, boxes, shell, connects, restores, clicks;
        bool stop, visible, minimized, unloaded;
        bool operator==(const Trace&) const = default;
    };
    static Trace trace(TestRig& rig) {
        const AppContext& c = *rig.ctx;
        int connects = 0;
        for (const FakeMailbox& box : rig.server.hosts)
            connects += box.connects;
        return {c.shell.CurrentPage,
                c.accounts.AcntCurrent,
                c.options.UseInterval,
                int(rig.boxes.boxes.size()),
                int(rig.headless.shell.requests.size()),
                connects,
                rig.view.designSizeRestores,
                c.list.AcntLastShown,
                c.check.StopRequested,
                rig.view.windowVisible,
                rig.view.state == WindowState::Minimized,
                rig.view.unloaded};
    }
    // Fires one event by name: a click, a tab, a list action or a change.
    static void fire(MainViewEvents& events, TestRig& rig, const QString& name) {
        const ControlKind kind = KindOf(name);
        if (kind == ControlKind::TabStrip) {
            rig.view.tabs(name == ctl::TabStripEmail ? TabStrip::Email : TabStrip::Accounts)
                .select(2);
            events.TabClick(name);
        } else if (kind == ControlKind::List) {
            events.ListRowClick(1);
            events.ListDoubleClick(1);
            events.ListContextMenu(1);
        } else if (kind == ControlKind::Header) {
            events.ListHeaderClick(1);
        } else if (kind == ControlKind::Button || kind == ControlKind::MenuEntry ||
                   kind == ControlKind::Tray) {
            DeliverClick(events, name);
        } else {
            events.ValueChanged(name);
        }
    }
    static std::unique_ptr<TestRig> twoAccounts() {
        auto rig = std::make_unique<TestRig>();
        rig->addAccount(1, "Home");
        rig->addAccount(2, "Work");
        rig->settings.set("Settings\\FirstUse", "1");
        rig->settings.set("Settings\\Options\\UseInterval", "1");
        rig->mailbox("Home").mail = {"a", "b"};
        rig->mailbox("Work").mail = {"c"};
        rig->start();
        rig->view.showWindow();
        return rig;
    }
};

void GateTest::onlyFewEventsActDuringACheck_data() {
    QTest::addColumn<QString>("control");
    QTest::addColumn<bool>("acts");
    const QStringList admitted = {Element(ctl::tbrButtons, ctl::StopRetrieval), ctl::mnuTrayShow,
                                  ctl::mnuTrayAutoCheck, ctl::mnuTrayQuitApplication,
                                  ctl::TrayIcon};
    for (const ControlInfo& c : ControlTable()) {
        if (c.kind == ControlKind::Frame || c.kind == ControlKind::Label ||
            c.kind == ControlKind::Toolbar || c.kind == ControlKind::Focus)
            continue;
        QTest::newRow(qPrintable(c.name)) << c.name << admitted.contains(c.name);
    }
}

void GateTest::onlyFewEventsActDuringACheck() {
    QFETCH(QString, control);
    QFETCH(bool, acts);
    auto rig = twoAccounts();
    frmMainEvents events(*rig->ctx);
    // The window is hidden for Show and the tray picture to have work.
    rig->view.hideWindow();
    rig->view.setWindowState(WindowState::Minimized);

    bool fired = false;
    Trace before{}, after{};
    rig->mailbox("Home").duringFetch = [&](int message) {
        if (message != 1 || fired)
            return;
        fired = true;
        QVERIFY(rig->ctx->check.InterfaceHeld);
        before = trace(*rig);
        fire(events, *rig, control);
        after = trace(*rig);
    };
    CheckAllAccounts(*rig->ctx);
    QVERIFY(fired);
    QCOMPARE(!(before == after), acts);
    QVERIFY(!rig->ctx->check.InterfaceHeld);
}

// Outside a check the same events reach their handlers: the gate is open.
void GateTest::everyEventActsWhenIdle() {
    const QStringList controls = {
        Button(ctl::tbrMainButtons, "Accounts"), Element(ctl::tbrButtons, ctl::CheckAll),
        Button(ctl::tbrEmail, "EmailCheck"), ctl::mnuTrayCheckAll, ctl::TabStripEmail};
    for (const QString& control : controls) {
        auto rig = twoAccounts();
        frmMainEvents events(*rig->ctx);
        const Trace before = trace(*rig);
        fire(events, *rig, control);
        QVERIFY2(!(trace(*rig) == before), qPrintable(control));
    }
}

QTEST_GUILESS_MAIN(GateTest)
#include "GateTest.moc"
