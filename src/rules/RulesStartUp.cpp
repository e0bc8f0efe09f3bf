#include "rules/RulesStartUp.h"

#include "context/AppContext.h"
#include "rules/RuleEditing.h"
#include "rules/Rules.h"

namespace velmora {

void ReadRulesAtStartUp(AppContext& ctx) {
    ReadRules(ctx, RulesFilePath(ctx));
    ctx.rules.CurrentRule = ctx.rules.LiveRules.RuleCount >= 1 ? 1 : 0;
    // The Rules page starts from what the file holds.
    LoadRulePage(ctx);
}

} // namespace velmora
