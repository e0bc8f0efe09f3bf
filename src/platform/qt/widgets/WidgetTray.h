#pragma once

#include "platform/MainView.h"

class QMenu;
class QSystemTrayIcon;
class QWidget;

namespace velmora {

class WidgetControls;

// The tray entry TrayIcon and its menu of TrayMenuEntries(). A left click
// on the picture is reported as a click on TrayIcon, the right one opens
// the menu and is reported too. The window takes the tray's picture as its
// own icon, so that the task bar shows the same state.
class WidgetTray : public TrayView {
public:
    WidgetTray(WidgetControls& controls, QWidget* window);

    void add() override;
    void modify(const QList<int>& picture, const QString& tip) override;
    void remove() override;
    bool isPresent() const override;
    bool isAvailable() const override;
    QList<int> picture() const override { return stack; }
    QString tip() const override;

    // Whether the desktop has a tray to hold the entry at all.
    static bool available();
    // Off, the entry counts as available without a tray host.
    void setNeedsHost(bool on) { needsHost = on; }

private:
    QWidget* window;
    QSystemTrayIcon* icon;
    QMenu* menu;
    QList<int> stack;
    bool needsHost = true;
};

} // namespace velmora
