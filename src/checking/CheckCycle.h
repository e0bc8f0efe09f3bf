#pragma once

#include <QString>

namespace velmora {

struct AppContext;

// The walks over the accounts and what frames them.
void CheckAllAccounts(AppContext& ctx);
void AutoCheckAccounts(AppContext& ctx);
void StartUpCheckAccounts(AppContext& ctx);
// action is "Suspend" or "Restore"; the two do not nest.
void SuspendAutoCheck(AppContext& ctx, const QString& action);

} // namespace velmora
