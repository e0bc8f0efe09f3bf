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

// The four actions bound to a selected row, on the toolbar and the list's
// menu: Preview, Delete, Reply, Open.
void SetSelectionActions(AppContext& ctx, bool enabled);
// Whether SelectedMessage is a message of the account showing; every action
// on a selection asks before it touches the store.
bool SelectedMessageValid(const AppContext& ctx);
// Pointer events on the list: a row was clicked, then the click itself; a
// right button let go over row `row` (0 for none) pops up the list's menu.
void lvwEmail_ItemClick(AppContext& ctx);
void lvwEmail_Click(AppContext& ctx);
void lvwEmail_RightUp(AppContext& ctx, int row);

} // namespace velmora
