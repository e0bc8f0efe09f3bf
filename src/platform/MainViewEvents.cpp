#include "platform/MainViewEvents.h"

#include "platform/Controls.h"

namespace velmora {

void DeliverClick(MainViewEvents& events, const QString& control) {
    const ControlKind kind = KindOf(control);
    if (kind == ControlKind::MenuEntry) {
        events.MenuClick(control);
        return;
    }
    if (kind == ControlKind::Link) {
        events.LinkClick(control);
        return;
    }
    if (kind == ControlKind::Tray) {
        events.TrayClick(MouseButton::Left);
        return;
    }
    if (kind != ControlKind::Button)
        throw UnknownControl(QStringLiteral("'%1' cannot be clicked").arg(control));
    const qsizetype slash = control.indexOf(QLatin1Char('/'));
    if (slash < 0) {
        // "tbrButtons(3)"
        const qsizetype open = control.indexOf(QLatin1Char('('));
        events.PageButtonClick(control.mid(open + 1).chopped(1).toInt());
        return;
    }
    const QString bar = control.left(slash);
    const QString key = control.mid(slash + 1);
    if (bar == ctl::tbrMainButtons)
        events.MainButtonClick(key);
    else
        events.ToolbarButtonClick(bar, key);
}

} // namespace velmora
