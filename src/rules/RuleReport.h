#pragma once

namespace velmora {

struct AppContext;

// The last step of every check: opens the Rule Report when the rules marked
// messages and its settings ask for it. True when it opened.
bool ShowRuleReport(AppContext& ctx);

} // namespace velmora
