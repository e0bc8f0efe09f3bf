#include "platform/qt/widgets/MainWindow.h"
#include "app/frmMainEvents.h"
#include "platform/qt/widgets/BgrColour.h"
#include "platform/qt/widgets/EditValues.h"
#include "platform/qt/widgets/MessageWindow.h"
#include "support/ManualTimer.h"
#include "support/TestRig.h"

#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSpinBox>
#include <QStatusBar>
#include <QSystemTrayIcon>
#include <QTabBar>
#include <QTableWidget>
#include <QToolBar>
#include <QToolButton>
#include <QtTest>

using namespace velmora;

namespace {

// Writes down each event as a line, for comparing.
struct Recorder : MainViewEvents {
    void MainButtonClick(const QString& key) override { seen << "MainButtonClick " + key; }
    void PageButtonClick(int index) override { seen << QString("PageButtonClick %1").arg(index); }
    void ToolbarButtonClick(const QString& bar, const QString& key) override {
        seen << "ToolbarButtonClick " + bar + " " + key;
    }
    void MenuClick(const QString& entry) override { seen << "MenuClick " + entry; }
    void TrayClick(MouseButton b) override {
        seen << (b == MouseButton::Left ? "TrayClick Left" : "TrayClick Right");
    }
    void TabClick(const QString& strip) override { seen << "TabClick " + strip; }
    void TabPress(const QString& strip, int tab) override {
        seen << QString("TabPress %1 %2").arg(strip).arg(tab);
    }
    void TabRelease(const QString& strip) override { seen << "TabRelease " + strip; }
    void TabDrop(const QString& strip, int from, int to) override {
        seen << QString("TabDrop %1 %2 %3").arg(strip).arg(from).arg(to);
    }
    void LinkClick(const QString& label) override { seen << "LinkClick " + label; }
    void ListRowClick(int row) override { seen << QString("ListRowClick %1").arg(row); }
    void ListDoubleClick(int row) override { seen << QString("ListDoubleClick %1").arg(row); }
    void ListHeaderClick(int column) override { seen << QString("ListHeaderClick %1").arg(column); }
    void ListContextMenu(int row) override { seen << QString("ListContextMenu %1").arg(row); }
    // Moves come with every click the tests make; they are not what is compared.
    void ListPointer(int /*row*/, int /*x*/) override {}
    // A click gives the list the focus as well; the tables below leave it out.
    void FocusArrived(const QString& /*control*/) override {}
    void FramePointer(const QString& frame) override { seen << "FramePointer " + frame; }
    void ValueChanged(const QString& control) override { seen << "ValueChanged " + control; }
    void StatusBarPointer(int panel) override { seen << QString("StatusBarPointer %1").arg(panel); }
    void Resize() override { seen << "Resize"; }
    void Unload(bool& cancel) override {
        seen << "Unload";
        cancel = true;
    }
    QStringList seen;
};

// What an editing widget holds, as one text.
QString Value(QWidget* w) {
    if (qobject_cast<QAbstractButton*>(w))
        return EditValues::Checked(w) ? "1" : "0";
    if (qobject_cast<QComboBox*>(w) || qobject_cast<QListWidget*>(w))
        return QString("%1:%2").arg(EditValues::CurrentIndex(w)).arg(EditValues::Text(w));
    return EditValues::Text(w);
}

struct EditCase {
    const char* name;
    std::function<QWidget*()> make;
    std::function<void(QWidget*)> setByLogic;
    QString afterLogic;
    std::function<void(QWidget*)> editByUser;
    QString afterUser;
    int userChanges;
};

const QVector<EditCase>& EditCases() {
    using namespace EditValues;
    static const QVector<EditCase> cases = {
        {"line edit", [] { return new QLineEdit; }, [](QWidget* w) { SetText(w, "abc"); }, "abc",
         [](QWidget* w) { QTest::keyClicks(w, "d"); }, "abcd", 1},
        {"line edit at its limit", [] { return new QLineEdit; },
         [](QWidget* w) {
             SetMaxLength(w, 3);
             SetText(w, "abcdef");
         },
         "abc", [](QWidget* w) { QTest::keyClicks(w, "x"); }, "abc", 0},
        {"plain text at its limit", [] { return new QPlainTextEdit; },
         [](QWidget* w) {
             SetMaxLength(w, 4);
             SetText(w, "hello");
         },
         "hell", [](QWidget* w) { QTest::keyClicks(w, "!"); }, "!hell", 1},
        {"check box", [] { return new QCheckBox("Sounds"); },
         [](QWidget* w) { SetChecked(w, true); }, "1",
         [](QWidget* w) { QTest::mouseClick(w, Qt::LeftButton); }, "0", 1},
        {"option button", [] { return new QRadioButton("Hourly"); },
         [](QWidget* w) { SetChecked(w, true); }, "1",
         [](QWidget* w) { QTest::mouseClick(w, Qt::LeftButton); }, "1", 1},
        {"combo box", [] { return new QComboBox; },
         [](QWidget* w) {
             SetItems(w, {"a", "b", "c"});
             SetCurrentIndex(w, 1);
         },
         "1:b", [](QWidget* w) { QTest::keyClick(w, Qt::Key_Down); }, "2:c", 1},
        {"new items choose none", [] { return new QComboBox; },
         [](QWidget* w) {
             SetItems(w, {"a", "b"});
             SetCurrentIndex(w, 1);
             SetItems(w, {"c", "d"});
         },
         "-1:", [](QWidget*) {}, "-1:", 0},
        {"an index beyond chooses none", [] { return new QComboBox; },
         [](QWidget* w) {
             SetItems(w, {"a", "b"});
             SetCurrentIndex(w, 0);
             SetCurrentIndex(w, 2);
         },
         "-1:", [](QWidget*) {}, "-1:", 0},
        {"list box", [] { return new QListWidget; },
         [](QWidget* w) {
             SetItems(w, {"x", "y"});
             SetCurrentIndex(w, 0);
         },
         "0:x", [](QWidget* w) { QTest::keyClick(w, Qt::Key_Down); }, "1:y", 1},
        {"spin box clamps", [] { return new QSpinBox; },
         [](QWidget* w) {
             SetRange(w, 1, 10);
             SetText(w, "50");
         },
         "10", [](QWidget* w) { QTest::keyClick(w, Qt::Key_Down); }, "9", 1},
    };
    return cases;
}

} // namespace

