#include "app/SecondaryWindows.h"

#include "checking/frmMessage.h"
#include "context/AppContext.h"

namespace velmora {

void HideSecondaryWindows(AppContext& ctx) {
    if (ctx.shell.AutoMessageOpen && ctx.check.frmMessage.view)
        ctx.check.frmMessage.view->hideWindow();
}

void ShowSecondaryWindows(AppContext& ctx) {
    if (ctx.shell.AutoMessageOpen && ctx.check.frmMessage.view)
        ctx.check.frmMessage.view->showWindow();
}

void UnloadSecondaryWindows(AppContext& ctx) {
    frmMessage::Unload(ctx);
}

void ShowFirstUse(AppContext&) {}

} // namespace velmora
