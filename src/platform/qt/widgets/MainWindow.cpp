#include "platform/qt/widgets/MainWindow.h"

#include "app/Pages.h"
#include "platform/MainViewEvents.h"
#include "platform/qt/widgets/Pictures.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStatusBar>
#include <QSystemTrayIcon>
#include <QTabBar>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace velmora {

namespace {

const QString kPageArray = QStringLiteral("fraMain(");
constexpr int kColumns = 5;
// 3500 twips at the usual 15 twips to the pixel.
constexpr int kMinimumHeight = 233;

// Menu captions carry their picture's key behind "|#".
QString MenuText(const QString& caption) {
    const qsizetype cut = caption.indexOf(QLatin1String("|#"));
    return cut < 0 ? caption : caption.left(cut);
}

QString MenuImage(const QString& caption) {
    const qsizetype cut = caption.indexOf(QLatin1String("|#"));
    return cut < 0 ? QString() : caption.mid(cut + 2);
}

int PageOf(const QString& control) {
    if (!control.startsWith(kPageArray))
        return -1;
    return control.mid(kPageArray.size()).chopped(1).toInt();
}

} // namespace

MainWindow::MainWindow() {
    setObjectName("frmMain");
    setWindowTitle("Velmora");
    designSize = QSize(880, 560);
    resize(designSize);
    setMinimumSize(designSize.width(), kMinimumHeight);

    buildMainButtons();

    auto* central = new QWidget;
    central->setFocusPolicy(Qt::StrongFocus);
    name(central, "cmdTakeFocus");
    auto* layout = new QVBoxLayout(central);
    auto* banner = new QLabel;
    QFont bannerFont = banner->font();
    bannerFont.setPointSizeF(bannerFont.pointSizeF() * 1.6);
    bannerFont.setBold(true);
    banner->setFont(bannerFont);
    name(banner, "lblBanner");
    layout->addWidget(banner);

    auto* noAccounts = new QLabel;
    noAccounts->setAlignment(Qt::AlignCenter);
    noAccounts->setStyleSheet("QLabel { background: #fff4c2; padding: 8px; }");
    name(noAccounts, "fraNoAcntsBanner");
    name(noAccounts, "lblNoAcntsBanner");
    noAccounts->hide();
    layout->addWidget(noAccounts);

    pages = new QStackedWidget;
    for (int page = 0; page < 4; ++page)
        pages->addWidget(buildPage(page));
    layout->addWidget(pages, 1);
    setCentralWidget(central);

    buildStatusBar();
}

MainWindow::~MainWindow() {
    if (busyDepth > 0)
        QApplication::restoreOverrideCursor();
}

void MainWindow::name(QObject* control, const QString& controlName) {
    if (control->objectName().isEmpty())
        control->setObjectName(controlName);
    controls.insert(controlName, control);
}

QObject* MainWindow::find(const QString& control) const {
    return controls.value(control);
}

void MainWindow::click(const QString& control) {
    if (events)
        events->Click(control);
}

void MainWindow::buildMainButtons() {
    auto* bar = addToolBar("Pages");
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    name(bar, "tbrMainButtons");
    name(bar, "fraMainButtons");
    for (const MainButton& b : MainButtonTable()) {
        const QString control = Button("tbrMainButtons", b.key);
        QAction* action = bar->addAction(b.key);
        name(action, control);
        connect(action, &QAction::triggered, this, [this, control] { click(control); });
    }
}

QToolBar* MainWindow::buildToolbar(const QString& toolbar) {
    auto* bar = new QToolBar;
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setIconSize(QSize(20, 20));
    name(bar, toolbar);
    for (const ToolbarButton& b : ToolbarButtonTable()) {
        if (b.toolbar != toolbar)
            continue;
        const QString control = Button(toolbar, b.key);
        QAction* action = bar->addAction(b.key);
        name(action, control);
        connect(action, &QAction::triggered, this, [this, control] { click(control); });
    }
    return bar;
}