// The real main window on the offscreen platform.
class MainWindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyControlIsOneNamedObject();
    void userActionsArriveAsTypedEvents_data();
    void userActionsArriveAsTypedEvents();
    void editingWidgetsByType_data();
    void editingWidgetsByType();
    void coloursKeepTheirByteOrder_data();
    void coloursKeepTheirByteOrder();
    void otherWidgetsAreRefused();
    void captionsShowTrimmedAndAreSpoken();
    void pagesSwitchWithTheirBanners_data();
    void pagesSwitchWithTheirBanners();
    void columnsFillTheListFromTheStart();
    void goesToTrayComesBackAndQuits();
    void closeBoxEndsProgramWhenOptionOff();
    void timedCheckShowsTheMessageWithItsCountdown();

private:
    struct Running {
        TestRig rig;
        MainWindow window;
        std::unique_ptr<frmMainEvents> events;
    };
    static std::unique_ptr<Running> start(int accounts);
    static void trigger(MainWindow& w, const QString& name) {
        auto* action = w.findChild<QAction*>(name);
        QVERIFY2(action, qPrintable(name));
        action->trigger();
    }
    // A mouse click on the button showing the action.
    static void click(MainWindow& w, const QString& name) {
        auto* action = w.findChild<QAction*>(name);
        QVERIFY2(action, qPrintable(name));
        auto* bar = qobject_cast<QToolBar*>(action->parent());
        QTest::mouseClick(bar->widgetForAction(action), Qt::LeftButton);
    }
    static QToolButton* shown(MainWindow& w, const QString& name) {
        auto* action = w.findChild<QAction*>(name);
        return qobject_cast<QToolButton*>(
            qobject_cast<QToolBar*>(action->parent())->widgetForAction(action));
    }
    static QString banner(MainWindow& w) { return w.findChild<QLabel*>("lblBanner")->text(); }
};

std::unique_ptr<MainWindowTest::Running> MainWindowTest::start(int accounts) {
    auto running = std::make_unique<Running>();
    for (int n = 1; n <= accounts; ++n)
        running->rig.addAccount(n, n == 1 ? "Home" : "Work");
    running->rig.settings.set("Settings\\FirstUse", "1");
    running->window.setTaskbarFallback(false);
    running->rig.ctx->view = &running->window;
    running->events = std::make_unique<frmMainEvents>(*running->rig.ctx);
    running->window.setEvents(running->events.get());
    if (!running->rig.start())
        return nullptr;
    return running;
}

