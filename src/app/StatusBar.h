#pragma once

namespace velmora {

struct AppContext;

// Panel 5: today's date and the time of day.
void UpdateClockPanel(AppContext& ctx);
// Panels 1 to 4 for the account shown.
void RefreshAccountPanels(AppContext& ctx, int account);

} // namespace velmora
