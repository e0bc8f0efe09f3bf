#pragma once

#include "platform/SoundPlayer.h"

namespace velmora {

// Plays a WAV file through before returning, with the event loop turning.
// Without an audio device, or with a file it cannot read, it returns at
// once; the wait is bounded by the file's length plus a margin.
class WavePlayer : public SoundPlayer {
public:
    void PlayWave(const QString& path) override;

    // The length of a PCM WAV file in milliseconds, or -1 when it is none.
    static int DurationMs(const QString& path);
};

} // namespace velmora
