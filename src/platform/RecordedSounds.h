#pragma once

#include "platform/SoundPlayer.h"

#include <QStringList>

namespace velmora {

// Sounds that nobody hears: each file asked for is recorded, in order. The
// command line prints them; tests assert on them.
class RecordedSounds : public SoundPlayer {
public:
    void PlayWave(const QString& path) override { played.append(path); }
    QStringList played;
};

} // namespace velmora
