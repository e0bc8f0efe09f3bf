#include "rules/RuleReport.h"

#include "context/AppContext.h"

namespace velmora {

bool ShowRuleReport(AppContext& ctx) {
    ctx.check.RuleReportWanted = false;
    if (ctx.rules.LiveRules.Show != 1)
        return false;
    int first = 0;
    for (int n = 1; n <= ctx.accounts.AcntNum && first == 0; ++n) {
        const Account& a = ctx.accounts[n];
        if (a.AcntDeleteCount > 0 || a.AcntSpamCount > 0)
            first = n;
    }
    if (first == 0)
        return false;
    // Only the first marked account is asked whether it has new mail.
    const int showNew = ctx.rules.LiveRules.ShowNew;
    if (showNew != 0 && !(showNew == 1 && ctx.accounts[first].AcntHasNew))
        return false;
    if (ctx.shell.RuleReportOpen)
        return false;
    ctx.check.RuleReportWanted = true;
    return true;
}

} // namespace velmora
