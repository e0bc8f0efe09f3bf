#pragma once

namespace velmora {

struct AppContext;

// The single refresh of the Email page for an account: list, tab, toolbar,
// panels. Nothing edits the list row by row; row n is message n.
void ShowAccountMessages(AppContext& ctx, int account);
void SetAccountTabImage(AppContext& ctx, int account);
// A click on an account's tab on the Email page: the list shows it, read
// from the store; no server is asked.
void TabStripEmail_Click(AppContext& ctx);
// Selects a tab of the Email page as a click on it would.
void SelectEmailTab(AppContext& ctx, int account);

} // namespace velmora
