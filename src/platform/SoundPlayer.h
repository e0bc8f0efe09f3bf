#pragma once

#include <QString>

namespace velmora {

class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;
    // Plays a WAV file through and only then returns, with the event loop
    // turning meanwhile. Returns at once, in silence, when it cannot play.
    virtual void PlayWave(const QString& path) = 0;
};

} // namespace velmora
