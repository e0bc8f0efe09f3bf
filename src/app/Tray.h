#pragma once

namespace velmora {

struct AppContext;

// Numbers of the tray pictures.
constexpr int TrayPlain = 7;
constexpr int TrayNoConnection = 8;
constexpr int TrayAutoCheckOff = 9;

// Moves the tray picture on while the window is hidden.
void UpdateTrayIcon(AppContext& ctx);

} // namespace velmora
