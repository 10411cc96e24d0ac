#pragma once

#include <string>
#include <variant>
#include <vector>

#include "OrvelCore/Date.h"
#include "OrvelCore/Sound.h"
#include "OrvelUI/LockCardModel.h"

namespace OrvelUI {

/// The announcements, sounds and haptics of each lock event.
struct LockFeedback {
    struct Locked {
        bool touchIDAvailable = false;
        bool operator==(const Locked&) const = default;
    };
    struct StatusChanged {
        LockCardModel::Status status;
        bool operator==(const StatusChanged&) const = default;
    };
    struct Unlocked {
        bool operator==(const Unlocked&) const = default;
    };
    struct TouchIDAccepted {
        bool operator==(const TouchIDAccepted&) const = default;
    };
    using Event = std::variant<Locked, StatusChanged, Unlocked, TouchIDAccepted>;

    struct Announce {
        std::string text;
        bool operator==(const Announce&) const = default;
    };
    using Effect = std::variant<Announce, OrvelCore::LockSound, OrvelCore::Haptic>;

    /// To be performed in order. Sounds require that both the product's and the system's interface
    /// sounds are on; the other effects do not.
    static std::vector<Effect> effects(const Event& event, bool soundsOn, bool interfaceSoundsOn,
                                       OrvelCore::Date now);
    static std::string lockedAnnouncement(bool touchIDAvailable);
    /// A duration in words, rounded up to a whole second, at least one.
    static std::string spokenWait(double seconds);
};

}  // namespace OrvelUI
