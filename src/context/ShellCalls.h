#pragma once

namespace velmora {

struct AppContext;

// What the other subsystems ask of the application shell: the pages, the
// status bar and the tray picture.

// Shows a page without changing CurrentPage; nothing while the Email page
// is current or a connection test runs.
void ShowPage(AppContext& ctx, int page);
// Panel 5: today's date and the time of day.
void UpdateClockPanel(AppContext& ctx);
// Panels 1 to 4 for the account shown.
void RefreshAccountPanels(AppContext& ctx, int account);
// Moves the tray picture on while the window is hidden.
void UpdateTrayIcon(AppContext& ctx);

// Numbers of the tray pictures.
constexpr int TrayPlain = 7;
constexpr int TrayNoConnection = 8;
constexpr int TrayAutoCheckOff = 9;
// 1 to 6 are the account colours' fields; the digits lie over one of them.
constexpr int TrayOneDigit = 10;   // 10 + digit: a count below 10
constexpr int TrayUnitsDigit = 20; // 20 + units of a two-digit count
constexpr int TrayTensDigit = 30;  // 29 + tens, 1 to 9
constexpr int TrayHundredOrMore = 39;
constexpr int TrayEmpty = 40;

} // namespace velmora
