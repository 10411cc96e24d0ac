#include "OrvelModes/Feedback/LockFeedbackRunner.h"
#include "OrvelSystem/Announcer.h"
#include "OrvelSystem/Haptics.h"
#include "OrvelUI/Linux/Wording.h"

namespace OrvelModes {

LockFeedbackRunner::Outputs LockFeedbackRunner::Outputs::live(OrvelSystem::SoundPlayer& player) {
    return {.announce =
                [](const std::string& text) {
                    OrvelSystem::Announcer::announce(OrvelUI::Wording::shown(text));
                },
            .play = [&player](OrvelCore::LockSound sound) { player.play(sound); },
            .haptic = OrvelSystem::Haptics::perform};
}

}  // namespace OrvelModes
