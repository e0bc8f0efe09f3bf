#include "rules/Rules.h"

#include "context/AppContext.h"
#include "options/FileReports.h"
#include "options/IniFile.h"
#include "platform/Controls.h"
#include "platform/Files.h"
#include "platform/MainView.h"
#include "platform/MessageBoxes.h"
#include "platform/ProfileFiles.h"

#include <cmath>
#include <limits>
#include <optional>

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

// A count the file gives as no number, or outside its range: what can be
// read is read instead, and the box tells the user.
struct CountProblem {
    QString where; // "[Rules] RuleCount=-3"
    QString kept;  // "2 rules were read"
};

// Numbered sections or keys that are there, counted from 1 without a gap.
template <typename Present> int CountPresent(int maximum, Present present) {
    int n = 0;
    while (n < maximum && present(n + 1))
        ++n;
    return n;
}

// The count as written, or none when it is no whole number within range.
std::optional<int> Count(const QString& text, int maximum) {
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok || value < 0 || value > maximum)
        return std::nullopt;
    return int(std::nearbyint(value));
}

void ShowCountProblems(AppContext& ctx, const QString& path, const QVector<CountProblem>& found) {
    if (found.isEmpty())
        return;
    const QString CRLF = QStringLiteral("\r\n");
    QString text = QStringLiteral("Some counts in the Rules file are out of range:") +
                   QString(10, ' ') + CRLF + path + CRLF + CRLF;
    constexpr int shown = 10;
    for (int i = 0; i < found.size() && i < shown; ++i)
        text += found[i].where + QStringLiteral(": ") + found[i].kept + CRLF;
    if (found.size() > shown)
        text += QStringLiteral("and %1 more").arg(found.size() - shown) + CRLF;
    text += CRLF + QStringLiteral("What could be read is kept; the next save writes the counts") +
            CRLF + QStringLiteral("as they are now.") + CRLF + CRLF;
    ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - Rules File Counts"), text,
                        BoxIcon::Information, BoxButtons::Ok);
}

void ShowFileName(AppContext& ctx) {
    ctx.view->setCaption(ctl::lblRulesFileName,
                         QStringLiteral("FileName: ") + ctx.options.RulesIniFileName);
}

} // namespace

void Rule::JoinDescription() {
    QString joined;
    for (int m = 1; m <= DescCount && m <= MaxRuleEntries; ++m)
        joined += Description[m];
    // An equal text is kept: the working copy then shares the live set's
    // instead of holding every rule's entries a third time.
    if (joined != Description[0])
        Description[0] = joined;
}

QString RulesFilePath(AppContext& ctx) {
    return ctx.svc.files->ProgramFolder() + QLatin1Char('/') + ctx.options.RulesIniFileName;
}

void ReadRules(AppContext& ctx, const QString& path) {
    ctx.rules.ProfilePath = path;
    // A file that is no Rules file is put aside rather than read as empty
    // and then saved over.
    QString reason, keptAs;
    if (ctx.svc.profiles->PutAsideIfUnreadable(path, QStringLiteral("Rules"), &reason, &keptAs))
        ShowFileProblem(ctx, FileProblem::unreadable(path, reason, keptAs));
    IniFile ini(*ctx.svc.profiles, ctx.rules.ProfilePath);
    ini.setConfigName(path);
    RuleSet& live = ctx.rules.LiveRules;
    QVector<CountProblem> problems;
    const QString ruleCount = ini.KeyGet("Rules", "RuleCount", "0");
    if (const auto count = Count(ruleCount, std::numeric_limits<qint16>::max())) {
        live.RuleCount = *count;
    } else {
        live.RuleCount = CountPresent(std::numeric_limits<qint16>::max(), [&](int n) {
            return !ini.SectionGet(QStringLiteral("Rule%1").arg(n)).isEmpty();
        });
        problems.append({QStringLiteral("[Rules] RuleCount=") + ruleCount,
                         QStringLiteral("%1 rules were read").arg(live.RuleCount)});
    }
    live.Show = Number(ini.KeyGet("Rules", "Show", "0"), 0);
    live.ShowNew = Number(ini.KeyGet("Rules", "ShowNew", "0"), 0);
    live.Time = Number(ini.KeyGet("Rules", "Time", "30"), 30);
    ShowFileName(ctx);
    ResizeRules(ctx, live.RuleCount);
    // Tells a missing key from a blank one.
    const QString absent(1, QChar(0xFFFF));
    for (int n = 1; n <= live.RuleCount; ++n) {
        Rule& r = live[n];
        const QString section = QStringLiteral("Rule%1").arg(n);
        r.Name = ini.KeyGet(section, "Name", "Rule");
        r.Enabled = Number(ini.KeyGet(section, "Enabled", "1"), 1);
        r.Account = ini.KeyGet(section, "Account", "All Accounts");
        r.Action = Number(ini.KeyGet(section, "Action", "2"), 2);
        const QString descCount = ini.KeyGet(section, "DescCount", "0");
        if (const auto count = Count(descCount, MaxRuleEntries)) {
            r.DescCount = *count;
        } else {
            r.DescCount = CountPresent(MaxRuleEntries, [&](int m) {
                return ini.KeyGet(section, QStringLiteral("Description%1").arg(m), absent) !=
                       absent;
            });
            problems.append(
                {QLatin1Char('[') + section + QStringLiteral("] DescCount=") + descCount,
                 QStringLiteral("%1 entries were read").arg(r.DescCount)});
        }
        r.Description[0].clear();
        for (int m = 1; m <= r.DescCount; ++m) {
            // The read drops the entry's closing blank; put it back.
            r.Description[m] =
                ini.KeyGet(section, QStringLiteral("Description%1").arg(m), "") + QLatin1Char(' ');
            r.Description[0] += r.Description[m];
        }
    }
    ShowCountProblems(ctx, path, problems);
}

void WriteRules(AppContext& ctx, const QString& path) {
    ctx.rules.ProfilePath = path;
    ShowFileName(ctx);
    IniFile ini(*ctx.svc.profiles, ctx.rules.ProfilePath);
    ini.setConfigName(path);
    // Built in memory and written once: no section of a deleted rule
    // survives, and a failed write leaves the old file whole.
    ini.StartNew();

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
    if (!ini.CommitNew())
        ShowFileProblem(ctx, FileProblem::notWritten(path, ini.WriteFailure()));
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
