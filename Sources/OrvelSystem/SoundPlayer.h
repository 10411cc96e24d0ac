#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "OrvelCore/Sound.h"

namespace OrvelSystem {

/// One sound that the system has been given.
class PlayableSound {
  public:
    PlayableSound() = default;
    PlayableSound(const PlayableSound&) = delete;
    PlayableSound& operator=(const PlayableSound&) = delete;
    virtual ~PlayableSound() = default;

    virtual void stop() = 0;
    /// From its beginning; returns before it is heard.
    virtual void play() = 0;
};

/// Plays the feedback sounds. Where there is nothing to play them with they are not heard, and
/// nobody is told. Nothing of the system's sound is touched before the first one. Main thread only.
class SoundPlayer {
  public:
    /// Hands the system a WAV file; null where it takes none.
    using Make = std::function<std::unique_ptr<PlayableSound>(OrvelCore::LockSound,
                                                              const std::vector<std::uint8_t>&)>;

    explicit SoundPlayer(Make make = systemSounds()) : make_(std::move(make)) {}

    /// A sound that still plays begins anew. Each one is computed once.
    void play(OrvelCore::LockSound sound);

  private:
    static Make systemSounds();

    Make make_;
    std::map<OrvelCore::LockSound, std::unique_ptr<PlayableSound>> sounds_;
};

}  // namespace OrvelSystem