QWidget* MainWindow::buildPage(int page) {
    auto* frame = new QWidget;
    name(frame, Element("fraMain", page));
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    QWidget* content = page == 0   ? buildEmailPage()
                       : page == 1 ? buildAccountsPage()
                       : page == 2 ? buildRulesPage()
                                   : new QLabel;
    layout->addWidget(content, 1);

    auto* row = new QWidget;
    name(row, Element("fraButtons", page));
    auto* rowLayout = new QHBoxLayout(row);
    rowLayout->setContentsMargins(0, 0, 0, 0);
    for (const PageButton& b : PageButtonTable()) {
        if (b.page != page)
            continue;
        const QString control = Element("tbrButtons", b.index);
        auto* button = new QToolButton;
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setAutoRaise(true);
        button->setIconSize(QSize(20, 20));
        name(button, control);
        connect(button, &QToolButton::clicked, this, [this, control] { click(control); });
        rowLayout->addWidget(button);
    }
    rowLayout->addStretch(1);
    layout->addWidget(row);
    return frame;
}

QWidget* MainWindow::buildPage(const QString& toolbar, const QString& frame, QVBoxLayout*& layout) {
    auto* page = new QWidget;
    layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    QToolBar* bar = buildToolbar(toolbar);
    name(bar, frame);
    layout->addWidget(bar);
    return page;
}

QTabBar* MainWindow::buildTabStrip(int strip, const QString& control) {
    tabs[strip] = new QTabBar;
    tabs[strip]->setExpanding(false);
    name(tabs[strip], control);
    connect(tabs[strip], &QTabBar::currentChanged, this, [this, control] { click(control); });
    return tabs[strip];
}

QWidget* MainWindow::buildEmailPage() {
    QVBoxLayout* layout = nullptr;
    QWidget* page = buildPage("tbrEmail", "fraEmailToolBar", layout);
    layout->addWidget(buildTabStrip(0, "TabStripEmail"));

    list = new QTreeWidget;
    list->setColumnCount(kColumns);
    list->setHeaderLabels({"From", "To", "Subject", "Date", "Size"});
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->header()->setStretchLastSection(false);
    name(list, "lvwEmail");
    layout->addWidget(list, 1);
    return page;
}

QWidget* MainWindow::buildAccountsPage() {
    QVBoxLayout* layout = nullptr;
    QWidget* page = buildPage("tbrAcnts", "fraAcntToolBar", layout);
    layout->addWidget(buildTabStrip(1, "TabStripAcnts"));
    auto* fields = new QWidget;
    name(fields, "fraAcnt");
    layout->addWidget(fields, 1);
    return page;
}

QWidget* MainWindow::buildRulesPage() {
    QVBoxLayout* layout = nullptr;
    QWidget* page = buildPage("tbrRules", "fraRulesToolbar", layout);
    auto* fileName = new QLabel;
    name(fileName, "lblRulesFileName");
    layout->addWidget(fileName);
    layout->addStretch(1);
    return page;
}

void MainWindow::buildStatusBar() {
    QStatusBar* bar = statusBar();
    name(bar, "StatusBar");
    for (int panel = 1; panel <= 5; ++panel) {
        panels[panel] = new QLabel;
        panels[panel]->setObjectName(QStringLiteral("StatusBar.Panel%1").arg(panel));
        panels[panel]->setMinimumWidth(panel == 1 ? 220 : 120);
        if (panel == 2) {
            progress = new QProgressBar;
            progress->setObjectName("ProgressBar");
            progress->setMaximumWidth(220);
            progress->hide();
            bar->addWidget(progress);
        }
        bar->addWidget(panels[panel], panel == 1 ? 1 : 0);
    }
}

void MainWindow::buildTray() {
    tray = new QSystemTrayIcon(this);
    trayMenu = new QMenu(this);
    struct Entry {
        const char* control;
        const char* fallback;
    };
    for (const Entry& e :
         {Entry{"mnuTrayShow", "Show"}, Entry{"", ""}, Entry{"mnuTrayQuitApplication", "Quit"}}) {
        const QString control = QString::fromLatin1(e.control);
        if (control.isEmpty()) {
            trayMenu->addSeparator();
            continue;
        }
        QAction* action = trayMenu->addAction(QString::fromLatin1(e.fallback));
        name(action, control);
        connect(action, &QAction::triggered, this, [this, control] { click(control); });
    }
    tray->setContextMenu(trayMenu);
    connect(tray, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason r) {
        if (r == QSystemTrayIcon::Trigger)
            click("TrayIcon");
    });
}

