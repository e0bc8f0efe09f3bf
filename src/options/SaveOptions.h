#pragma once

namespace velmora {

struct AppContext;
struct Options;

// Brings the working copy of the Options page into the record and the
// settings store, and the running program in line with it. False when the
// store could not keep it: the record then stays as it was.
bool SaveOptions(AppContext& ctx, const Options& working);
// SoundMaster, DefaultSoundValid and DefaultClientValid from the record.
void ApplySoundAndClientFlags(AppContext& ctx);

} // namespace velmora
