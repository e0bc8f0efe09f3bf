#include "app/Main.h"

#include "app/SecondaryWindows.h"
#include "app/frmMain.h"
#include "checking/Schedule.h"
#include "context/AppContext.h"
#include "options/FileReports.h"
#include "options/MenuColours.h"
#include "options/Setting.h"
#include "platform/AutoStart.h"
#include "platform/Controls.h"
#include "platform/Files.h"
#include "platform/InstanceGuard.h"
#include "platform/MainView.h"

namespace velmora {

bool Main(AppContext& ctx) {
    if (!ctx.svc.instance->claim())
        return false;
    // Alone now: what a crash left half-written can go.
    ctx.svc.files->RemoveStaleTemporaries();

    SettingsStore& settings = *ctx.svc.settings;
    ctx.shell.FirstUse = setting::readInt(settings, setting::SectionSettings, "FirstUse", 0);
    ctx.shell.HelpFile = ctx.svc.files->InstallDataFolder() + QStringLiteral("/help/velmora.html");
    ctx.messages.MessageCapacity = 0;
    ctx.shell.AppTitle = QStringLiteral("Velmora");
    ctx.shell.PageBanners = {"Email", "Accounts", "Rules", "Options"};
    ApplyMenuColourDefault(ctx);

    frmMain::Load(ctx);
    MainView& v = *ctx.view;

    // A short interval late in the minute starts one minute later, so that
    // the first check does not come almost at once.
    const int interval = ctx.options.Hours * 60 + ctx.options.Minutes;
    const int extra = interval < 16 && ctx.now().time().second() > 19 ? 1 : 0;
    NextAutoCheck(ctx, extra);

    SetAutoCheckTimers(ctx);
    v.status().setPanelText(4, ctx.check.NextCheckText);

    if (ctx.options.MinimizeStartUp == 1)
        v.setWindowState(WindowState::Minimized);
    else
        v.showWindow();

    // A new installation starts at logon until the user says otherwise.
    if (ctx.shell.FirstUse == 0) {
        ShowFirstUse(ctx);
        ctx.options.RunStartUp = 1;
        setting::saveInt(settings, setting::SectionOptions, "RunStartUp", 1);
        ShowFileProblem(ctx, ctx.svc.autoStart->SetRunAtStartUp());
        setting::saveInt(settings, setting::SectionSettings, "FirstUse", 1);
    }

    ctx.check.StartUpPaused = false;
    const QString pause = Element(ctl::tbrButtons, ctl::PauseStartupCheck);
    if (ctx.options.EmailCheckStartUp == 1 && ctx.accounts.AcntNum >= 1) {
        v.setCaption(pause, "StartUp: Pause       ");
        v.setToolTip(pause, "Pause the StartUp Check Timer");
        v.setVisible(pause, true);
        ctx.check.tmrMailStartUp->setEnabled(true);
        ctx.check.StartUpDone = false;
    } else {
        v.setVisible(pause, false);
        ctx.check.tmrMailStartUp->setEnabled(false);
        ctx.check.StartUpDone = true;
    }
    return true;
}

} // namespace velmora
