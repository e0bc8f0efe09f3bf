#pragma once

#include "platform/qt/widgets/WidgetControls.h"

#include <QMainWindow>

#include <memory>

namespace velmora {

class AccountsPage;
class EmailPage;
class OptionsPage;
class RulesPage;
class WidgetStatusBar;
class WidgetTray;

// frmMain on screen: the main buttons down the side, the banner, the four
// pages, the status bar and the tray entry. It holds no logic: it shows
// what the logic sets and reports what the user does.
class MainWindow : public QMainWindow, public WidgetControls {
    Q_OBJECT
public:
    MainWindow();
    ~MainWindow() override;

    // The widget's own members beside the named controls' of the same name.
    using QMainWindow::isEnabled;
    using QMainWindow::isVisible;
    using QMainWindow::setEnabled;
    using QMainWindow::setFocus;
    using QMainWindow::setToolTip;
    using QMainWindow::setVisible;
    using QMainWindow::toolTip;
    using WidgetControls::isEnabled;
    using WidgetControls::isVisible;
    using WidgetControls::setEnabled;
    using WidgetControls::setFocus;
    using WidgetControls::setToolTip;
    using WidgetControls::setVisible;
    using WidgetControls::toolTip;

    // Without a system tray a window sent "to the tray" stays minimised on
    // the task bar instead, so it can always be brought back.
    // Off, the window hides as though a tray were there (tests without one).
    void setTaskbarFallback(bool on);

    TabStripView& tabs(TabStrip strip) override;
    MessageListView& list() override;
    StatusBarView& status() override;
    TrayView& tray() override;

    WindowState windowState() const override;
    void setWindowState(WindowState state) override;
    void restoreDesignSize() override;
    void showWindow() override;
    void hideWindow() override;
    bool isWindowVisible() const override { return QMainWindow::isVisible(); }
    void setBusyCursor(bool busy) override;
    void popUpMenu(const QString& menu) override;
    void unloadWindow() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* buildMainButtons();
    QWidget* buildBanners();
    void coverUnderBanner(QWidget* covered);
    void resized();

    std::unique_ptr<EmailPage> email;
    std::unique_ptr<AccountsPage> accounts;
    std::unique_ptr<RulesPage> rules;
    std::unique_ptr<OptionsPage> options;
    std::unique_ptr<WidgetStatusBar> statusPanels;
    std::unique_ptr<WidgetTray> trayEntry;
    QSize designSize;
    bool applyingState = false;
    bool unloaded = false;
    bool busy = false;
};

} // namespace velmora
