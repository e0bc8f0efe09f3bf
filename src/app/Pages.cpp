#include "app/Pages.h"

#include "app/frmMain.h"
#include "checking/CheckCycle.h"
#include "checking/Schedule.h"
#include "context/AppContext.h"
#include "context/PageCalls.h"
#include "context/Product.h"
#include "messages/MessageList.h"
#include "platform/Controls.h"
#include "platform/Files.h"
#include "platform/HelpViewer.h"
#include "platform/MainView.h"
#include "platform/MessageBoxes.h"
#include "platform/Shell.h"
#include "rules/RuleEditing.h"

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
    // The tab's click handling runs too, so that the list follows an
    // account chosen on another page.
    if (page == 0 && ctx.accounts.AcntNum > 0)
        SelectEmailTab(ctx, ctx.accounts.AcntCurrent);
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
    v.setCaption(ctl::lblAboutWebSite, Product::HomePage());
    v.setCaption(ctl::lblAboutEmail, Product::SupportAddress());
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
    if (page == 2 && ctx.rules.WorkingRules.RuleCount > 0)
        ShowCurrentRule(ctx);
    else if (page == 2)
        LoadRulePage(ctx);
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
        static const QHash<int, int> contexts = {
            {ctl::HelpEmail, 130}, {ctl::HelpAccounts, 140}, {ctl::HelpRules, 150}};
        // The Options page's help is that of its section: 210 to 260.
        ShowHelp(ctx, index == ctl::HelpOptions ? 200 + 10 * ctx.shell.OptionsPage
                                                : contexts.value(index, 100));
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
    } else if (index == ctl::SaveAccount) {
        SaveAccount(ctx);
    } else if (index == ctl::CancelAccount) {
        CancelAccountEdit(ctx);
    } else if (index == ctl::SaveRules) {
        SaveRules(ctx);
    } else if (index == ctl::CancelRules) {
        ShowCurrentRule(ctx);
    } else if (index == ctl::SaveOptions) {
        SaveOptionsPage(ctx);
    } else if (index == ctl::CancelOptions) {
        CancelOptionsEdit(ctx);
    }
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

void ShowClientError(AppContext& ctx) {
    ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - Email Client Error"),
                        QStringLiteral("The Email Client Program failed!\r\n\r\n"
                                       "It appears the path and/or filename") +
                            QString(20, QLatin1Char(' ')) +
                            QStringLiteral("\r\ndo not exist or have changed location.\r\n\r\n"
                                           "The FileName must have a file extension\r\n"
                                           "that ends with '.exe' to work properly.\r\n\r\n"),
                        BoxIcon::Information, BoxButtons::Ok);
}

void StartClientProgram(AppContext& ctx) {
    // The run size is the default client's alone.
    bool started = false;
    if (ctx.shell.DefaultClientValid) {
        started = ctx.svc.shell->Open(ctx.options.DefaultClient, QString(), ctx.options.RunSize);
    } else {
        const Account& account = ctx.accounts[ctx.accounts.AcntCurrent];
        if (account.AcntClientValid)
            started = ctx.svc.shell->Open(account.AcntClient, QString(), 1);
    }
    if (!started)
        ShowClientError(ctx);
}

void ShowHelp(AppContext& ctx, int context) {
    ctx.svc.help->ShowTopic(ctx.shell.HelpFile, context);
}

void OpenHomePage(AppContext& ctx) {
    ctx.svc.shell->Open(Product::HomePage(), QString(), 1);
}

void OpenSupportMail(AppContext& ctx) {
    // The blank after the colon is the link's own.
    ctx.svc.shell->Open(QStringLiteral("mailto: ") + Product::SupportAddress(), QString(), 1);
}

void OpenReadMe(AppContext& ctx) {
    ctx.svc.shell->Open(ctx.svc.files->InstallDataFolder() + QStringLiteral("/help/readme.html"),
                        QString(), 1);
}

void ShowOptionsSection(AppContext& ctx, int node) {
    frmMain::mnuTrayShow_Click(ctx);
    MainView& v = *ctx.view;
    v.setVisible(Element(ctl::fraMain, ctx.shell.CurrentPage), false);
    ctx.shell.CurrentPage = 3;
    v.setVisible(Element(ctl::fraMain, 3), true);
    v.setVisible(ctl::fraNoAcntsBanner, false);
    v.setCaption(ctl::lblBanner, ctx.shell.PageBanners.value(3));
    ShowOptionsPage(ctx, node);
}

} // namespace velmora
