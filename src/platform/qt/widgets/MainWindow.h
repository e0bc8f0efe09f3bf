#pragma once

#include "platform/MainView.h"

#include <QHash>
#include <QMainWindow>
#include <QPointer>

class QLabel;
class QMenu;
class QProgressBar;
class QStackedWidget;
class QSystemTrayIcon;
class QTabBar;
class QVBoxLayout;
class QToolBar;
class QTreeWidget;

namespace velmora {

class MainViewEvents;

// frmMain on screen: the main buttons, the four pages with their button
// rows, the status bar, the account tab strips, the message list and the
// tray entry. It holds no logic: it shows what the logic sets and reports
// clicks, resizes and the close box.
class MainWindow : public QMainWindow, public MainView {
    Q_OBJECT
public:
    MainWindow();
    ~MainWindow() override;

    // The widget's own versions stay reachable beside the named ones.
    using QMainWindow::isEnabled;
    using QMainWindow::isVisible;
    using QMainWindow::setEnabled;
    using QMainWindow::setFocus;
    using QMainWindow::setVisible;

    void setEvents(MainViewEvents* receiver) { events = receiver; }
    // Without a system tray a window sent "to the tray" stays minimised on
    // the task bar instead, so it can always be brought back.
    void setTaskbarFallback(bool on) { taskbarFallback = on; }

    void setEnabled(const QString& control, bool enabled) override;
    bool isEnabled(const QString& control) const override;
    void setVisible(const QString& control, bool visible) override;
    bool isVisible(const QString& control) const override;
    void setCaption(const QString& control, const QString& caption) override;
    QString caption(const QString& control) const override;
    void setToolTip(const QString& control, const QString& tip) override;
    void setImage(const QString& control, const QString& imageKey) override;
    void setFocus(const QString& control) override;

    void setPanelText(int panel, const QString& text) override;
    QString panelText(int panel) const override;
    void setPanelPicture(int panel, const QString& imageKey) override;

    void clearTabs(TabStrip strip) override;
    void addTab(TabStrip strip, const QString& caption, const QString& imageKey) override;
    int tabCount(TabStrip strip) const override;
    void setTabCaption(TabStrip strip, int tab, const QString& caption) override;
    void setTabImage(TabStrip strip, int tab, const QString& imageKey) override;
    QString tabImage(TabStrip strip, int tab) const override;
    void selectTab(TabStrip strip, int tab) override;
    int selectedTab(TabStrip strip) const override;

    void clearList() override;
    void addListRow(const ListRow& row) override;
    int listRowCount() const override;
    bool isListRowSelected(int row) const override;
    void setListRowSelected(int row, bool selected) override;
    int listColumnWidth(int column) const override;
    void setListColumnWidth(int column, int width) override;
    int listWidth() const override;

    void setProgressVisible(bool visible) override;
    void setProgress(int minimum, int maximum, int value) override;

    WindowState windowState() const override;
    void setWindowState(WindowState state) override;
    void restoreDesignSize() override;
    void showWindow() override;
    void hideWindow() override;
    bool isWindowVisible() const override { return QMainWindow::isVisible(); }
    void setBusyCursor(bool busy) override;
    void unloadWindow() override;

    void trayAdd() override;
    void trayModify(const QList<int>& picture, const QString& tip) override;
    void trayDelete() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void buildMainButtons();
    QWidget* buildPage(int page);
    QWidget* buildEmailPage();
    QWidget* buildAccountsPage();
    QWidget* buildRulesPage();
    QToolBar* buildToolbar(const QString& name);
    // A page headed by its toolbar in a named frame; `layout` is the page's.
    QWidget* buildPage(const QString& toolbar, const QString& frame, QVBoxLayout*& layout);
    QTabBar* buildTabStrip(int strip, const QString& control);
    void buildStatusBar();
    void buildTray();
    void name(QObject* control, const QString& controlName);
    QObject* find(const QString& control) const;
    QTabBar* strip(TabStrip which) const;
    void click(const QString& control);

    MainViewEvents* events = nullptr;
    QHash<QString, QPointer<QObject>> controls;
    QHash<QString, QString> images;
    QStackedWidget* pages = nullptr;
    QTabBar* tabs[2] = {nullptr, nullptr};
    QTreeWidget* list = nullptr;
    QLabel* panels[6] = {};
    QProgressBar* progress = nullptr;
    QSystemTrayIcon* tray = nullptr;
    QMenu* trayMenu = nullptr;
    QSize designSize;
    bool applyingState = false;
    bool unloaded = false;
    bool taskbarFallback = true;
    int busyDepth = 0;
};

} // namespace velmora
