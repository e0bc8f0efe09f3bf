#pragma once

#include <QString>

namespace velmora {

struct AppContext;

// When timed checks happen: the next check time, kept and compared as text,
// the quiet window, and the start-up countdown with Pause and Continue.
void NextAutoCheck(AppContext& ctx, int extraMinutes);
// The timers and the tray entry as UseInterval says: the Auto Check timer,
// or the clock timer with "Auto Check Off".
void SetAutoCheckTimers(AppContext& ctx);
void tmrMailTime_Timer(AppContext& ctx);
void tmrMailStartUp_Timer(AppContext& ctx);
void EndStartUpCountdown(AppContext& ctx);
void ToggleStartUpPause(AppContext& ctx);
// action is "Suspend" or "Restore".
void SuspendStartUpTimer(AppContext& ctx, const QString& action);

} // namespace velmora
