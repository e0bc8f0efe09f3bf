#pragma once

namespace velmora {

struct AppContext;

// The program's start: refuses a second instance, loads the main form, sets
// the first Auto Check and the timers, shows the window or goes to the tray.
// False when another instance runs; then nothing was touched.
bool Main(AppContext& ctx);

} // namespace velmora
