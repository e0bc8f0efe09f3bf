#include "app/SecondaryWindows.h"

#include "app/AppContext.h"
#include "checking/frmMessage.h"

namespace velmora {

void HideSecondaryWindows(AppContext& ctx) {
    if (ctx.AutoMessageOpen && ctx.frmMessage.view)
        ctx.frmMessage.view->hideWindow();
}

void ShowSecondaryWindows(AppContext& ctx) {
    if (ctx.AutoMessageOpen && ctx.frmMessage.view)
        ctx.frmMessage.view->showWindow();
}

void UnloadSecondaryWindows(AppContext& ctx) {
    frmMessage::Unload(ctx);
}

void ShowFirstUse(AppContext&) {}

} // namespace velmora
