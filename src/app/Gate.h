#pragma once

#include <QString>

namespace velmora {

struct AppContext;

// The one place that decides whether a user event may act. While a check,
// a connection test or a deletion holds the interface, only Stop, Show,
// Auto Check, Quit and the window's own events get through; everything else
// the user does then is dropped, whatever nested loop delivered it.
// `control` names what fired: a control of ControlTable(), or "frmMain"
// for the window's resize and close.
bool GateAdmits(const AppContext& ctx, const QString& control);

} // namespace velmora
