#pragma once

#include "context/ShellCalls.h"

#include <QString>

namespace velmora {

struct AppContext;

// One-time arrangement of the main window at load.
void ArrangeMainWindow(AppContext& ctx);

void tbrMainButtons_ButtonClick(AppContext& ctx, const QString& key);
void tbrButtons_ButtonClick(AppContext& ctx, int index);
void SetAccountState(AppContext& ctx);
void ShowNoAccountState(AppContext& ctx);
void StartClientProgram(AppContext& ctx);
// The client error box of the client selection.
void ShowClientError(AppContext& ctx);
void ShowHelp(AppContext& ctx, int context);
// The links of the About section and the tray menu.
void OpenHomePage(AppContext& ctx);
void OpenSupportMail(AppContext& ctx);
void OpenReadMe(AppContext& ctx);
// Shows the window on the Options page at section `node`, 1 to 6.
void ShowOptionsSection(AppContext& ctx, int node);

} // namespace velmora
