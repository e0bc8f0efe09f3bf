#include "app/frmMainEvents.h"
#include "checking/CheckCycle.h"
#include "platform/qt/widgets/MainWindow.h"
#include "support/TestRig.h"

#include <QAbstractButton>
#include <QAction>
#include <QTabBar>
#include <QTableWidget>
#include <QtTest>

using namespace velmora;

namespace {

QString Flag(bool on) {
    return on ? QStringLiteral("1") : QStringLiteral("0");
}

// Everything the logic can read back through MainView, as lines to compare.
QStringList Snapshot(const QString& step, MainView& v) {
    using K = ControlKind;
    QStringList lines;
    auto line = [&](const QString& text) {
        lines.append(step + ": " + text);
    };
    for (const ControlInfo& c : ControlTable()) {
        // The tray's picture and tip are the tray surface's, read below.
        // A popup menu shows only while the user has it open.
        if (c.kind == K::Tray || c.kind == K::Menu)
            continue;
        QString text = QString("%1 enabled=%2 visible=%3 tip=%4")
                           .arg(c.name, Flag(v.isEnabled(c.name)), Flag(v.isVisible(c.name)),
                                v.toolTip(c.name));
        if (c.kind == K::Button || c.kind == K::Label || c.kind == K::MenuEntry ||
            c.kind == K::Frame)
            text += " caption=" + v.caption(c.name);
        if (c.kind == K::Button || c.kind == K::Label || c.kind == K::MenuEntry ||
            c.kind == K::Header)
            text += " image=" + v.image(c.name);
        line(text);
    }
    for (TabStrip strip : {TabStrip::Email, TabStrip::Accounts}) {
        TabStripView& tabs = v.tabs(strip);
        QString text = QString("tabs %1 selected=%2:").arg(int(strip)).arg(tabs.selected());
        for (int tab = 1; tab <= tabs.count(); ++tab)
            text += QString(" [%1|%2]").arg(tabs.caption(tab), tabs.image(tab));
        line(text);
    }
    MessageListView& list = v.list();
    line(QString("list rows=%1 current=%2").arg(list.rowCount()).arg(list.currentRow()));
    for (int row = 1; row <= list.rowCount(); ++row) {
        const ListRow r = list.row(row);
        line(QString("row %1 %2 bold=%3 selected=%4 %5")
                 .arg(row)
                 .arg(r.picture, Flag(r.bold), Flag(list.isRowSelected(row)), r.cells.join('|')));
    }
    StatusBarView& status = v.status();
    for (int panel = 1; panel <= 5; ++panel)
        line(QString("panel %1 %2 [%3]")
                 .arg(panel)
                 .arg(status.panelText(panel), status.panelPicture(panel)));
    line(QString("status tip=%1 progress=%2 at %3")
             .arg(status.toolTip(), Flag(status.isProgressVisible()))
             .arg(status.progress()));
    QStringList picture;
    for (int layer : v.tray().picture())
        picture.append(QString::number(layer));
    line(QString("tray present=%1 picture=%2 tip=%3")
             .arg(Flag(v.tray().isPresent()), picture.join(','), v.tray().tip()));
    line(QString("window visible=%1 state=%2")
             .arg(Flag(v.isWindowVisible()))
             .arg(int(v.windowState())));
    return lines;
}

// What the user does: on the real window through its widgets, on the
// headless view straight to the events, as the command line does.
class User {
public:
    virtual ~User() = default;
    virtual void click(const QString& control) = 0;
    virtual void selectTab(TabStrip strip, int tab) = 0;
    virtual void clickRow(int row) = 0;
};

class HeadlessUser : public User {
public:
    HeadlessUser(MainView& view, MainViewEvents& events) : view(view), events(events) {}
    void click(const QString& control) override { DeliverClick(events, control); }
    void selectTab(TabStrip strip, int tab) override {
        view.tabs(strip).select(tab);
        events.TabClick(strip == TabStrip::Email ? ctl::TabStripEmail : ctl::TabStripAcnts);
    }
    void clickRow(int row) override {
        for (int r = 1; r <= view.list().rowCount(); ++r)
            view.list().setRowSelected(r, r == row);
        view.list().setCurrentRow(row);
        events.ListRowClick(row);
    }

private:
    MainView& view;
    MainViewEvents& events;
};

class WindowUser : public User {
public:
    explicit WindowUser(MainWindow& window) : w(window) {}
    void click(const QString& control) override {
        if (auto* action = w.findChild<QAction*>(control))
            action->trigger();
        else if (auto* button = w.findChild<QAbstractButton*>(control))
            button->click();
        else
            QFAIL(qPrintable("nothing to click named " + control));
    }
    void selectTab(TabStrip strip, int tab) override {
        const QString name = strip == TabStrip::Email ? ctl::TabStripEmail : ctl::TabStripAcnts;
        auto* bar = w.findChild<QTabBar*>(name);
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(tab - 1).center());
    }
    void clickRow(int row) override {
        auto* table = w.findChild<QTableWidget*>(ctl::lvwEmail);
        const QRect cell = table->visualRect(table->model()->index(row - 1, 2));
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell.center());
    }

