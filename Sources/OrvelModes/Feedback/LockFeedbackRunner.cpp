#include "OrvelModes/Feedback/LockFeedbackRunner.h"

#include <utility>

#include "OrvelCore/Match.h"

namespace OrvelModes {

using OrvelUI::LockFeedback;

LockFeedbackRunner::LockFeedbackRunner(Outputs outputs, std::function<bool()> soundsOn,
                                       std::function<bool()> interfaceSoundsOn,
                                       std::function<OrvelCore::Date()> now)
    : outputs_(std::move(outputs)),
      soundsOn_(std::move(soundsOn)),
      interfaceSoundsOn_(std::move(interfaceSoundsOn)),
      now_(std::move(now)) {}

void LockFeedbackRunner::handle(const LockFeedback::Event& event) {
    for (const auto& effect :
         LockFeedback::effects(event, soundsOn_(), interfaceSoundsOn_(), now_())) {
        OrvelCore::match(
            effect,
            [this](const LockFeedback::Announce& announcement) {
                outputs_.announce(announcement.text);
            },
            [this](OrvelCore::LockSound sound) { outputs_.play(sound); },
            [this](OrvelCore::Haptic haptic) { outputs_.haptic(haptic); });
    }
}

}  // namespace OrvelModes
