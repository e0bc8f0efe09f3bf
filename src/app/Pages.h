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
void ShowHelp(AppContext& ctx, int context);

} // namespace velmora