private:
    MainWindow& w;
};

// One run of the program on fakes, shown on either view.
struct Run {
    explicit Run(bool onWindow) {
        rig.addAccount(1, "Home");
        rig.addAccount(2, "Work & Play");
        rig.settings.set("Settings\\FirstUse", "1");
        for (const char* uid : {"h1", "h2", "h3"})
            rig.mailbox("Home").mail.append(uid);
        rig.mailbox("Work & Play").mail.append("w1");
        if (onWindow) {
            window = std::make_unique<MainWindow>();
            window->setTaskbarFallback(false);
            rig.ctx->view = window.get();
        }
        events = std::make_unique<frmMainEvents>(*rig.ctx);
        if (window) {
            window->setEvents(events.get());
            user = std::make_unique<WindowUser>(*window);
        } else {
            user = std::make_unique<HeadlessUser>(rig.view, *events);
        }
    }
    ~Run() {
        if (window)
            window->setEvents(nullptr);
    }
    MainView& view() { return *rig.ctx->view; }

    TestRig rig;
    std::unique_ptr<MainWindow> window;
    std::unique_ptr<frmMainEvents> events;
    std::unique_ptr<User> user;
};

// The same steps on either view; what the view reports after each.
QStringList Scenario(bool onWindow) {
    Run run(onWindow);
    AppContext& ctx = *run.rig.ctx;
    User& user = *run.user;
    QStringList seen;
    auto step = [&](const char* name, const std::function<void()>& act) {
        act();
        seen += Snapshot(QLatin1String(name), run.view());
    };
    step("start", [&] { run.rig.start(); });
    step("accounts page", [&] { user.click("tbrMainButtons/Accounts"); });
    step("second account", [&] { user.selectTab(TabStrip::Accounts, 2); });
    step("email page", [&] { user.click("tbrMainButtons/Email"); });
    step("check all", [&] { user.click(Element(ctl::tbrButtons, ctl::CheckAll)); });
    step("first account", [&] { user.selectTab(TabStrip::Email, 1); });
    step("second row", [&] { user.clickRow(2); });
    step("progress", [&] {
        run.view().status().setProgressVisible(true);
        run.view().status().setProgress(0, 10, 4);
        run.view().status().setToolTip("Retrieving");
    });
    step("interface held", [&] { SetCheckingInterface(ctx, false, true); });
    step("page switch refused", [&] { user.click("tbrMainButtons/Rules"); });
    step("interface back", [&] { SetCheckingInterface(ctx, true, false); });
    step("rules page", [&] { user.click("tbrMainButtons/Rules"); });
    step("to the tray", [&] { user.click(Element(ctl::tbrButtons, ctl::Close)); });
    step("back from the tray", [&] { user.click(ctl::mnuTrayShow); });
    return seen;
}

} // namespace

// The headless view is what the command line and the logic's tests run on;
// the real window must report the same for the same run.
class ViewContractTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void bothViewsReportTheSame();
    void refusalsAreTheSame_data();
    void refusalsAreTheSame();
    void numbersBeyondAreIgnoredAlike_data();
    void numbersBeyondAreIgnoredAlike();
};

void ViewContractTest::bothViewsReportTheSame() {
    const QStringList headless = Scenario(false);
    const QStringList window = Scenario(true);
    // The run must have done something worth comparing.
    QVERIFY(headless.contains("check all: list rows=1 current=0"));
    QVERIFY(headless.contains("interface held: tbrMainButtons enabled=1 visible=1 tip="));
    QCOMPARE(window, headless);
}

