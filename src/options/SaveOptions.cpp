#include "options/SaveOptions.h"

#include "checking/Schedule.h"
#include "context/AppContext.h"
#include "options/FileReports.h"
#include "options/MenuColours.h"
#include "platform/AutoStart.h"
#include "platform/Controls.h"
#include "platform/MainView.h"

namespace velmora {

namespace {

bool Differs(const Options& a, const Options& b, std::initializer_list<const char*> keys) {
    for (const char* key : keys) {
        if (a.valueText(key) != b.valueText(key))
            return true;
    }
    return false;
}

} // namespace

void SaveOptions(AppContext& ctx, const Options& working) {
    Options& record = ctx.options;

    // The logon entry follows a change of the box, not every save, so an
    // entry removed by hand stays away until the box is switched.
    if (working.RunStartUp != record.RunStartUp) {
        if (working.RunStartUp == 1)
            ShowFileProblem(ctx, ctx.svc.autoStart->SetRunAtStartUp());
        else
            ctx.svc.autoStart->ClearRunAtStartUp();
    }

    const bool styleChanged =
        Differs(working, record, {"DTheme", "TopColour", "MiddleColour", "BottomColour"});
    const bool intervalSwitched = working.UseInterval != record.UseInterval;
    const bool timingChanged = Differs(
        working, record, {"Hours", "Minutes", "NoCheck", "NoCheckTimeBegin", "NoCheckTimeEnd"});

    for (const QString& key : Options::saveOrder())
        record.setValueText(key, working.valueText(key));
    record.ComputeInterval();
    if (styleChanged)
        WriteMenuStyleFile(ctx);
    record.WriteOptions(*ctx.svc.settings);
    ApplySoundAndClientFlags(ctx);

    // Auto Check follows at once. Switching it off and on again returns to
    // the same next time; a new interval or window works it out afresh.
    MainView& v = *ctx.view;
    SetAutoCheckTimers(ctx);
    if (record.UseInterval == 1) {
        if (intervalSwitched && !timingChanged) {
            ctx.check.NextCheckText = ctx.check.SavedNextCheckText;
            ctx.check.NextCheckTime = ctx.check.SavedNextCheckTime;
        }
        if (timingChanged) {
            ctx.check.NoCheckPostponed = false;
            NextAutoCheck(ctx, 0);
        }
    }
    v.status().setPanelText(4, ctx.check.NextCheckText);
}

void ApplySoundAndClientFlags(AppContext& ctx) {
    ctx.shell.SoundMaster = ctx.options.PlaySound != 0;
    ctx.view->setCaption(ctl::mnuTraySounds, ctx.shell.SoundMaster ? "Soun&ds - On|#SoundOn"
                                                                   : "Soun&ds - Off|#SoundOff");
    ctx.shell.DefaultSoundValid = IsValidFile(*ctx.svc.files, ctx.options.DefaultSound, ".wav");
    ctx.shell.DefaultClientValid = IsValidFile(*ctx.svc.files, ctx.options.DefaultClient, ".exe");
}

} // namespace velmora
