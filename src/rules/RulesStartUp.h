#pragma once

namespace velmora {

struct AppContext;

// Reads the Rules file named by the options at start-up.
void ReadRulesAtStartUp(AppContext& ctx);

} // namespace velmora
