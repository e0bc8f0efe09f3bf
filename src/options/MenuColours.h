#pragma once

namespace velmora {

struct AppContext;

// The popup menus' colours and captions.
void ApplyMenuColourDefault(AppContext& ctx);
void MenuDesigner(AppContext& ctx);
void ReleaseMenus(AppContext& ctx);
// Writes the menu style file anew from the record.
void WriteMenuStyleFile(AppContext& ctx);

} // namespace velmora
