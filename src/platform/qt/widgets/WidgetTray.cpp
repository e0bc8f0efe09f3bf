#include "platform/qt/widgets/WidgetTray.h"

#include "platform/Controls.h"
#include "platform/qt/widgets/Pictures.h"
#include "platform/qt/widgets/WidgetControls.h"

#include <QMenu>
#include <QSystemTrayIcon>

namespace velmora {

namespace {

// The menu's groups each start with one of these.
bool StartsGroup(const QString& entry) {
    static const QStringList firsts = {ctl::mnuTrayCheckAll, ctl::mnuTrayAutoCheck,
                                       ctl::mnuTrayOptions, ctl::mnuTrayUpdates,
                                       ctl::mnuTrayQuitApplication};
    return firsts.contains(entry);
}

} // namespace

WidgetTray::WidgetTray(WidgetControls& controls, QWidget* window)
    : window(window), icon(new QSystemTrayIcon(window)), menu(new QMenu(window)) {
    controls.add(icon, ctl::TrayIcon);
    controls.add(menu, ctl::mnuTrayPopMenu);
    for (const QString& entry : TrayMenuEntries()) {
        if (StartsGroup(entry))
            menu->addSeparator();
        controls.add(menu->addAction(entry), entry);
    }
    icon->setContextMenu(menu);
    QObject::connect(
        icon, &QSystemTrayIcon::activated, icon,
        [report = controls.report()](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger)
                report([](MainViewEvents& events) { DeliverClick(events, ctl::TrayIcon); });
            else if (reason == QSystemTrayIcon::Context)
                report([](MainViewEvents& events) { events.TrayClick(MouseButton::Right); });
        });
}

bool WidgetTray::available() {
    return QSystemTrayIcon::isSystemTrayAvailable();
}

void WidgetTray::add() {
    // The tray wants a picture before it shows the entry.
    icon->setIcon(Pictures::Tray(stack));
    icon->show();
}

void WidgetTray::modify(const QList<int>& picture, const QString& tip) {
    // A tick that changes nothing costs the tray host nothing either.
    if (picture == stack && tip == icon->toolTip() && !stack.isEmpty())
        return;
    stack = picture;
    const QIcon drawn = Pictures::Tray(picture);
    icon->setIcon(drawn);
    icon->setToolTip(tip);
    window->setWindowIcon(drawn);
}

void WidgetTray::remove() {
    icon->hide();
}

bool WidgetTray::isAvailable() const {
    return !needsHost || available();
}

bool WidgetTray::isPresent() const {
    return icon->isVisible();
}

QString WidgetTray::tip() const {
    return icon->toolTip();
}

} // namespace velmora