// Screen readers and tests find each control by its name, and the logic
// reaches no other.
void MainWindowTest::everyControlIsOneNamedObject() {
    MainWindow w;
    for (const ControlInfo& c : ControlTable()) {
        const QList<QObject*> found = w.findChildren<QObject*>(c.name);
        QVERIFY2(found.size() == 1, qPrintable(c.name));
        QObject* o = found.first();
        const bool tray = c.kind == ControlKind::Tray && qobject_cast<QSystemTrayIcon*>(o);
        QVERIFY2(qobject_cast<QWidget*>(o) || qobject_cast<QAction*>(o) || tray,
                 qPrintable(c.name));
    }
}

void MainWindowTest::userActionsArriveAsTypedEvents_data() {
    QTest::addColumn<std::function<void(MainWindow&)>>("act");
    QTest::addColumn<QStringList>("expected");
    using Act = std::function<void(MainWindow&)>;
    auto table = [](MainWindow& w) {
        return w.findChild<QTableWidget*>("lvwEmail");
    };
    auto rowPoint = [table](MainWindow& w, int row) {
        return table(w)->visualRect(table(w)->model()->index(row - 1, 1)).center();
    };
    auto emptyPoint = [table](MainWindow& w) {
        return QPoint(20, table(w)->viewport()->height() - 5);
    };
    auto contextAt = [table](MainWindow& w, QContextMenuEvent::Reason reason, QPoint at) {
        QContextMenuEvent event(reason, at, table(w)->viewport()->mapToGlobal(at));
        QApplication::sendEvent(table(w)->viewport(), &event);
    };
    auto row = [](const char* name, Act act, const QStringList& expected) {
        QTest::newRow(name) << act << expected;
    };
    row("main button", [](MainWindow& w) { trigger(w, "tbrMainButtons/Rules"); },
        {"MainButtonClick Rules"});
    row("page button", [](MainWindow& w) { click(w, "tbrButtons(3)"); }, {"PageButtonClick 3"});
    row("toolbar button", [](MainWindow& w) { click(w, "tbrEmail/EmailCheck"); },
        {"ToolbarButtonClick tbrEmail EmailCheck"});
    row("tray menu entry", [](MainWindow& w) { trigger(w, "mnuTrayCheckAll"); },
        {"MenuClick mnuTrayCheckAll"});
    row("list menu entry", [](MainWindow& w) { trigger(w, "mnuEmailOpen"); },
        {"MenuClick mnuEmailOpen"});
    row("tray left click",
        [](MainWindow& w) {
            Q_EMIT w.findChild<QSystemTrayIcon*>("TrayIcon")->activated(QSystemTrayIcon::Trigger);
        },
        {"TrayClick Left"});
    row("tray right click",
        [](MainWindow& w) {
            Q_EMIT w.findChild<QSystemTrayIcon*>("TrayIcon")->activated(QSystemTrayIcon::Context);
        },
        {"TrayClick Right"});
    row("tab by the user",
        [](MainWindow& w) {
            auto* bar = w.findChild<QTabBar*>("TabStripEmail");
            QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(1).center());
        },
        {"TabPress TabStripEmail 2", "TabClick TabStripEmail", "TabRelease TabStripEmail"});
    row("tab by the logic", [](MainWindow& w) { w.tabs(TabStrip::Email).select(2); }, {});
    row("row click",
        [=](MainWindow& w) {
            QTest::mouseClick(table(w)->viewport(), Qt::LeftButton, {}, rowPoint(w, 2));
        },
        {"ListRowClick 2"});
    row("click below the rows",
        [=](MainWindow& w) {
            QTest::mouseClick(table(w)->viewport(), Qt::LeftButton, {}, emptyPoint(w));
        },
        {"ListRowClick 0"});
    row("double click",
        [=](MainWindow& w) {
            // As the mouse sends it: a click, then the double click and its release.
            QWidget* area = table(w)->viewport();
            QTest::mouseClick(area, Qt::LeftButton, {}, rowPoint(w, 3));
            QTest::mouseDClick(area, Qt::LeftButton, {}, rowPoint(w, 3));
            QTest::mouseRelease(area, Qt::LeftButton, {}, rowPoint(w, 3));
        },
        {"ListRowClick 3", "ListDoubleClick 3"});
    row("header click",
        [=](MainWindow& w) {
            QHeaderView* header = table(w)->horizontalHeader();
            const QPoint at(header->sectionViewportPosition(2) + 10, header->height() / 2);
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, at);
        },
        {"ListHeaderClick 3"});
    row("header action", [](MainWindow& w) { trigger(w, "lvwEmail/Size"); }, {"ListHeaderClick 5"});
    row("right click on a row",
        [=](MainWindow& w) { contextAt(w, QContextMenuEvent::Mouse, rowPoint(w, 1)); },
        {"ListContextMenu 1"});
    row("right click below the rows",
        [=](MainWindow& w) { contextAt(w, QContextMenuEvent::Mouse, emptyPoint(w)); },
        {"ListContextMenu 0"});
    row("menu key",
        [=](MainWindow& w) {
            w.list().setCurrentRow(2);
            contextAt(w, QContextMenuEvent::Keyboard, QPoint(0, 0));
        },
        {"ListContextMenu 2"});
    row("arrow key",
        [=](MainWindow& w) {
            w.list().setCurrentRow(1);
            QTest::keyClick(table(w), Qt::Key_Down);
        },
        {"ListRowClick 2"});
    row("enter key",
        [=](MainWindow& w) {
            w.list().setCurrentRow(2);
            QTest::keyClick(table(w), Qt::Key_Return);
        },
        {"ListDoubleClick 2"});
    // A pointer move on the status bar, at a point of `widget`.
    const auto pointer = [](QWidget* widget, QPoint at) {
        QMouseEvent move(QEvent::MouseMove, at, widget->mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QApplication::sendEvent(widget, &move);
    };
    row("pointer on panel 3",
        [=](MainWindow& w) {
            auto* panel = w.statusBar()->findChild<QWidget*>("StatusPanel3");
            pointer(panel, panel->rect().center());
        },
        {"StatusBarPointer 3"});
    row("pointer right of the last panel",
        [=](MainWindow& w) {
            auto* last = w.statusBar()->findChild<QWidget*>("StatusPanel5");
            pointer(w.statusBar(), QPoint(last->geometry().right() + 2, 2));
        },
        {"StatusBarPointer 0"});
    row("close box", [](MainWindow& w) { QVERIFY(!w.close()); }, {"Unload"});
    row("minimised by the user",
        [](MainWindow& w) { w.QMainWindow::setWindowState(Qt::WindowMinimized); }, {"Resize"});
}