void ViewContractTest::refusalsAreTheSame_data() {
    QTest::addColumn<std::function<void(MainView&)>>("op");
    auto row = [](const char* name, std::function<void(MainView&)> op) {
        QTest::newRow(name) << op;
    };
    // Names the window does not have.
    row("unknown: enabled", [](MainView& v) { v.setEnabled("cmdNoSuchButton", false); });
    row("unknown: visible", [](MainView& v) { v.isVisible(Element(ctl::fraMain, 4)); });
    row("unknown: caption", [](MainView& v) { v.setCaption(Element(ctl::tbrButtons, 15), "x"); });
    row("unknown: tip", [](MainView& v) { v.toolTip("mnuTrayNothing"); });
    row("unknown: focus", [](MainView& v) { v.setFocus(Button(ctl::lvwEmail, "Attachments")); });
    row("unknown: header", [](MainView& v) { v.image(Button(ctl::lvwEmail, "from")); });
    // Operations the control's kind lacks.
    row("tab strip caption", [](MainView& v) { v.setCaption(ctl::TabStripEmail, "x"); });
    row("list caption", [](MainView& v) { v.caption(ctl::lvwEmail); });
    row("frame image", [](MainView& v) { v.setImage(Element(ctl::fraMain, 0), "Help"); });
    row("toolbar image", [](MainView& v) { v.image(ctl::tbrEmail); });
    row("label text", [](MainView& v) { v.setText(ctl::lblBanner, "x"); });
    row("button text", [](MainView& v) { v.text(Element(ctl::tbrButtons, 0)); });
    row("label max length", [](MainView& v) { v.setMaxLength(ctl::lblBanner, 3); });
    row("button check", [](MainView& v) { v.setChecked(Element(ctl::tbrButtons, 0), 1); });
    row("menu check", [](MainView& v) { v.checked(ctl::mnuTrayShow); });
    row("buttons as options", [](MainView& v) { v.setOptionIndex(ctl::tbrButtons, 0); });
    row("frames as options", [](MainView& v) { v.optionIndex(ctl::fraMain); });
    row("list items", [](MainView& v) { v.setItems(ctl::lvwEmail, {"a"}); });
    row("tab strip items", [](MainView& v) { v.items(ctl::TabStripAcnts); });
    row("list index", [](MainView& v) { v.setCurrentIndex(ctl::lvwEmail, 0); });
    row("label range", [](MainView& v) { v.setRange(ctl::lblBanner, 0, 9); });
    row("button colour", [](MainView& v) { v.setColour(Element(ctl::tbrButtons, 0), 0xFF); });
    row("menu colour", [](MainView& v) { v.colour(ctl::mnuTrayShow); });
    // The status bar has five panels.
    row("panel 0", [](MainView& v) { v.status().setPanelText(0, "x"); });
    row("panel 6", [](MainView& v) { v.status().panelPicture(6); });
}

void ViewContractTest::refusalsAreTheSame() {
    QFETCH(std::function<void(MainView&)>, op);
    StateView state;
    MainWindow window;
    QVERIFY_THROWS_EXCEPTION(UnknownControl, op(state));
    QVERIFY_THROWS_EXCEPTION(UnknownControl, op(window));
}

void ViewContractTest::numbersBeyondAreIgnoredAlike_data() {
    QTest::addColumn<std::function<QString(MainView&)>>("op");
    auto row = [](const char* name, std::function<QString(MainView&)> op) {
        QTest::newRow(name) << op;
    };
    row("select tab 3 of 2", [](MainView& v) {
        v.tabs(TabStrip::Email).select(3);
        return QString::number(v.tabs(TabStrip::Email).selected());
    });
    row("tab 0", [](MainView& v) {
        v.tabs(TabStrip::Accounts).setCaption(0, "x");
        v.tabs(TabStrip::Accounts).setImage(0, "MailYes");
        return v.tabs(TabStrip::Accounts).caption(0) + v.tabs(TabStrip::Accounts).image(0);
    });
    row("row beyond the list", [](MainView& v) {
        const ListRow r = v.list().row(3);
        return r.picture + r.cells.join('|') + Flag(r.bold);
    });
    row("select a row beyond", [](MainView& v) {
        v.list().setRowSelected(3, true);
        return Flag(v.list().isRowSelected(3)) + Flag(v.list().isRowSelected(1));
    });
    row("current row beyond", [](MainView& v) {
        v.list().setCurrentRow(2);
        v.list().setCurrentRow(7);
        return QString::number(v.list().currentRow());
    });
}

// Tab and row numbers beyond the surface are let pass and read blank.
void ViewContractTest::numbersBeyondAreIgnoredAlike() {
    QFETCH(std::function<QString(MainView&)>, op);
    StateView state;
    MainWindow window;
    QStringList results;
    for (MainView* v : {static_cast<MainView*>(&state), static_cast<MainView*>(&window)}) {
        for (const char* name : {"Home", "Work"})
            v->tabs(TabStrip::Email).addTab(name, "MailNo");
        v->tabs(TabStrip::Accounts).addTab("Home", "MailNo");
        for (int n = 1; n <= 2; ++n)
            v->list().addRow({"New", {"f", "t", "s", "d", "1 KB"}, true});
        results.append(op(*v));
    }
    QCOMPARE(results[1], results[0]);
}

QTEST_MAIN(ViewContractTest)
#include "ViewContractTest.moc"
