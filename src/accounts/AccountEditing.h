#pragma once

#include "platform/MainView.h"

#include <QString>

namespace velmora {

struct AppContext;

// The Accounts page: it edits a working copy of the current account and
// changes the record only on a save.

// What the page shows whatever the account: limits, tips, colour boxes.
void ArrangeAccountsPage(AppContext& ctx);
// Working copy and page from the record of account n (0: the placeholder).
void ShowAccount(AppContext& ctx, int n);
// Compares the controls with the record and sets the buttons to match.
void AccountDirtyCheck(AppContext& ctx);
// A control of the page changed by the user's hand: the working copy takes
// its value. False for a control that is not the page's.
bool AccountControlChanged(AppContext& ctx, const QString& control);
// Validates and stores the current account; false if nothing was stored.
bool StoreAccount(AppContext& ctx);
void AddAccount(AppContext& ctx);
// The user selected a tab of TabStripAcnts.
void TabStripAcnts_Click(AppContext& ctx);
void tbrColour_Click(AppContext& ctx);
void lblColourBox_Click(AppContext& ctx, int box);
// The pointer left the colour boxes for the page around them.
void fraAcnt_MouseMove(AppContext& ctx);

// Deleting and reordering: the tree is kept as an image of the list, so
// both rewrite every account whose number they touch.
void DeleteAccount(AppContext& ctx);
// Exchanges account n with account n + offset.
void SwapAccounts(AppContext& ctx, int n, int offset);
void SetMoveButtons(AppContext& ctx);
// The current account's tab was dropped on tab `target` of a strip.
void AccountTabDropped(AppContext& ctx, TabStrip strip, int target);

} // namespace velmora
