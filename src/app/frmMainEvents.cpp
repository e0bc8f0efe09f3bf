#include "app/frmMainEvents.h"

#include "app/AppContext.h"
#include "app/Pages.h"
#include "app/frmMain.h"
#include "checking/CheckCycle.h"
#include "checking/PopSession.h"
#include "messages/MessageList.h"
#include "platform/MainView.h"

namespace velmora {

namespace {

// "tbrButtons(3)" gives 3; anything else -1.
int ElementIndex(const QString& control, const QString& array) {
    if (!control.startsWith(array + '(') || !control.endsWith(')'))
        return -1;
    bool ok = false;
    const int index = control.mid(array.size() + 1).chopped(1).toInt(&ok);
    return ok ? index : -1;
}

} // namespace

void frmMainEvents::Click(const QString& control) {
    if (control.startsWith(QLatin1String("tbrMainButtons/"))) {
        tbrMainButtons_ButtonClick(ctx, control.section('/', 1));
    } else if (const int index = ElementIndex(control, "tbrButtons"); index >= 0) {
        tbrButtons_ButtonClick(ctx, index);
    } else if (control == QLatin1String("mnuTrayShow")) {
        frmMain::mnuTrayShow_Click(ctx);
    } else if (control == QLatin1String("mnuTrayQuitApplication")) {
        frmMain::mnuTrayQuitApplication_Click(ctx);
    } else if (control == QLatin1String("TabStripEmail")) {
        TabStripEmail_Click(ctx);
    } else if (control == QLatin1String("TabStripAcnts")) {
        if (ctx.accounts.AcntNum > 0)
            ctx.accounts.AcntCurrent = ctx.view->selectedTab(TabStrip::Accounts);
    } else if (control == QLatin1String("mnuTrayCheckAll")) {
        CheckAllAccounts(ctx);
    } else if (control == QLatin1String("tbrEmail/EmailCheck")) {
        CheckSingleAccount(ctx);
    } else if (control == QLatin1String("tbrAcnts/AcntTest")) {
        TestAccountConnection(ctx);
    } else if (control == QLatin1String("TrayIcon")) {
        // A left click on the tray picture brings a hidden window back.
        if (ctx.view->windowState() == WindowState::Minimized || !ctx.view->isWindowVisible())
            frmMain::mnuTrayShow_Click(ctx);
    }
}

void frmMainEvents::Resize() {
    frmMain::Form_Resize(ctx);
}

void frmMainEvents::Unload(bool& cancel) {
    frmMain::Form_Unload(ctx, cancel);
}

} // namespace velmora
