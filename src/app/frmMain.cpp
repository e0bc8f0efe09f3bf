#include "app/frmMain.h"

#include "accounts/AccountEditing.h"

#include "app/Pages.h"
#include "app/SecondaryWindows.h"
#include "checking/CheckCycle.h"
#include "checking/PopEvents.h"
#include "checking/PopSession.h"
#include "checking/Schedule.h"
#include "context/AppContext.h"
#include "context/ShellCalls.h"
#include "messages/MessageList.h"
#include "messages/Sorting.h"
#include "options/MenuColours.h"
#include "options/OptionsEditing.h"
#include "options/SaveOptions.h"
#include "options/Setting.h"
#include "platform/Controls.h"
#include "platform/EventPump.h"
#include "platform/Files.h"
#include "platform/MainView.h"
#include "platform/SettingsStore.h"
#include "rules/RulesStartUp.h"

namespace velmora::frmMain {

namespace {

std::unique_ptr<Timer> MakeTimer(AppContext& ctx, int interval, bool enabled,
                                 void (*handler)(AppContext&)) {
    auto timer = ctx.svc.timers->create();
    timer->setInterval(interval);
    timer->setHandler([&ctx, handler] { handler(ctx); });
    timer->setEnabled(enabled);
    return timer;
}

const char* const kColumnWidthKeys[] = {"ColFromWidth", "ColToWidth", "ColSubjectWidth",
                                        "ColDateWidth", "ColSizeWidth"};

// The list's column widths: the defaults worked out from the list's width, or
// the widths of the last run.
void SetColumnWidths(AppContext& ctx) {
    MainView& v = *ctx.view;
    const int w = qint16(v.list().width() / 4.5);
    ctx.list.DefaultColumnWidth = w;
    ctx.options.RestoreColWidth =
        setting::readInt(*ctx.svc.settings, setting::SectionOptions, "RestoreColWidth", 1);
    if (ctx.options.RestoreColWidth == 1) {
        RestoreColumnWidths(ctx);
        return;
    }
    for (int column = 1; column <= 5; ++column)
        v.list().setColumnWidth(column, setting::readInt(*ctx.svc.settings, setting::SectionOptions,
                                                         kColumnWidthKeys[column - 1], w));
}

} // namespace

void CreateTimers(AppContext& ctx) {
    ctx.shell.tmrStatusBar = MakeTimer(ctx, 1000, true, tmrStatusBar_Timer);
    ctx.check.tmrMailTime = MakeTimer(ctx, 1000, false, tmrMailTime_Timer);
    ctx.check.tmrMailStartUp = MakeTimer(ctx, 1000, false, tmrMailStartUp_Timer);
    ctx.check.tmrRetrieveMessage = MakeTimer(ctx, 100, false, tmrRetrieveMessage_Timer);
    ctx.shell.tmrDragTab = MakeTimer(ctx, 1000, false, tmrDragTab_Timer);
}

void Load(AppContext& ctx) {
    CreateTimers(ctx);
    Form_Load(ctx);
}

void LoadStores(AppContext& ctx) {
    SettingsStore& settings = *ctx.svc.settings;
    AccountStore& acc = ctx.accounts;

    acc.AcntNum = setting::readInt(settings, setting::SectionSettings, "AcntNum", 0, 0);
    ctx.options.LoadOptions(settings);

    acc.ResizeAccounts(acc.AcntNum);
    ctx.messages.ResizeAccountStore(acc.AcntNum, ctx.messages.MessageCapacity);
    ctx.options.LoadMenuColours(settings);
    SetUpSortState(ctx);

    ctx.check.TotalMessages = 0;
    ctx.check.TotalNew = 0;
    const QDateTime now = ctx.now();
    ctx.check.CurrentTime = ctx.format(now, "dd/mm/yy-hh:mm");

    acc.BlankAccountRow();
    const QString timeOfDay = ctx.format(now, "h:mm AM/PM");
    for (int n = 1; n <= acc.AcntNum; ++n) {
        acc.LoadAccount(settings, n);
        acc.CopyAccountToEdit(n);
        acc.ResetRunTimeValues(n, timeOfDay);
        acc.CheckAccountFiles(*ctx.svc.files, n);
    }
    acc.AcntCurrent = acc.AcntNum > 0 ? 1 : 0;

    ReadRulesAtStartUp(ctx);

    ctx.check.StopRequested = false;
    ctx.check.NoCheckPostponed = false;
    ctx.check.TestInProgress = false;
    ApplySoundAndClientFlags(ctx);
}

void Form_Load(AppContext& ctx) {
    MainView& v = *ctx.view;

    ctx.shell.MenuHooked = true;
    MenuDesigner(ctx);
    CreatePopClient(ctx);
    ctx.shell.FormLoading = true;
    ArrangeMainWindow(ctx);
    ArrangeAccountsPage(ctx);
    v.tray().add();
    v.tray().modify({TrayPlain}, ctx.shell.AppTitle);

    LoadStores(ctx);
    StartOptionsPage(ctx);

    const AccountStore& acc = ctx.accounts;
    AddAccountTabs(ctx);
    ShowAccount(ctx, acc.AcntCurrent);
    if (acc.AcntNum == 0) {
        v.status().setPanelText(1, "No Accounts have been created...");
        ShowNoAccountState(ctx);
    }
    UpdateClockPanel(ctx);

    ctx.shell.RuleReportOpen = ctx.shell.PreviewOpen = ctx.shell.AutoMessageOpen =
        ctx.shell.FirstUseOpen = false;
    ctx.shell.FormLoading = false;

    ctx.shell.CurrentPage = 0;
    for (int page = 0; page < 4; ++page)
        v.setVisible(Element(ctl::fraMain, page), page == 0);
    v.setCaption(ctl::lblBanner, ctx.shell.PageBanners.value(0));
    ShowAccountMessages(ctx, acc.AcntCurrent);
    ctx.list.AcntLastShown = acc.AcntCurrent;
    SetAccountState(ctx);

    SetColumnWidths(ctx);
    v.setFocus(ctl::cmdTakeFocus);
}

void AddAccountTabs(AppContext& ctx) {
    MainView& v = *ctx.view;
    const AccountStore& acc = ctx.accounts;
    v.tabs(TabStrip::Email).clear();
    v.tabs(TabStrip::Accounts).clear();
    for (int n = 1; n <= acc.AcntNum; ++n) {
        const QString image = acc[n].AcntEnabled == 0 ? "MailNoDisabled" : "MailNo";
        v.tabs(TabStrip::Email).addTab(acc[n].AcntName, image);
        v.tabs(TabStrip::Accounts).addTab(acc[n].AcntName, image);
    }
    if (acc.AcntNum == 0) {
        v.tabs(TabStrip::Email).addTab(QString(), "MailNo");
        v.tabs(TabStrip::Accounts).addTab(QString(), "MailNo");
    }
}

void Form_Resize(AppContext& ctx) {
    if (ctx.shell.FormLoading)
        return;
    MainView& v = *ctx.view;
    // In the normal and maximised states the toolkit lays the pages out.
    if (v.windowState() != WindowState::Minimized)
        return;
    // Without a tray nothing could bring a hidden window back: it stays on
    // the task bar, and the user is told why once.
    if (!v.tray().isAvailable()) {
        if (!ctx.shell.NoTraySaid)
            v.status().setPanelText(1, "No system tray: Velmora stays on the task bar.");
        ctx.shell.NoTraySaid = true;
        return;
    }
    HideSecondaryWindows(ctx);
    ctx.svc.events->DoEvents();
    v.hideWindow();
    if (ctx.options.UseInterval == 0)
        v.tray().modify({TrayAutoCheckOff}, "Auto Check is Off");
    UpdateTrayIcon(ctx);
}

void Form_Unload(AppContext& ctx, bool& Cancel) {
    MainView& v = *ctx.view;
    if (ctx.options.CloseButton == 1 && !ctx.shell.QuitRequested) {
        Cancel = true;
        MinimizeToTray(ctx);
        return;
    }
    ctx.shell.Unloading = true;
    ctx.check.StopRequested = true;
    if (ctx.shell.MenuHooked)
        ReleaseMenus(ctx);
    ReleasePopClient(ctx);
    v.tray().remove();

    SettingsStore& settings = *ctx.svc.settings;
    if (ctx.options.RestoreColWidth == 0) {
        for (int column = 1; column <= 5; ++column)
            setting::saveInt(settings, setting::SectionOptions, kColumnWidthKeys[column - 1],
                             v.list().columnWidth(column));
    }
    setting::saveText(settings, setting::SectionOptions, "SortColumnLastUsed",
                      ctx.options.SortColumnLastUsed);
    setting::saveInt(settings, setting::SectionOptions, "SortOrder", ctx.list.SortDescending);

    UnloadSecondaryWindows(ctx);

    Files& files = *ctx.svc.files;
    for (const char* name : {"temporary.eml", "temporary.msg"})
        files.RemoveFile(files.TempFolder() + QLatin1Char('/') + QLatin1String(name));
}

void MinimizeToTray(AppContext& ctx) {
    ctx.view->setWindowState(WindowState::Minimized);
    Form_Resize(ctx);
    if (ctx.view->tray().isAvailable())
        ctx.view->hideWindow();
}

void mnuTrayShow_Click(AppContext& ctx) {
    MainView& v = *ctx.view;
    v.tray().modify({TrayPlain}, ctx.shell.AppTitle);
    v.setWindowState(WindowState::Normal);
    v.showWindow();
    ShowSecondaryWindows(ctx);
}

void mnuTrayQuitApplication_Click(AppContext& ctx) {
    ctx.shell.QuitRequested = true;
    bool cancel = false;
    Form_Unload(ctx, cancel);
    if (!cancel)
        ctx.view->unloadWindow();
}

void mnuTrayAutoCheck_Click(AppContext& ctx) {
    Options working = ctx.options;
    if (working.UseInterval == 1) {
        working.UseInterval = 0;
        ctx.view->tray().modify({TrayAutoCheckOff}, ctx.view->tray().tip());
    } else {
        working.UseInterval = 1;
    }
    ctx.check.NoCheckPostponed = false;
    SaveOptions(ctx, working);
}

void mnuTraySounds_Click(AppContext& ctx) {
    Options working = ctx.options;
    working.PlaySound = working.PlaySound == 1 ? 0 : 1;
    SaveOptions(ctx, working);
}

void tabStrip_MouseDown(AppContext& ctx, const QString& strip) {
    ctx.shell.DragStrip = strip;
    ctx.shell.tmrDragTab->setEnabled(false);
    ctx.shell.tmrDragTab->setEnabled(true);
}

void tabStrip_MouseUp(AppContext& ctx) {
    // Let go before the tick: a click, not a drag.
    ctx.shell.tmrDragTab->setEnabled(false);
    ctx.shell.DragStrip.clear();
}

void tmrDragTab_Timer(AppContext& ctx) {
    ctx.shell.tmrDragTab->setEnabled(false);
    const QString strip = std::exchange(ctx.shell.DragStrip, QString());
    if (strip == ctl::TabStripEmail)
        ctx.view->tabs(TabStrip::Email).beginDrag();
    else if (strip == ctl::TabStripAcnts)
        ctx.view->tabs(TabStrip::Accounts).beginDrag();
}

void tabStrip_DragDrop(AppContext& ctx, const QString& strip, int target) {
    ctx.shell.tmrDragTab->setEnabled(false);
    ctx.shell.DragStrip.clear();
    AccountTabDropped(ctx, strip == ctl::TabStripEmail ? TabStrip::Email : TabStrip::Accounts,
                      target);
}

void tmrStatusBar_Timer(AppContext& ctx) {
    UpdateClockPanel(ctx);
    UpdateTrayIcon(ctx);
}

} // namespace velmora::frmMain
