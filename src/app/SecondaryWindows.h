#pragma once

namespace velmora {

struct AppContext;

// The small windows above the main one go to the tray with it and come back
// with it.
void HideSecondaryWindows(AppContext& ctx);
void ShowSecondaryWindows(AppContext& ctx);
void UnloadSecondaryWindows(AppContext& ctx);
// The welcome dialog of the first start.
void ShowFirstUse(AppContext& ctx);

} // namespace velmora
