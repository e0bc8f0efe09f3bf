#pragma once

namespace velmora {

struct AppContext;

// What the shell's buttons and menus ask of the editing pages. Each page
// fills in its own.

// Accounts: the account being edited is saved, or its edit undone.
void SaveAccount(AppContext& ctx);
void CancelAccountEdit(AppContext& ctx);

// Rules: the rules are saved; the current rule is shown (again).
void SaveRules(AppContext& ctx);
void ShowCurrentRule(AppContext& ctx);
// The list of accounts a rule can be bound to, after the accounts changed.
void FillRuleAccounts(AppContext& ctx);

// Options: the working copy is saved, or reloaded from the record; a
// section of the page is shown by its node, 1 to 6.
void SaveOptionsPage(AppContext& ctx);
void CancelOptionsEdit(AppContext& ctx);
void ShowOptionsPage(AppContext& ctx, int node);

} // namespace velmora
