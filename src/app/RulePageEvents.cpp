#include "app/RulePageEvents.h"

#include "app/Gate.h"
#include "context/AppContext.h"
#include "platform/Controls.h"
#include "rules/RuleEditing.h"

namespace velmora {

void RulePageEvents::MainButtonClick(const QString& key) {
    frmMainEvents::MainButtonClick(key);
    // With rules the shell shows the current one; without, the empty page
    // is laid out here.
    if (key == QLatin1String("Rules") && ctx.shell.CurrentPage == 2 &&
        ctx.rules.WorkingRules.RuleCount < 1 && GateAdmits(ctx, Button(ctl::tbrMainButtons, key)))
        LoadRulePage(ctx);
}

void RulePageEvents::ToolbarButtonClick(const QString& toolbar, const QString& key) {
    const bool ours =
        toolbar == ctl::tbrRules || toolbar == ctl::tbrRuleUpdate || toolbar == ctl::tbrMoveRules;
    if (!ours) {
        frmMainEvents::ToolbarButtonClick(toolbar, key);
        return;
    }
    if (GateAdmits(ctx, Button(toolbar, key)))
        RulesToolbarClick(ctx, toolbar, key);
}

void RulePageEvents::ValueChanged(const QString& control) {
    if (GateAdmits(ctx, control) && RuleControlChanged(ctx, control))
        return;
    frmMainEvents::ValueChanged(control);
}

} // namespace velmora
