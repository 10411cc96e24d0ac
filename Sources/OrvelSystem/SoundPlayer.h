#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "OrvelCore/Sound.h"

namespace OrvelSystem {

/// One sound that has been passed to the system.
class PlayableSound {
  public:
    PlayableSound() = default;
    PlayableSound(const PlayableSound&) = delete;
    PlayableSound& operator=(const PlayableSound&) = delete;
    virtual ~PlayableSound() = default;

    virtual void stop() = 0;
    /// Plays from the beginning; returns before the sound is audible.
    virtual void play() = 0;
};

/// Plays the feedback sounds. If the system cannot play a sound, `play` does nothing. The sound
/// system is not contacted before the first sound. Main thread only.
class SoundPlayer {
  public:
    /// Passes a WAV file to the system; null if the system rejects it.
    using Make = std::function<std::unique_ptr<PlayableSound>(OrvelCore::LockSound,
                                                              const std::vector<std::uint8_t>&)>;

    explicit SoundPlayer(Make make = systemSounds()) : make_(std::move(make)) {}

    /// Restarts the sound if it is still playing. Each sound is synthesised once.
    void play(OrvelCore::LockSound sound);

  private:
    static Make systemSounds();

    Make make_;
    std::map<OrvelCore::LockSound, std::unique_ptr<PlayableSound>> sounds_;
};

}  // namespace OrvelSystem
