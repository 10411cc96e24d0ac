#pragma once

#include <functional>
#include <string>

#include "OrvelCore/Date.h"
#include "OrvelCore/Sound.h"
#include "OrvelSystem/SoundPlayer.h"
#include "OrvelUI/LockFeedback.h"

namespace OrvelModes {

/// Performs the announcements, sounds and haptics of lock events. Main thread only.
class LockFeedbackRunner {
  public:
    struct Outputs {
        std::function<void(const std::string& text)> announce;
        std::function<void(OrvelCore::LockSound)> play;
        std::function<void(OrvelCore::Haptic)> haptic;

        /// `player` must outlive the result.
        static Outputs live(OrvelSystem::SoundPlayer& player);
    };

    /// `soundsOn` is the user's setting for this program, `interfaceSoundsOn` the one for the whole
    /// desktop.
    LockFeedbackRunner(Outputs outputs, std::function<bool()> soundsOn,
                       std::function<bool()> interfaceSoundsOn,
                       std::function<OrvelCore::Date()> now);

    void handle(const OrvelUI::LockFeedback::Event& event);

  private:
    Outputs outputs_;
    std::function<bool()> soundsOn_;
    std::function<bool()> interfaceSoundsOn_;
    std::function<OrvelCore::Date()> now_;
};

}  // namespace OrvelModes
