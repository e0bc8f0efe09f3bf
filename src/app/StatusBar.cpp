#include "app/StatusBar.h"

#include "app/AppContext.h"
#include "platform/MainView.h"

namespace velmora {

void UpdateClockPanel(AppContext& ctx) {
    const QDateTime now = ctx.now();
    ctx.view->setPanelText(5, ctx.format(now, "mmm d/yy") + QLatin1Char(' ') +
                                  ctx.format(now, "h:mm AM/PM"));
}

void RefreshAccountPanels(AppContext& ctx, int account) {
    const Account& a = ctx.accounts[account];
    ctx.view->setPanelText(1, a.AcntStatusText);
    ctx.view->setPanelText(3, a.AcntLastCheckText);
    ctx.view->setPanelText(4, ctx.NextCheckText);
}

} // namespace velmora
