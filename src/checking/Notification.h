#pragma once

#include <QString>

namespace velmora {

struct AppContext;

// What a check says when it ends: sounds, and after a timed walk the Auto
// Check Message.
void AnnounceCheck(AppContext& ctx, bool anyNew, bool anyMessages);
// 0 means all accounts.
void PlayCheckSound(AppContext& ctx, int account);
void PlaySoundFile(AppContext& ctx, int account);
// Lets the event loop run once, then plays the file through.
void PlayWave(AppContext& ctx, const QString& path);
// The shipped sound of an account that could not be reached.
QString ErrorSoundPath(AppContext& ctx);

} // namespace velmora
