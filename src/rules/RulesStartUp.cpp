#include "rules/RulesStartUp.h"

#include "app/AppContext.h"

namespace velmora {

void ReadRulesAtStartUp(AppContext&) {}

} // namespace velmora