void MainWindow::setEnabled(const QString& control, bool enabled) {
    QObject* c = find(control);
    if (auto* action = qobject_cast<QAction*>(c))
        action->setEnabled(enabled);
    else if (auto* widget = qobject_cast<QWidget*>(c))
        widget->setEnabled(enabled);
}

bool MainWindow::isEnabled(const QString& control) const {
    QObject* c = find(control);
    if (auto* action = qobject_cast<QAction*>(c))
        return action->isEnabled();
    if (auto* widget = qobject_cast<QWidget*>(c))
        return widget->isEnabled();
    return false;
}

void MainWindow::setVisible(const QString& control, bool visible) {
    // The pages share one place: showing one replaces the other.
    if (const int page = PageOf(control); page >= 0) {
        if (visible)
            pages->setCurrentIndex(page);
        return;
    }
    QObject* c = find(control);
    if (auto* action = qobject_cast<QAction*>(c))
        action->setVisible(visible);
    else if (auto* widget = qobject_cast<QWidget*>(c))
        widget->setVisible(visible);
}

bool MainWindow::isVisible(const QString& control) const {
    if (const int page = PageOf(control); page >= 0)
        return pages->currentIndex() == page;
    QObject* c = find(control);
    if (auto* action = qobject_cast<QAction*>(c))
        return action->isVisible();
    if (auto* widget = qobject_cast<QWidget*>(c))
        return !widget->isHidden();
    return false;
}

void MainWindow::setCaption(const QString& control, const QString& caption) {
    QObject* c = find(control);
    if (!c)
        return;
    c->setProperty("caption", caption);
    if (auto* action = qobject_cast<QAction*>(c)) {
        action->setText(MenuText(caption));
        if (const QString image = MenuImage(caption); !image.isEmpty())
            setImage(control, image);
    } else if (auto* label = qobject_cast<QLabel*>(c)) {
        label->setText(caption);
    } else if (auto* button = qobject_cast<QAbstractButton*>(c)) {
        button->setText(caption);
    }
}

QString MainWindow::caption(const QString& control) const {
    QObject* c = find(control);
    return c ? c->property("caption").toString() : QString();
}

void MainWindow::setToolTip(const QString& control, const QString& tip) {
    QObject* c = find(control);
    if (auto* action = qobject_cast<QAction*>(c))
        action->setToolTip(tip);
    else if (auto* widget = qobject_cast<QWidget*>(c))
        widget->setToolTip(tip);
}

void MainWindow::setImage(const QString& control, const QString& imageKey) {
    // Column headers are addressed as "lvwEmail/<header text>".
    if (control.startsWith(QLatin1String("lvwEmail/"))) {
        const QString header = control.mid(9);
        for (int column = 0; column < kColumns; ++column) {
            if (list->headerItem()->text(column) == header)
                list->headerItem()->setIcon(column, Pictures::Keyed(imageKey));
        }
        return;
    }
    QObject* c = find(control);
    if (auto* action = qobject_cast<QAction*>(c))
        action->setIcon(Pictures::Keyed(imageKey));
    else if (auto* button = qobject_cast<QAbstractButton*>(c))
        button->setIcon(Pictures::Keyed(imageKey));
}

void MainWindow::setFocus(const QString& control) {
    if (auto* widget = qobject_cast<QWidget*>(find(control)))
        widget->setFocus();
}

void MainWindow::setPanelText(int panel, const QString& text) {
    if (panel >= 1 && panel <= 5)
        panels[panel]->setText(text);
}

QString MainWindow::panelText(int panel) const {
    return panel >= 1 && panel <= 5 ? panels[panel]->text() : QString();
}

void MainWindow::setPanelPicture(int panel, const QString& imageKey) {
    if (panel < 1 || panel > 5)
        return;
    panels[panel]->setProperty("picture", imageKey);
}

QTabBar* MainWindow::strip(TabStrip which) const {
    return tabs[which == TabStrip::Email ? 0 : 1];
}

void MainWindow::clearTabs(TabStrip which) {
    QTabBar* bar = strip(which);
    const QSignalBlocker block(bar);
    while (bar->count() > 0)
        bar->removeTab(0);
}

