#include "platform/qt/widgets/MainWindow.h"
#include "app/frmMainEvents.h"
#include "platform/qt/widgets/MessageWindow.h"
#include "support/TestRig.h"

#include <QAction>
#include <QLabel>
#include <QStackedWidget>
#include <QTabBar>
#include <QToolButton>
#include <QtTest>

using namespace velmora;

// The real main window on the offscreen platform, driven by clicks.
class MainWindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void pagesSwitchWithTheirBanners_data();
    void pagesSwitchWithTheirBanners();
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
    auto* pages = w.findChild<QStackedWidget*>();
    auto* tabs = w.findChild<QTabBar*>("TabStripEmail");
    auto* noAccounts = w.findChild<QLabel*>("fraNoAcntsBanner");
    QCOMPARE(tabs->count(), accounts == 0 ? 1 : accounts);
    if (accounts > 0)
        QCOMPARE(tabs->tabText(1), QString("Work"));

    auto* email = w.findChild<QAction*>("tbrMainButtons/Email");
    QCOMPARE(email->text(), QString("Email        "));
    QCOMPARE(email->toolTip(), QString("Email Messages"));

    const QStringList names = {"Email", "Accounts", "Rules", "Options"};
    for (int page : {1, 2, 3, 0}) {
        trigger(w, "tbrMainButtons/" + names[page]);
        QCOMPARE(pages->currentIndex(), page);
        QCOMPARE(banner(w), names[page]);
        // The Options page can be used with no account, so it has no banner.
        QCOMPARE(!noAccounts->isHidden(), accounts == 0 && page < 3);
    }
    auto* checkAll = w.findChild<QToolButton*>("tbrButtons(3)");
    QCOMPARE(checkAll->text(), QString("Check All          "));
    QCOMPARE(checkAll->isEnabled(), accounts > 0);
    QVERIFY(w.findChild<QToolButton*>("tbrButtons(1)")->isHidden());
}

void MainWindowTest::goesToTrayComesBackAndQuits() {
    auto running = start(2);
    QVERIFY(running);
    MainWindow& w = running->window;
    trigger(w, "tbrMainButtons/Rules");

    w.findChild<QToolButton*>("tbrButtons(2)")->click(); // Close: to the tray
    QVERIFY(!w.isVisible());
    QCOMPARE(w.windowState(), WindowState::Minimized);

    trigger(w, "mnuTrayShow");
    QVERIFY(w.isVisible());
    QCOMPARE(w.windowState(), WindowState::Normal);
    QCOMPARE(banner(w), QString("Rules")); // the page it left

    running->rig.ctx->options.SortColumnLastUsed = "Size";
    trigger(w, "mnuTrayQuitApplication");
    QVERIFY(!w.isVisible());
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
    rig.ctx->NextCheckTime = "01/01/00-00:00";
    rig.mailbox("Home").mail.append("a");
    rig.ctx->tmrMailTime->setEnabled(true);
    Manual(rig.ctx->tmrMailTime).fire();

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
        Manual(rig.ctx->frmMessage.timer).fire();
    QVERIFY(!rig.ctx->AutoMessageOpen);
    QPointer<QWidget> gone(message);
    QTRY_VERIFY(gone.isNull());
}

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
