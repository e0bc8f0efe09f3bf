#pragma once

#include <QString>

namespace velmora {

struct AppContext;

// The main form's own procedures: its load, resize and unload, going to and
// coming back from the tray, and the clock timer.
namespace frmMain {

// Makes the form's timers in their design state and runs Form_Load.
void Load(AppContext& ctx);
// The timers alone, for a program that runs the logic without the form.
void CreateTimers(AppContext& ctx);
void Form_Load(AppContext& ctx);
void Form_Resize(AppContext& ctx);
void Form_Unload(AppContext& ctx, bool& Cancel);

// What Form_Load reads: options, accounts and rules, with the run-time values
// that follow from them. The command line loads the stores through it too.
void LoadStores(AppContext& ctx);

// One tab per account on both tab strips, or the placeholder tab.
void AddAccountTabs(AppContext& ctx);

// Minimise, which sends the whole program to the tray, then hide.
void MinimizeToTray(AppContext& ctx);
void mnuTrayShow_Click(AppContext& ctx);
void mnuTrayQuitApplication_Click(AppContext& ctx);
// Switches Auto Check on or off and saves the options; allowed during a
// check.
void mnuTrayAutoCheck_Click(AppContext& ctx);
// Switches the sounds on or off and saves the options.
void mnuTraySounds_Click(AppContext& ctx);
// A press on a tab of `strip` held until tmrDragTab ticks starts a drag;
// letting go first is an ordinary click.
void tabStrip_MouseDown(AppContext& ctx, const QString& strip);
void tabStrip_MouseUp(AppContext& ctx);
void tmrDragTab_Timer(AppContext& ctx);
// A dragged tab let go over tab `target` of `strip`: the current account
// and the target's exchange places.
void tabStrip_DragDrop(AppContext& ctx, const QString& strip, int target);
void tmrStatusBar_Timer(AppContext& ctx);

} // namespace frmMain
} // namespace velmora
