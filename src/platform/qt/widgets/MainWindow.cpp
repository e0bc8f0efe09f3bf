#include "platform/qt/widgets/MainWindow.h"

#include "platform/Controls.h"
#include "platform/qt/widgets/AccountsPage.h"
#include "platform/qt/widgets/EmailPage.h"
#include "platform/qt/widgets/OptionsPage.h"
#include "platform/qt/widgets/PageParts.h"
#include "platform/qt/widgets/Pictures.h"
#include "platform/qt/widgets/RulesPage.h"
#include "platform/qt/widgets/WidgetStatusBar.h"
#include "platform/qt/widgets/WidgetTray.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace velmora {

namespace {

const QSize kDesignSize(900, 560);
constexpr int kMainIcon = 32;

} // namespace

MainWindow::MainWindow() {
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("Velmora"));
    setWindowIcon(Pictures::Keyed(QStringLiteral("Email")));
    // Never larger than the screen it opens on, whatever the scale.
    designSize = kDesignSize;
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        designSize = designSize.boundedTo(screen->availableSize() * 0.9);
    resize(designSize);

    // Parks the focus away from every other control.
    auto* central = new QWidget;
    central->setFocusPolicy(Qt::ClickFocus);
    central->setAccessibleName(QStringLiteral("Velmora"));
    add(central, ctl::cmdTakeFocus);
    auto* columns = new QHBoxLayout(central);
    columns->addWidget(buildMainButtons());

    auto* right = new QVBoxLayout;
    right->addWidget(buildBanners());
    email = std::make_unique<EmailPage>(*this);
    accounts = std::make_unique<AccountsPage>(*this);
    rules = std::make_unique<RulesPage>(*this);
    options = std::make_unique<OptionsPage>(*this);
    // The logic shows one page at a time; the others take no room.
    for (QWidget* page : {email->frame(), accounts->frame(), rules->frame(), options->frame()})
        right->addWidget(page, 1);
    columns->addLayout(right, 1);
    setCentralWidget(central);
    coverUnderBanner(accounts->covered());

    statusPanels = std::make_unique<WidgetStatusBar>(statusBar(), report());
    trayEntry = std::make_unique<WidgetTray>(*this, this);

    if (const QStringList gaps = missing(); !gaps.isEmpty())
        throw UnknownControl(QStringLiteral("the window lacks ") + gaps.join(QLatin1String(", ")));
}

MainWindow::~MainWindow() {
    setBusyCursor(false);
}

QWidget* MainWindow::buildMainButtons() {
    QBoxLayout* layout = nullptr;
    auto* frame = new QWidget;
    add(frame, ctl::fraMainButtons);
    layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* bar = new QToolBar;
    bar->setOrientation(Qt::Vertical);
    bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    bar->setIconSize(QSize(kMainIcon, kMainIcon));
    bar->setMovable(false);
    bar->setFloatable(false);
    add(bar, ctl::tbrMainButtons);
    for (const MainButton& b : MainButtonTable()) {
        // The window's own buttons stand apart from the pages'.
        if (b.key == QLatin1String("Quit")) {
            auto* gap = new QWidget;
            gap->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
            bar->addWidget(gap);
        }
        QAction* action = bar->addAction(b.key);
        add(action, Button(ctl::tbrMainButtons, b.key));
        PageParts::KeyboardReachable(bar, action);
    }
    layout->addWidget(bar, 1);
    return frame;
}

QWidget* MainWindow::buildBanners() {
    auto* holder = new QWidget;
    auto* layout = new QVBoxLayout(holder);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* banner = new QLabel;
    QFont font = banner->font();
    font.setPointSizeF(font.pointSizeF() * 1.6);
    font.setBold(true);
    banner->setFont(font);
    add(banner, ctl::lblBanner);
    layout->addWidget(banner);

    auto* noAccounts = new QWidget;
    // A note that stands out in light and dark themes alike.
    QPalette note = noAccounts->palette();
    note.setColor(QPalette::Window, QColor(0xff, 0xf4, 0xc2));
    note.setColor(QPalette::WindowText, QColor(0x30, 0x28, 0x00));
    noAccounts->setPalette(note);
    noAccounts->setAutoFillBackground(true);
    add(noAccounts, ctl::fraNoAcntsBanner);
    auto* noteLayout = new QVBoxLayout(noAccounts);
    auto* noteText = new QLabel;
    noteText->setAlignment(Qt::AlignCenter);
    noteText->setWordWrap(true);
    add(noteText, ctl::lblNoAcntsBanner);
    noteLayout->addWidget(noteText);
    layout->addWidget(noAccounts);
    return holder;
}