void MainWindowTest::userActionsArriveAsTypedEvents() {
    QFETCH(std::function<void(MainWindow&)>, act);
    QFETCH(QStringList, expected);
    MainWindow w;
    w.setTaskbarFallback(false);
    for (const char* name : {"Home", "Work"})
        w.tabs(TabStrip::Email).addTab(name, "MailNo");
    for (int page = 1; page < 4; ++page)
        w.setVisible(Element("fraMain", page), false);
    for (int n = 1; n <= 3; ++n)
        w.list().addRow({"Normal", {"a", "b", QString("s%1").arg(n), "d", "1 KB"}, false});
    w.showWindow();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    Recorder recorder;
    w.setEvents(&recorder);
    act(w);
    QCOMPARE(recorder.seen, expected);
    w.setEvents(nullptr);
}

void MainWindowTest::editingWidgetsByType_data() {
    QTest::addColumn<int>("index");
    for (int i = 0; i < EditCases().size(); ++i)
        QTest::newRow(EditCases()[i].name) << i;
}

// The logic's values raise nothing; the user's edits are reported once.
void MainWindowTest::editingWidgetsByType() {
    QFETCH(int, index);
    const EditCase& c = EditCases()[index];
    std::unique_ptr<QWidget> w(c.make());
    int changes = 0;
    EditValues::WatchUserEdits(w.get(), [&changes] { ++changes; });
    w->show();
    QVERIFY(QTest::qWaitForWindowExposed(w.get()));
    w->setFocus();
    c.setByLogic(w.get());
    QCOMPARE(Value(w.get()), c.afterLogic);
    QCOMPARE(changes, 0);
    c.editByUser(w.get());
    QCOMPARE(Value(w.get()), c.afterUser);
    QCOMPARE(changes, c.userChanges);
}

void MainWindowTest::coloursKeepTheirByteOrder_data() {
    QTest::addColumn<quint32>("bgr");
    QTest::addColumn<QColor>("shown");
    QTest::newRow("red") << quint32(0x000000FF) << QColor(255, 0, 0);
    QTest::newRow("blue") << quint32(0x00FF0000) << QColor(0, 0, 255);
    QTest::newRow("mixed") << quint32(0x00336699) << QColor(0x99, 0x66, 0x33);
    QTest::newRow("top byte dropped") << quint32(0xFF123456) << QColor(0x56, 0x34, 0x12);
}

