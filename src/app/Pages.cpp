#include "app/Pages.h"

#include "app/frmMain.h"
#include "checking/CheckCycle.h"
#include "checking/Schedule.h"
#include "context/AppContext.h"
#include "platform/Controls.h"
#include "platform/HelpViewer.h"
#include "platform/MainView.h"
#include "platform/Shell.h"

#include <QHash>

namespace velmora {

namespace {

// Steps 2 to 5 of a page switch: the page replaces the one showing, the tab
// of the current account is selected, the banner names the page.
void SwitchTo(AppContext& ctx, int page) {
    MainView& v = *ctx.view;
    for (int i = 0; i < 4; ++i) {
        if (i != page)
            v.setVisible(Element(ctl::fraMain, i), false);
    }
    if (page == 0 && ctx.accounts.AcntNum > 0)
        v.tabs(TabStrip::Email).select(ctx.accounts.AcntCurrent);
    if (page == 1 && ctx.accounts.AcntNum > 0)
        v.tabs(TabStrip::Accounts).select(ctx.accounts.AcntCurrent);
    v.setVisible(Element(ctl::fraMain, page), true);
    v.setCaption(ctl::lblBanner, ctx.shell.PageBanners.value(page));
}

} // namespace

void ArrangeMainWindow(AppContext& ctx) {
    MainView& v = *ctx.view;
    for (const MainButton& b : MainButtonTable()) {
        v.setCaption(Button(ctl::tbrMainButtons, b.key), b.caption);
        v.setToolTip(Button(ctl::tbrMainButtons, b.key), b.tip);
        v.setImage(Button(ctl::tbrMainButtons, b.key), b.key);
    }
    for (const PageButton& b : PageButtonTable()) {
        const QString name = Element(ctl::tbrButtons, b.index);
        v.setCaption(name, b.caption);
        v.setToolTip(name, b.tip);
        v.setImage(name, b.image);
    }
    for (const ToolbarButton& b : ToolbarButtonTable()) {
        v.setCaption(Button(b.toolbar, b.key), b.caption);
        v.setToolTip(Button(b.toolbar, b.key), b.tip);
        v.setImage(Button(b.toolbar, b.key), b.key);
    }
    v.setCaption(ctl::lblNoAcntsBanner,
                 "No Accounts - Please use Add Accounts to create an Account");
    // Stop shows only during a retrieval.
    v.setVisible(Element(ctl::tbrButtons, 1), false);
}

void tbrMainButtons_ButtonClick(AppContext& ctx, const QString& key) {
    MainView& v = *ctx.view;
    if (key == QLatin1String("Size")) {
        v.setWindowState(WindowState::Normal);
        v.restoreDesignSize();
        frmMain::Form_Resize(ctx);
        return;
    }
    if (key == QLatin1String("Quit")) {
        frmMain::mnuTrayQuitApplication_Click(ctx);
        return;
    }
    static const QStringList pages = {"Email", "Accounts", "Rules", "Options"};
    const int page = int(pages.indexOf(key));
    if (page < 0)
        return;
    v.setVisible(Element(ctl::fraMain, ctx.shell.CurrentPage), false);
    ctx.shell.CurrentPage = page;
    SwitchTo(ctx, page);
    v.setVisible(ctl::fraNoAcntsBanner, ctx.shell.CurrentPage < 3 && ctx.accounts.AcntNum == 0);
}

void ShowPage(AppContext& ctx, int page) {
    if (ctx.shell.CurrentPage == 0 || ctx.check.TestInProgress)
        return;
    SwitchTo(ctx, page);
}

void tbrButtons_ButtonClick(AppContext& ctx, int index) {
    const PageButton* button = nullptr;
    for (const PageButton& b : PageButtonTable()) {
        if (b.index == index)
            button = &b;
    }
    if (!button)
        return;
    const QString& key = button->key;
    if (key == QLatin1String("Help")) {
        static const QHash<int, int> contexts = {{0, 130}, {5, 140}, {8, 150}, {11, 210}};
        ShowHelp(ctx, contexts.value(index, 100));
    } else if (key == QLatin1String("StopRetrieval")) {
        ctx.check.StopRequested = true;
    } else if (key == QLatin1String("PauseStartupCheck")) {
        ToggleStartUpPause(ctx);
    } else if (key == QLatin1String("CheckAll")) {
        CheckAllAccounts(ctx);
    } else if (key == QLatin1String("StartEmailClient")) {
        StartClientProgram(ctx);
    } else if (key == QLatin1String("Close")) {
        frmMain::MinimizeToTray(ctx);
    }
    // Saving and cancelling the Accounts, Rules and Options pages come with
    // those pages.
}

namespace {

// What needs an account: enabled with the first, disabled with the last.
void SetAccountControls(MainView& v, bool enabled) {
    for (const char* key :
         {"EmailPreview", "EmailDelete", "EmailReply", "EmailOpen", "EmailNew", "EmailCheck"})
        v.setEnabled(Button(ctl::tbrEmail, key), enabled);
    for (const char* key : {"AcntDelete", "AcntTest"})
        v.setEnabled(Button(ctl::tbrAcnts, key), enabled);
    v.setEnabled(ctl::lvwEmail, enabled);
    for (const auto& entry :
         {ctl::mnuTrayRunClient, ctl::mnuTrayCheckAll, ctl::mnuTrayNewMessage,
          ctl::mnuTrayAutoCheck, ctl::mnuTraySounds, ctl::mnuTrayOptions, ctl::mnuTrayMenuColours})
        v.setEnabled(entry, enabled);
}

} // namespace

void SetAccountState(AppContext& ctx) {
    if (ctx.accounts.AcntNum == 0) {
        ShowNoAccountState(ctx);
        return;
    }
    MainView& v = *ctx.view;
    v.setVisible(ctl::fraNoAcntsBanner, false);
    v.setVisible(ctl::fraRulesToolbar, true);
    for (const auto& bar : {ctl::tbrEmail, ctl::tbrAcnts, ctl::tbrRules})
        v.setEnabled(bar, true);
    for (int i : {0, 2, 3, 4, 5, 8})
        v.setEnabled(Element(ctl::tbrButtons, i), true);
    // "EmailSpam" is left to the list fill.
    SetAccountControls(v, true);
}

void ShowNoAccountState(AppContext& ctx) {
    MainView& v = *ctx.view;
    v.setVisible(ctl::fraNoAcntsBanner, true);
    v.setVisible(ctl::fraRulesToolbar, false);
    v.setEnabled(Button(ctl::tbrEmail, "EmailSpam"), false);
    // With no account neither Close nor Check All is offered.
    for (int i : {2, 3})
        v.setEnabled(Element(ctl::tbrButtons, i), false);
    SetAccountControls(v, false);
}

void StartClientProgram(AppContext& ctx) {
    if (ctx.shell.DefaultClientValid) {
        ctx.svc.shell->Open(ctx.options.DefaultClient, QString(), ctx.options.RunSize);
        return;
    }
    const Account& account = ctx.accounts[ctx.accounts.AcntCurrent];
    if (account.AcntClientValid)
        ctx.svc.shell->Open(account.AcntClient, QString(), 1);
    // Without a valid client the error box of the client selection speaks;
    // it comes with that page.
}

void ShowHelp(AppContext& ctx, int context) {
    ctx.svc.help->ShowTopic(ctx.shell.HelpFile, context);
}

} // namespace velmora