namespace {

// While the no-accounts banner shows, the fields it stands for take no
// clicks and no keyboard focus.
class Cover : public QObject {
public:
    Cover(QWidget* banner, QWidget* covered) : QObject(banner), covered(covered) {
        covered->setEnabled(banner->isHidden());
        banner->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::ShowToParent)
            covered->setEnabled(false);
        else if (event->type() == QEvent::HideToParent)
            covered->setEnabled(true);
        return false;
    }

private:
    QWidget* covered;
};

} // namespace

void MainWindow::coverUnderBanner(QWidget* covered) {
    new Cover(qobject_cast<QWidget*>(WidgetControls::find(ctl::fraNoAcntsBanner)), covered);
}

TabStripView& MainWindow::tabs(TabStrip strip) {
    if (strip == TabStrip::Email)
        return email->tabs;
    return accounts->tabs;
}

MessageListView& MainWindow::list() {
    return email->list;
}

StatusBarView& MainWindow::status() {
    return *statusPanels;
}

TrayView& MainWindow::tray() {
    return *trayEntry;
}

WindowState MainWindow::windowState() const {
    const Qt::WindowStates state = QMainWindow::windowState();
    if (state & Qt::WindowMinimized)
        return WindowState::Minimized;
    if (state & Qt::WindowMaximized)
        return WindowState::Maximized;
    return WindowState::Normal;
}

void MainWindow::setWindowState(WindowState state) {
    // The logic runs its own resize handling after changing the state.
    applyingState = true;
    switch (state) {
    case WindowState::Normal:
        QMainWindow::setWindowState(Qt::WindowNoState);
        break;
    case WindowState::Minimized:
        QMainWindow::setWindowState(QMainWindow::windowState() | Qt::WindowMinimized);
        break;
    case WindowState::Maximized:
        QMainWindow::setWindowState(Qt::WindowMaximized);
        break;
    }
    applyingState = false;
}

void MainWindow::restoreDesignSize() {
    applyingState = true;
    resize(designSize);
    applyingState = false;
}

void MainWindow::showWindow() {
    applyingState = true;
    show();
    raise();
    activateWindow();
    applyingState = false;
}

void MainWindow::hideWindow() {
    applyingState = true;
    if (!trayEntry->isAvailable())
        showMinimized();
    else
        hide();
    applyingState = false;
}

void MainWindow::setBusyCursor(bool on) {
    if (on == busy)
        return;
    busy = on;
    if (on)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

void MainWindow::setTaskbarFallback(bool on) {
    trayEntry->setNeedsHost(on);
}

void MainWindow::popUpMenu(const QString& name) {
    Expect(name, {ControlKind::Menu});
    auto* menu = qobject_cast<QMenu*>(WidgetControls::find(name));
    // The tray's menu belongs to its entry: the tray host, or the toolkit
    // on its behalf, opens it on the same right click.
    if (name == ctl::mnuTrayPopMenu || menu->isVisible())
        return;
    menu->popup(QCursor::pos());
}

void MainWindow::unloadWindow() {
    unloaded = true;
    trayEntry->remove();
    hide();
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (unloaded) {
        event->accept();
        return;
    }
    bool cancel = false;
    report()([&cancel](MainViewEvents& events) { events.Unload(cancel); });
    if (cancel) {
        event->ignore();
        return;
    }
    event->accept();
    unloadWindow();
}

void MainWindow::resized() {
    if (!applyingState)
        report()([](MainViewEvents& events) { events.Resize(); });
}

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        resized();
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    if (QMainWindow::isVisible())
        resized();
}

} // namespace velmora
