#include "options/SaveOptions.h"

#include "accounts/AccountEditing.h"
#include "checking/Schedule.h"
#include "context/AppContext.h"
#include "messages/MessageList.h"
#include "messages/Sorting.h"
#include "options/ClientChoice.h"
#include "options/FileReports.h"
#include "options/MenuColours.h"
#include "options/OptionsEditing.h"
#include "options/Setting.h"
#include "platform/AutoStart.h"
#include "platform/Controls.h"
#include "platform/MainView.h"
#include "platform/MessageBoxes.h"
#include "platform/SettingsStore.h"

namespace velmora {

namespace {

bool Differs(const Options& a, const Options& b, std::initializer_list<const char*> keys) {
    for (const char* key : keys) {
        if (a.valueText(key) != b.valueText(key))
            return true;
    }
    return false;
}

// Whether the store now holds what the record says: a file that could not
// be written keeps its old values.
bool StoredAsRecorded(SettingsStore& settings, const Options& record) {
    for (const QString& key : Options::saveOrder()) {
        const QString stored = settings.GetSetting(setting::AppPath, setting::SectionOptions, key,
                                                   QStringLiteral("\x01"));
        if (stored != record.valueText(key))
            return false;
    }
    return true;
}

// Headers lose their sort pictures; with sorting on, the account showing is
// sorted by the chosen column and shown again.
void ApplyMessageSort(AppContext& ctx) {
    const Options& o = ctx.options;
    for (const QString& column : ListColumns())
        ctx.view->setImage(Button(ctl::lvwEmail, column), QStringLiteral("Blank"));
    if (o.MessageSort != 1)
        return;
    SortColumnFromOption(ctx, o.SortColumn);
    ctx.list.SortDescending = o.SortOrder;
    const int account = ctx.accounts.AcntCurrent;
    if (account >= 1 && account <= ctx.accounts.AcntNum) {
        SortMessages(ctx, account, ctx.list.SortColumnName);
        ShowAccountMessages(ctx, account);
    } else if (ListColumns().contains(ctx.list.SortColumnName)) {
        ctx.view->setImage(Button(ctl::lvwEmail, ctx.list.SortColumnName),
                           o.SortOrder != 0 ? "Descending" : "Ascending");
    }
}

} // namespace

bool SaveOptions(AppContext& ctx, const Options& working) {
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

    const Options before = record;
    for (const QString& key : Options::saveOrder())
        record.setValueText(key, working.valueText(key));
    record.ComputeInterval();
    record.WriteOptions(*ctx.svc.settings);
    if (!StoredAsRecorded(*ctx.svc.settings, record)) {
        // The store has told of its file; the record stays as saved before
        // and the page keeps what was chosen, still to be saved.
        record = before;
        return false;
    }
    if (styleChanged)
        WriteMenuStyleFile(ctx);
    ApplySoundAndClientFlags(ctx);
    ApplyMessageSort(ctx);
    RefreshClientIcons(ctx);

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

    LoadOptionsPage(ctx);
    ApplyButtonStyle(ctx);
    ShowAccount(ctx, ctx.accounts.AcntCurrent);
    // The page may not be showing; then the focus stays where it is.
    if (v.isVisible(Element(ctl::fraMain, 3)))
        v.setFocus(ctl::TreeView);
    return true;
}

void ApplySoundAndClientFlags(AppContext& ctx) {
    ctx.shell.SoundMaster = ctx.options.PlaySound != 0;
    ctx.view->setCaption(ctl::mnuTraySounds, ctx.shell.SoundMaster ? "Soun&ds - On|#SoundOn"
                                                                   : "Soun&ds - Off|#SoundOff");
    ctx.shell.DefaultSoundValid = IsValidSound(*ctx.svc.files, ctx.options.DefaultSound);
    ctx.shell.DefaultClientValid = IsValidClient(*ctx.svc.files, ctx.options.DefaultClient);
}

} // namespace velmora
