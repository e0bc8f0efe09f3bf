#pragma once

#include <QString>

namespace velmora {

struct AppContext;

// One-time arrangement of the main window at load.
void ArrangeMainWindow(AppContext& ctx);

void tbrMainButtons_ButtonClick(AppContext& ctx, const QString& key);
void tbrButtons_ButtonClick(AppContext& ctx, int index);
// Shows a page without changing CurrentPage; nothing while the Email page
// is current or a connection test runs.
void ShowPage(AppContext& ctx, int page);
void SetAccountState(AppContext& ctx);
void ShowNoAccountState(AppContext& ctx);
void StartClientProgram(AppContext& ctx);
void ShowHelp(AppContext& ctx, int context);

} // namespace velmora