void MainWindowTest::coloursKeepTheirByteOrder() {
    QFETCH(quint32, bgr);
    QFETCH(QColor, shown);
    QLabel box;
    EditValues::SetColour(&box, bgr);
    QCOMPARE(box.palette().color(box.backgroundRole()), shown);
    QVERIFY(box.autoFillBackground());
    QCOMPARE(EditValues::Colour(&box), bgr & 0x00FFFFFFu);
    QCOMPARE(ToBgr(ToQColor(bgr)), bgr & 0x00FFFFFFu);
}

// A control of the wrong type is a fault of the window, never ignored.
void MainWindowTest::otherWidgetsAreRefused() {
    QLabel label;
    QLineEdit edit;
    QVERIFY_THROWS_EXCEPTION(UnknownControl, EditValues::SetText(&label, "x"));
    QVERIFY_THROWS_EXCEPTION(UnknownControl, EditValues::SetChecked(&edit, true));
    QVERIFY_THROWS_EXCEPTION(UnknownControl, EditValues::SetItems(&edit, {"a"}));
    QVERIFY_THROWS_EXCEPTION(UnknownControl, EditValues::SetRange(&label, 0, 1));
}

// Captions padded for width show trimmed; what shows is what a screen
// reader says, and the list reads as a table with its column headers.
void MainWindowTest::captionsShowTrimmedAndAreSpoken() {
    auto running = start(2);
    QVERIFY(running);
    MainWindow& w = running->window;
    int spoken = 0;
    for (const ControlInfo& c : ControlTable()) {
        if (c.kind != ControlKind::Button && c.kind != ControlKind::MenuEntry)
            continue;
        const QString caption = WidgetControls::MenuText(w.caption(c.name)).trimmed();
        QVERIFY2(!caption.isEmpty(), qPrintable(c.name));
        auto* action = w.findChild<QAction*>(c.name);
        QCOMPARE(action->text(), caption);
        // Menu entries are read out through their menu.
        auto* bar = qobject_cast<QToolBar*>(action->parent());
        if (!bar)
            continue;
        QWidget* shown = bar->widgetForAction(action);
        QAccessibleInterface* a = QAccessible::queryAccessibleInterface(shown);
        QCOMPARE(a->text(QAccessible::Name), QString(caption).remove('&'));
        ++spoken;
    }
    QCOMPARE(spoken,
             int(MainButtonTable().size() + PageButtonTable().size() + ToolbarButtonTable().size() +
                 AccountPageButtons().size() + OptionPageButtons().size()));

    QAccessibleInterface* list =
        QAccessible::queryAccessibleInterface(w.findChild<QTableWidget*>("lvwEmail"));
    QCOMPARE(list->role(), QAccessible::Table);
    QCOMPARE(list->text(QAccessible::Name), QString("Messages"));
    QAccessibleTableInterface* table = list->tableInterface();
    QVERIFY(table);
    QCOMPARE(table->columnCount(), int(ListColumns().size()));
    for (int column = 0; column < ListColumns().size(); ++column)
        QCOMPARE(table->columnDescription(column), ListColumns()[column]);

    QAccessibleInterface* tabs =
        QAccessible::queryAccessibleInterface(w.findChild<QTabBar*>("TabStripEmail"));
    QCOMPARE(tabs->child(0)->text(QAccessible::Name), QString("Home"));
    QCOMPARE(tabs->child(1)->text(QAccessible::Name), QString("Work"));
}

void MainWindowTest::pagesSwitchWithTheirBanners_data() {
    QTest::addColumn<int>("accounts");
    QTest::newRow("empty store") << 0;
    QTest::newRow("two accounts") << 2;
}

void MainWindowTest::pagesSwitchWithTheirBanners() {
    QFETCH(int, accounts);
    auto running = start(accounts);
    QVERIFY(running);
    MainWindow& w = running->window;
    QVERIFY(w.isVisible());
    auto* tabs = w.findChild<QTabBar*>("TabStripEmail");
    auto* noAccounts = w.findChild<QWidget*>("fraNoAcntsBanner");
    QCOMPARE(tabs->count(), accounts == 0 ? 1 : accounts);
    if (accounts > 0)
        QCOMPARE(tabs->tabText(1), QString("Work"));
    else
        QCOMPARE(tabs->accessibleTabName(0), QString("No account"));

    const QStringList names = {"Email", "Accounts", "Rules", "Options"};
    for (int page : {1, 2, 3, 0}) {
        trigger(w, "tbrMainButtons/" + names[page]);
        for (int other = 0; other < 4; ++other)
            QCOMPARE(w.findChild<QWidget*>(Element("fraMain", other))->isVisible(), other == page);
        QCOMPARE(banner(w), names[page]);
        // The Options page can be used with no account, so it has no banner.
        QCOMPARE(noAccounts->isVisible(), accounts == 0 && page < 3);
    }
    QCOMPARE(shown(w, "tbrButtons(3)")->isEnabled(), accounts > 0);
    QVERIFY(!shown(w, "tbrButtons(1)")->isVisible());
}

