#pragma once

namespace velmora {

struct AppContext;

// What a check says when it ends: sounds, and after a timed walk the Auto
// Check Message.
void AnnounceCheck(AppContext& ctx, bool anyNew, bool anyMessages);
// 0 means all accounts.
void PlayCheckSound(AppContext& ctx, int account);

} // namespace velmora
