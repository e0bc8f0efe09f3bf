#include "app/Gate.h"

#include "context/AppContext.h"
#include "platform/Controls.h"

namespace velmora {

bool GateAdmits(const AppContext& ctx, const QString& control) {
    if (!ctx.check.InterfaceHeld)
        return true;
    static const QStringList during = {
        Element(ctl::tbrButtons, ctl::StopRetrieval),
        ctl::mnuTrayShow,
        ctl::mnuTrayAutoCheck,
        ctl::mnuTrayQuitApplication,
        // A left click on the tray picture is Show.
        ctl::TrayIcon,
        QStringLiteral("frmMain"),
    };
    return during.contains(control);
}

} // namespace velmora
