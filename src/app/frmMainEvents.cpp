#include "app/frmMainEvents.h"

#include "app/Gate.h"
#include "app/Pages.h"
#include "app/StatusBar.h"
#include "app/frmMain.h"
#include "checking/CheckCycle.h"
#include "checking/PopSession.h"
#include "context/AppContext.h"
#include "messages/MessageList.h"
#include "platform/Controls.h"
#include "platform/MainView.h"

namespace velmora {

namespace {

const QString kWindow = QStringLiteral("frmMain");

} // namespace

void frmMainEvents::MainButtonClick(const QString& key) {
    if (GateAdmits(ctx, Button(ctl::tbrMainButtons, key)))
        tbrMainButtons_ButtonClick(ctx, key);
}

void frmMainEvents::PageButtonClick(int index) {
    if (GateAdmits(ctx, Element(ctl::tbrButtons, index)))
        tbrButtons_ButtonClick(ctx, index);
}

void frmMainEvents::ToolbarButtonClick(const QString& toolbar, const QString& key) {
    if (!GateAdmits(ctx, Button(toolbar, key)))
        return;
    if (toolbar == ctl::tbrEmail && key == QLatin1String("EmailCheck"))
        CheckSingleAccount(ctx);
    else if (toolbar == ctl::tbrAcnts && key == QLatin1String("AcntTest"))
        TestAccountConnection(ctx);
    // The other buttons come with their pages.
}

void frmMainEvents::MenuClick(const QString& entry) {
    if (!GateAdmits(ctx, entry))
        return;
    if (entry == ctl::mnuTrayShow)
        frmMain::mnuTrayShow_Click(ctx);
    else if (entry == ctl::mnuTrayQuitApplication)
        frmMain::mnuTrayQuitApplication_Click(ctx);
    else if (entry == ctl::mnuTrayCheckAll)
        CheckAllAccounts(ctx);
    else if (entry == ctl::mnuTrayAutoCheck)
        frmMain::mnuTrayAutoCheck_Click(ctx);
    // The other entries come with the tray menu and the list.
}

void frmMainEvents::TrayClick(MouseButton button) {
    if (button != MouseButton::Left || !GateAdmits(ctx, ctl::TrayIcon))
        return;
    // A left click on the tray picture brings a hidden window back.
    if (ctx.view->windowState() == WindowState::Minimized || !ctx.view->isWindowVisible())
        frmMain::mnuTrayShow_Click(ctx);
}

void frmMainEvents::TabClick(const QString& strip) {
    if (!GateAdmits(ctx, strip))
        return;
    if (strip == ctl::TabStripEmail) {
        TabStripEmail_Click(ctx);
    } else if (strip == ctl::TabStripAcnts) {
        if (ctx.accounts.AcntNum > 0)
            ctx.accounts.AcntCurrent = ctx.view->tabs(TabStrip::Accounts).selected();
    }
}

void frmMainEvents::ListRowClick(int /*row*/) {
    if (!GateAdmits(ctx, ctl::lvwEmail))
        return;
}

void frmMainEvents::ListDoubleClick(int /*row*/) {
    if (!GateAdmits(ctx, ctl::lvwEmail))
        return;
}

void frmMainEvents::ListHeaderClick(int /*column*/) {
    if (!GateAdmits(ctx, ctl::lvwEmail))
        return;
}

void frmMainEvents::ListContextMenu(int /*row*/) {
    if (!GateAdmits(ctx, ctl::lvwEmail))
        return;
}

void frmMainEvents::ValueChanged(const QString& control) {
    if (!GateAdmits(ctx, control))
        return;
    // The pages' dirty checks hang here as the pages come.
}

void frmMainEvents::StatusBarPointer(int panel) {
    ShowPanelTip(ctx, panel);
}

void frmMainEvents::Resize() {
    if (GateAdmits(ctx, kWindow))
        frmMain::Form_Resize(ctx);
}

void frmMainEvents::Unload(bool& cancel) {
    if (GateAdmits(ctx, kWindow))
        frmMain::Form_Unload(ctx, cancel);
}

} // namespace velmora
