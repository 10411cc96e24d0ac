#pragma once

#include <string>
#include <variant>
#include <vector>

#include "OrvelCore/Date.h"
#include "OrvelCore/Sound.h"
#include "OrvelUI/LockCardModel.h"

namespace OrvelUI {

/// Which announcements, sounds and haptics a lock event has.
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

    /// To be carried out in order. Sounds play only when both the product's and the system's
    /// interface sounds are on; the rest does not depend on them.
    static std::vector<Effect> effects(const Event& event, bool soundsOn, bool interfaceSoundsOn,
                                       OrvelCore::Date now);
    static std::string lockedAnnouncement(bool touchIDAvailable);
    /// A wait in words, rounded up to a whole second, never less than one.
    static std::string spokenWait(double seconds);
};

}  // namespace OrvelUI