void MainWindow::addTab(TabStrip which, const QString& caption, const QString& imageKey) {
    QTabBar* bar = strip(which);
    const QSignalBlocker block(bar);
    const int index = bar->addTab(Pictures::Keyed(imageKey), caption);
    bar->setTabData(index, imageKey);
}

int MainWindow::tabCount(TabStrip which) const {
    return strip(which)->count();
}

void MainWindow::setTabCaption(TabStrip which, int tab, const QString& caption) {
    strip(which)->setTabText(tab - 1, caption);
}

void MainWindow::setTabImage(TabStrip which, int tab, const QString& imageKey) {
    QTabBar* bar = strip(which);
    if (tab < 1 || tab > bar->count())
        return;
    bar->setTabIcon(tab - 1, Pictures::Keyed(imageKey));
    bar->setTabData(tab - 1, imageKey);
}

QString MainWindow::tabImage(TabStrip which, int tab) const {
    return strip(which)->tabData(tab - 1).toString();
}

void MainWindow::selectTab(TabStrip which, int tab) {
    QTabBar* bar = strip(which);
    const QSignalBlocker block(bar);
    if (tab >= 1 && tab <= bar->count())
        bar->setCurrentIndex(tab - 1);
}

int MainWindow::selectedTab(TabStrip which) const {
    return strip(which)->currentIndex() + 1;
}

void MainWindow::clearList() {
    list->clear();
}

void MainWindow::addListRow(const ListRow& row) {
    auto* item = new QTreeWidgetItem(list, row.cells);
    item->setIcon(0, Pictures::Keyed(row.picture));
    if (row.bold) {
        QFont font = item->font(0);
        font.setBold(true);
        for (int column = 0; column < kColumns; ++column)
            item->setFont(column, font);
    }
}

int MainWindow::listRowCount() const {
    return list->topLevelItemCount();
}

bool MainWindow::isListRowSelected(int row) const {
    const QTreeWidgetItem* item = list->topLevelItem(row - 1);
    return item && item->isSelected();
}

void MainWindow::setListRowSelected(int row, bool selected) {
    if (QTreeWidgetItem* item = list->topLevelItem(row - 1))
        item->setSelected(selected);
}

int MainWindow::listColumnWidth(int column) const {
    return column >= 1 && column <= kColumns ? list->columnWidth(column - 1) : 0;
}

void MainWindow::setListColumnWidth(int column, int width) {
    if (column >= 1 && column <= kColumns)
        list->setColumnWidth(column - 1, width);
}

int MainWindow::listWidth() const {
    // Before the first show the list has no geometry yet; the window's
    // design width stands in.
    return list->isVisible() ? list->viewport()->width() : designSize.width() - 24;
}

void MainWindow::setProgressVisible(bool visible) {
    progress->setVisible(visible);
}

void MainWindow::setProgress(int minimum, int maximum, int value) {
    progress->setRange(minimum, maximum);
    progress->setValue(qBound(minimum, value, maximum));
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
    resize(designSize);
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
    if (taskbarFallback && !QSystemTrayIcon::isSystemTrayAvailable())
        showMinimized();
    else
        hide();
    applyingState = false;
}

void MainWindow::setBusyCursor(bool busy) {
    if (busy && busyDepth == 0) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        busyDepth = 1;
    } else if (!busy && busyDepth > 0) {
        QApplication::restoreOverrideCursor();
        busyDepth = 0;
    }
}

void MainWindow::unloadWindow() {
    unloaded = true;
    if (tray)
        tray->hide();
    hide();
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

void MainWindow::trayAdd() {
    if (!tray)
        buildTray();
    tray->setIcon(Pictures::Tray({7}));
    tray->show();
}

void MainWindow::trayModify(const QList<int>& picture, const QString& tip) {
    if (!tray)
        return;
    const QIcon icon = Pictures::Tray(picture);
    tray->setIcon(icon);
    setWindowIcon(icon);
    // The tip holds 63 characters at most.
    tray->setToolTip(tip.left(63));
}

void MainWindow::trayDelete() {
    if (tray)
        tray->hide();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (unloaded || !events) {
        event->accept();
        return;
    }
    bool cancel = false;
    events->Unload(cancel);
    if (cancel) {
        event->ignore();
        return;
    }
    event->accept();
    unloadWindow();
}

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && !applyingState && events)
        events->Resize();
}

} // namespace velmora
