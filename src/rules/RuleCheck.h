#pragma once

namespace velmora {

struct AppContext;

// Decides the Delete and Spam marks of one captured message by the live
// rules, and counts them on the account.
void RuleCheck(AppContext& ctx, int account, int message);

} // namespace velmora
