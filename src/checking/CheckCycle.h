#pragma once

#include <QString>

namespace velmora {

struct AppContext;

// The walks over the accounts and what frames them.
void CheckAccount(AppContext& ctx, int account);
void CheckAllAccounts(AppContext& ctx);
// The Check button of the Email page: the account shown, enabled or not.
void CheckSingleAccount(AppContext& ctx);
void AutoCheckAccounts(AppContext& ctx);
void StartUpCheckAccounts(AppContext& ctx);
void ReportIncompleteAccounts(AppContext& ctx);
// action is "Suspend" or "Restore"; the two do not nest.
void SuspendAutoCheck(AppContext& ctx, const QString& action);
// Disables the interface around a check, a connection test and a deletion,
// with or without the Stop button, and enables it again.
void SetCheckingInterface(AppContext& ctx, bool enabled, bool showStop);

} // namespace velmora
