#include "app/frmMainEvents.h"

#include "accounts/AccountEditing.h"

#include "app/Gate.h"
#include "app/ListTips.h"
#include "app/Pages.h"
#include "app/Preview.h"
#include "app/StatusBar.h"
#include "app/frmMain.h"
#include "checking/CheckCycle.h"
#include "checking/Deletion.h"
#include "checking/PopSession.h"
#include "context/AppContext.h"
#include "messages/MessageList.h"
#include "messages/Sorting.h"
#include "options/OptionsEditing.h"
#include "platform/Controls.h"
#include "platform/MainView.h"
#include "platform/Shell.h"
#include "rules/RuleEditing.h"

namespace velmora {

namespace {

const QString kWindow = QStringLiteral("frmMain");

// The actions of the Email page's toolbar, by key; the list's menu entries
// run the button of the same name.
void EmailAction(AppContext& ctx, const QString& key) {
    if (key == QLatin1String("EmailCheck")) {
        CheckSingleAccount(ctx);
    } else if (key == QLatin1String("EmailDelete")) {
        EmailDelete(ctx);
    } else if (key == QLatin1String("EmailSpam")) {
        EmailSpam(ctx);
    } else if (key == QLatin1String("EmailNew")) {
        NewMessage(ctx);
    } else if (!SelectedMessageValid(ctx)) {
        // Preview, Reply and Open act on SelectedMessage alone.
    } else if (key == QLatin1String("EmailPreview")) {
        PreviewMessage(ctx);
    } else if (key == QLatin1String("EmailReply")) {
        ReplyToMessage(ctx);
    } else if (key == QLatin1String("EmailOpen")) {
        OpenMessage(ctx);
    }
}

QString EmailKeyOf(const QString& entry) {
    if (entry == ctl::mnuEmailPreview)
        return QStringLiteral("EmailPreview");
    if (entry == ctl::mnuEmailDelete)
        return QStringLiteral("EmailDelete");
    if (entry == ctl::mnuEmailReply)
        return QStringLiteral("EmailReply");
    return QStringLiteral("EmailOpen");
}

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
    if (toolbar == ctl::tbrEmail)
        EmailAction(ctx, key);
    else if (toolbar == ctl::tbrAcnts && key == QLatin1String("AcntTest"))
        TestAccountConnection(ctx);
    else if (toolbar == ctl::tbrAcnts && key == QLatin1String("AcntAdd"))
        AddAccount(ctx);
    else if (toolbar == ctl::tbrAcnts && key == QLatin1String("AcntDelete"))
        DeleteAccount(ctx);
    else if (toolbar == ctl::tbrColour)
        tbrColour_Click(ctx);
    else if (toolbar == ctl::tbrMoveAccounts && key == QLatin1String("Backward"))
        SwapAccounts(ctx, ctx.accounts.AcntCurrent, -1);
    else if (toolbar == ctl::tbrMoveAccounts && key == QLatin1String("Forward"))
        SwapAccounts(ctx, ctx.accounts.AcntCurrent, 1);
    else if (toolbar == ctl::tbrOptAbout && key == QLatin1String("ReadMe"))
        OpenReadMe(ctx);
    else if (toolbar == ctl::tbrOptAbout && key == QLatin1String("Update"))
        OpenHomePage(ctx);
    else if (toolbar == ctl::tbrRules || toolbar == ctl::tbrRuleUpdate ||
             toolbar == ctl::tbrMoveRules)
        RulesToolbarClick(ctx, toolbar, key);
    else
        OptionsButtonClick(ctx, toolbar, key);
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
    else if (entry == ctl::mnuTrayNewMessage)
        ctx.svc.shell->Open(QStringLiteral("mailto:"), QString(), 1);
    else if (entry == ctl::mnuTrayRunClient)
        StartClientProgram(ctx);
    else if (entry == ctl::mnuTrayAutoCheck)
        frmMain::mnuTrayAutoCheck_Click(ctx);
    else if (entry == ctl::mnuTraySounds)
        frmMain::mnuTraySounds_Click(ctx);
    else if (entry == ctl::mnuTrayOptions)
        ShowOptionsSection(ctx, 1);
    else if (entry == ctl::mnuTrayMenuColours)
        ShowOptionsSection(ctx, 4);
    else if (entry == ctl::mnuTrayAbout)
        ShowOptionsSection(ctx, 6);
    else if (entry == ctl::mnuTrayUpdates)
        OpenHomePage(ctx);
    else if (entry == ctl::mnuTrayHelp)
        ShowHelp(ctx, 100);
    else if (EmailMenuEntries().contains(entry))
        EmailAction(ctx, EmailKeyOf(entry));
}

void frmMainEvents::TrayClick(MouseButton button) {
    if (!GateAdmits(ctx, ctl::TrayIcon))
        return;
    // The right button opens the menu and leaves the window where it is.
    if (button == MouseButton::Right) {
        ctx.view->popUpMenu(ctl::mnuTrayPopMenu);
        return;
    }
    // A left click on the tray picture brings a hidden window back.
    if (ctx.view->windowState() == WindowState::Minimized || !ctx.view->isWindowVisible())
        frmMain::mnuTrayShow_Click(ctx);
}

void frmMainEvents::TabPress(const QString& strip, int /*tab*/) {
    if (GateAdmits(ctx, strip))
        frmMain::tabStrip_MouseDown(ctx, strip);
}

void frmMainEvents::TabRelease(const QString& /*strip*/) {
    frmMain::tabStrip_MouseUp(ctx);
}

void frmMainEvents::TabDrop(const QString& strip, int /*fromTab*/, int toTab) {
    // The tab dragged is the current account's: the press selected it.
    if (GateAdmits(ctx, strip))
        frmMain::tabStrip_DragDrop(ctx, strip, toTab);
}

void frmMainEvents::LinkClick(const QString& label) {
    if (!GateAdmits(ctx, label))
        return;
    if (label.startsWith(ctl::lblColourBox + QLatin1Char('(')))
        lblColourBox_Click(ctx, label.mid(ctl::lblColourBox.size() + 1).chopped(1).toInt());
    else if (label == ctl::lblAboutWebSite)
        OpenHomePage(ctx);
    else if (label == ctl::lblAboutEmail)
        OpenSupportMail(ctx);
    else
        OptionsLinkClick(ctx, label);
}

void frmMainEvents::TabClick(const QString& strip) {
    if (!GateAdmits(ctx, strip))
        return;
    if (strip == ctl::TabStripEmail) {
        TabStripEmail_Click(ctx);
    } else if (strip == ctl::TabStripAcnts) {
        TabStripAcnts_Click(ctx);
    }
}

void frmMainEvents::ListRowClick(int row) {
    if (!GateAdmits(ctx, ctl::lvwEmail))
        return;
    if (row > 0)
        lvwEmail_ItemClick(ctx);
    else
        ctx.list.ItemUnderPointer = false;
    lvwEmail_Click(ctx);
}

void frmMainEvents::ListDoubleClick(int /*row*/) {
    if (!GateAdmits(ctx, ctl::lvwEmail))
        return;
    if (ctx.view->isEnabled(Button(ctl::tbrEmail, "EmailPreview")))
        EmailAction(ctx, QStringLiteral("EmailPreview"));
}

void frmMainEvents::ListHeaderClick(int column) {
    if (!GateAdmits(ctx, ctl::lvwEmail))
        return;
    if (column >= 1 && column <= ListColumns().size())
        lvwEmail_ColumnClick(ctx, ListColumns()[column - 1]);
}

void frmMainEvents::ListContextMenu(int row) {
    if (!GateAdmits(ctx, ctl::lvwEmail))
        return;
    lvwEmail_RightUp(ctx, row);
}

void frmMainEvents::ListPointer(int row, int x) {
    // A tip changes nothing, so it needs no gate.
    lvwEmail_MouseMove(ctx, row, x);
}

void frmMainEvents::FocusArrived(const QString& control) {
    // Only the focus moves, so no gate is asked. Parking it on
    // cmdTakeFocus keeps the focus mark off the list and the tabs.
    if (control == ctl::lvwEmail) {
        if (ctx.list.HoverMessage == 0)
            ctx.view->setFocus(ctl::cmdTakeFocus);
    } else if (control == ctl::TabStripEmail || control == ctl::TabStripAcnts) {
        const ShellState& s = ctx.shell;
        if (!s.FirstUseOpen && !s.AutoMessageOpen && !s.PreviewOpen && !s.RuleReportOpen)
            ctx.view->setFocus(ctl::cmdTakeFocus);
    } else {
        throw UnknownControl(control + QStringLiteral(" reports no focus"));
    }
}

void frmMainEvents::FramePointer(const QString& frame) {
    if (frame != ctl::fraAcnt)
        throw UnknownControl(frame + QStringLiteral(" reports no pointer"));
    fraAcnt_MouseMove(ctx);
}

void frmMainEvents::ValueChanged(const QString& control) {
    if (!GateAdmits(ctx, control))
        return;
    // The pages' dirty checks hang here as the pages come.
    if (!RuleControlChanged(ctx, control) && !AccountControlChanged(ctx, control))
        OptionsControlChanged(ctx, control);
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
