#include "OrvelSystem/SoundPlayer.h"

#include "OrvelCore/SoundSynth.h"

namespace OrvelSystem {

namespace SoundSynth = OrvelCore::SoundSynth;

void SoundPlayer::play(OrvelCore::LockSound sound) {
    const auto [entry, isNew] = sounds_.try_emplace(sound);
    if (isNew) entry->second = make_(sound, SoundSynth::wav(SoundSynth::samples(sound)));
    if (!entry->second) return;
    entry->second->stop();
    entry->second->play();
}

}  // namespace OrvelSystem
