#pragma once

#include <QString>
#include <QStringList>

namespace velmora {

struct AppContext;

// The last step of every check: opens the Rule Report when the rules marked
// messages and its settings ask for it. True when it opened.
bool ShowRuleReport(AppContext& ctx);

// The Rule Report window: it opens on its first tab and closes by itself
// after the rules' Time in seconds, unless its timer is stopped.
void LoadRuleReport(AppContext& ctx);
void UnloadRuleReport(AppContext& ctx);
void RuleReportTabClick(AppContext& ctx, int tab);
// "Timer", "DeleteNow" or "Exit".
void RuleReportButtonClick(AppContext& ctx, const QString& key);
void tmrRuleReport_Timer(AppContext& ctx);

// What the Rule Report shows as it opens: a line per marked account on each
// side, or the side's "No ..." text, and how many text lines its labels are
// sized for.
struct RuleReportContent {
    QString deleteText;
    int deleteAccounts = 0;
    QString spamText;
    int spamAccounts = 0;
    int lines = 0;
};
RuleReportContent RuleReportTexts(const AppContext& ctx);
// The report's tabs, left to right.
const QStringList& RuleReportTabs();
// Delete Now on the report's tab `tab`: every account's messages the rules
// marked for deletion, through the list's selected rows, or every
// account's spam; nothing is asked, and the interface is held meanwhile.
void RuleReportDeleteNow(AppContext& ctx, const QString& tab);

} // namespace velmora
