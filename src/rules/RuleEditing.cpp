#include "context/AppContext.h"
#include "context/PageCalls.h"

namespace velmora {

// The rule editor comes with its own change; until then the buttons that
// reach it change nothing.
void SaveRules(AppContext&) {}
void ShowCurrentRule(AppContext&) {}
void FillRuleAccounts(AppContext&) {}

} // namespace velmora