// The logic sizes the columns from the list's width before the window first
// shows; they must fill the list as it then shows, without a scroll bar.
void MainWindowTest::columnsFillTheListFromTheStart() {
    auto running = start(2);
    QVERIFY(running);
    MainWindow& w = running->window;
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    auto* table = w.findChild<QTableWidget*>("lvwEmail");
    const int shown = table->viewport()->width();
    int sum = 0;
    for (int column = 1; column <= 5; ++column)
        sum += w.list().columnWidth(column);
    QVERIFY2(sum <= shown && sum >= shown - shown / 50,
             qPrintable(QString("columns %1, list %2").arg(sum).arg(shown)));
}

void MainWindowTest::goesToTrayComesBackAndQuits() {
    auto running = start(2);
    QVERIFY(running);
    MainWindow& w = running->window;
    trigger(w, "tbrMainButtons/Rules");

    click(w, "tbrButtons(2)"); // Close: to the tray
    QVERIFY(!w.isVisible());
    QCOMPARE(w.windowState(), WindowState::Minimized);

    trigger(w, "mnuTrayShow");
    QVERIFY(w.isVisible());
    QCOMPARE(w.windowState(), WindowState::Normal);
    QCOMPARE(banner(w), QString("Rules")); // the page it left

    running->rig.ctx->options.SortColumnLastUsed = "Size";
    trigger(w, "mnuTrayQuitApplication");
    QVERIFY(!w.isVisible());
    QVERIFY(!w.tray().isPresent());
    QCOMPARE(running->rig.settings.get("Settings\\Options\\SortColumnLastUsed"), QString("Size"));
    QCOMPARE(running->rig.settings.get("Settings\\Options\\SortOrder"), QString("1"));
}

void MainWindowTest::closeBoxEndsProgramWhenOptionOff() {
    auto running = start(1);
    QVERIFY(running);
    running->rig.ctx->options.CloseButton = 0;
    running->rig.ctx->options.RestoreColWidth = 0;
    QVERIFY(running->window.close());
    QVERIFY(running->rig.settings.has("Settings\\Options\\ColFromWidth"));
    QVERIFY(running->rig.settings.has("Settings\\Options\\SortOrder"));
    QVERIFY(running->rig.files.removed.contains("/temp/temporary.msg"));
}

void MainWindowTest::timedCheckShowsTheMessageWithItsCountdown() {
    auto running = start(1);
    QVERIFY(running);
    TestRig& rig = running->rig;
    WidgetWindowFactory windows;
    rig.ctx->svc.windows = &windows;
    rig.ctx->options.UseInterval = 1;
    rig.ctx->options.ShowEmailMsgBox = 1;
    rig.ctx->options.ShowEmail = 2;
    rig.ctx->options.MsgBoxTime = 2;
    rig.ctx->check.NextCheckTime = "01/01/00-00:00";
    rig.mailbox("Home").mail.append("a");
    rig.ctx->check.tmrMailTime->setEnabled(true);
    Manual(rig.ctx->check.tmrMailTime).fire();

    QWidget* message = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w->objectName() == "frmMessage")
            message = w;
    }
    QVERIFY(message);
    QVERIFY(message->isVisible());
    QVERIFY(message->windowFlags() & Qt::WindowStaysOnTopHint);
    QCOMPARE(message->findChild<QLabel*>("lblMsgCountDown")->text(), QString("2"));
    QVERIFY(message->findChild<QLabel*>("lblAutoCheck")->text().startsWith("Next Auto Check at"));
    for (int tick = 0; tick < 3; ++tick)
        Manual(rig.ctx->check.frmMessage.timer).fire();
    QVERIFY(!rig.ctx->shell.AutoMessageOpen);
    QPointer<QWidget> gone(message);
    QTRY_VERIFY(gone.isNull());
}

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
