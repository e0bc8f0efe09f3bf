#include "rules/Rules.h"

#include "context/AppContext.h"
#include "options/IniFile.h"
#include "platform/Controls.h"
#include "platform/Files.h"
#include "platform/MainView.h"

namespace velmora {

namespace {

// A number read from the file; a text that is none reads as the default.
int Number(const QString& text, int fallback) {
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok || value < -32768 || value > 32767)
        return fallback;
    return int(std::nearbyint(value));
}

void ShowFileName(AppContext& ctx) {
    ctx.view->setCaption(ctl::lblRulesFileName,
                         QStringLiteral("FileName: ") + ctx.options.RulesIniFileName);
}

} // namespace

void Rule::JoinDescription() {
    Description[0].clear();
    for (int m = 1; m <= DescCount && m <= MaxRuleEntries; ++m)
        Description[0] += Description[m];
}

QString RulesFilePath(AppContext& ctx) {
    return ctx.svc.files->ProgramFolder() + QLatin1Char('/') + ctx.options.RulesIniFileName;
}

void ReadRules(AppContext& ctx, const QString& path) {
    ctx.rules.ProfilePath = path;
    IniFile ini(*ctx.svc.profiles, ctx.rules.ProfilePath);
    ini.setConfigName(path);
    RuleSet& live = ctx.rules.LiveRules;
    live.RuleCount = Number(ini.KeyGet("Rules", "RuleCount", "0"), 0);
    live.Show = Number(ini.KeyGet("Rules", "Show", "0"), 0);
    live.ShowNew = Number(ini.KeyGet("Rules", "ShowNew", "0"), 0);
    live.Time = Number(ini.KeyGet("Rules", "Time", "30"), 30);
    ShowFileName(ctx);
    ResizeRules(ctx, qMax(live.RuleCount, 0));
    for (int n = 1; n <= live.RuleCount; ++n) {
        Rule& r = live[n];
        const QString section = QStringLiteral("Rule%1").arg(n);
        r.Name = ini.KeyGet(section, "Name", "Rule");
        r.Enabled = Number(ini.KeyGet(section, "Enabled", "1"), 1);
        r.Account = ini.KeyGet(section, "Account", "All Accounts");
        r.Action = Number(ini.KeyGet(section, "Action", "2"), 2);
        r.DescCount = qBound(0, Number(ini.KeyGet(section, "DescCount", "0"), 0), MaxRuleEntries);
        r.Description[0].clear();
        for (int m = 1; m <= r.DescCount; ++m) {
            // The read drops the entry's closing blank; put it back.
            r.Description[m] =
                ini.KeyGet(section, QStringLiteral("Description%1").arg(m), "") + QLatin1Char(' ');
            r.Description[0] += r.Description[m];
        }
    }
}

void WriteRules(AppContext& ctx, const QString& path) {
    ctx.rules.ProfilePath = path;
    // Written into a new file beside the old one, which it replaces at the
    // end: no section of a deleted rule survives, and a crash half-way
    // leaves the old file whole.
    const QString fresh = path + QStringLiteral(".new");
    Files& files = *ctx.svc.files;
    files.RemoveFile(fresh);
    ShowFileName(ctx);
    IniFile ini(*ctx.svc.profiles, ctx.rules.ProfilePath);
    ini.setConfigName(fresh);

    RuleSet& live = ctx.rules.LiveRules;
    const RuleSet& working = ctx.rules.WorkingRules;
    live.RuleCount = working.RuleCount;
    live.Show = working.Show;
    live.ShowNew = working.ShowNew;
    live.Time = working.Time;
    ini.KeySave(QString::number(live.RuleCount), "Rules", "RuleCount");
    ini.KeySave(QString::number(live.Show), "Rules", "Show");
    ini.KeySave(QString::number(live.ShowNew), "Rules", "ShowNew");
    ini.KeySave(QString::number(live.Time), "Rules", "Time");
    if (live.RuleCount >= 1) {
        if (live.rules.size() <= live.RuleCount)
            live.rules.resize(live.RuleCount + 1);
        for (int n = 1; n <= live.RuleCount; ++n) {
            const Rule& w = working[n];
            Rule& r = live[n];
            r.Enabled = w.Enabled;
            r.Name = w.Name;
            r.Account = w.Account;
            r.DescCount = w.DescCount;
            r.Action = w.Action;
            const QString section = QStringLiteral("Rule%1").arg(n);
            ini.KeySave(r.Name, section, "Name");
            ini.KeySave(QString::number(r.Enabled), section, "Enabled");
            ini.KeySave(r.Account, section, "Account");
            ini.KeySave(QString::number(r.Action), section, "Action");
            ini.KeySave(QString::number(r.DescCount), section, "DescCount");
            r.Description[0].clear();
            for (int m = 1; m <= r.DescCount; ++m) {
                r.Description[m] = w.Description[m];
                ini.KeySave(r.Description[m], section, QStringLiteral("Description%1").arg(m));
                r.Description[0] += r.Description[m];
            }
        }
    }
    files.MoveFileOver(fresh, path);
}

void ResizeRules(AppContext& ctx, int count) {
    RuleSet& live = ctx.rules.LiveRules;
    RuleSet& working = ctx.rules.WorkingRules;
    live.rules.resize(count + 1);
    working.rules.resize(count + 1);
    // The entries are laid out anew: what lies beyond a rule's DescCount is
    // lost, and the working entries follow the live ones.
    for (int n = 0; n <= count; ++n) {
        Rule& r = live[n];
        for (int m = r.DescCount + 1; m <= MaxRuleEntries; ++m)
            r.Description[m].clear();
        r.JoinDescription();
        Rule& w = working[n];
        for (int m = 1; m <= MaxRuleEntries; ++m)
            w.Description[m] = r.Description[m];
        w.JoinDescription();
    }
}

void CopyRulesToWorking(AppContext& ctx) {
    const RuleSet& live = ctx.rules.LiveRules;
    RuleSet& working = ctx.rules.WorkingRules;
    working.RuleCount = live.RuleCount;
    if (working.RuleCount < 1) {
        ctx.rules.CurrentRule = 0;
        return;
    }
    working.rules = live.rules;
    for (int n = 1; n <= working.RuleCount; ++n) {
        working[n].RedoCount = working[n].DescCount;
        working[n].JoinDescription();
    }
    working.Show = live.Show;
    working.ShowNew = live.ShowNew;
    working.Time = live.Time;
    if (ctx.rules.CurrentRule > working.RuleCount)
        ctx.rules.CurrentRule = working.RuleCount;
}

} // namespace velmora
