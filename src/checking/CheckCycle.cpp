#include "checking/CheckCycle.h"

#include "app/AppContext.h"

namespace velmora {

void CheckAllAccounts(AppContext&) {}

void AutoCheckAccounts(AppContext&) {}

void StartUpCheckAccounts(AppContext&) {}

void SuspendAutoCheck(AppContext& ctx, const QString& action) {
    if (ctx.options.UseInterval != 1)
        return;
    const bool suspend = action == QLatin1String("Suspend");
    if (!suspend && action != QLatin1String("Restore"))
        return;
    ctx.tmrMailTime->setEnabled(!suspend);
    ctx.tmrStatusBar->setEnabled(suspend);
}

} // namespace velmora
