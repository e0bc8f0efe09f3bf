#include "rules/RuleReport.h"

#include "app/AppContext.h"

namespace velmora {

bool ShowRuleReport(AppContext&) {
    return false;
}

} // namespace velmora
