#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "OrvelCore/RawValue.h"
#include "OrvelCore/SettingsStore.h"

namespace OrvelCore {

/// Seconds without input; nothing for never.
struct IdleSettings {
    std::optional<double> blurAfter;
    std::optional<double> lockAfter;
    bool operator==(const IdleSettings&) const = default;
};

/// What happens without a shortcut; as made, that of a fresh install.
struct TriggerSettings {
    enum class Corner { topLeft, topRight, bottomLeft, bottomRight };
    enum class CornerAction { lock, quickBlur };

    /// The active hot corner; nothing for none.
    std::optional<Corner> hotCorner;
    CornerAction hotCornerAction = CornerAction::lock;
    /// Idle seconds before the screen blurs; nothing for never.
    std::optional<double> idleBlurAfter;
    /// Idle seconds before the Mac locks; nothing for never.
    std::optional<double> idleLockAfter;
    /// Seconds of lock before macOS is locked too; nothing for never.
    std::optional<double> handOffAfter = 1800;

    IdleSettings idle() const { return {idleBlurAfter, idleLockAfter}; }

    /// A missing or unreadable value gives the field's default.
    static TriggerSettings load(const SettingsStore& store);
    void save(SettingsStore& store) const;

    bool operator==(const TriggerSettings&) const = default;
};

constexpr std::array<std::string_view, 4> rawNames(TriggerSettings::Corner) {
    return {"topLeft", "topRight", "bottomLeft", "bottomRight"};
}
constexpr std::array<std::string_view, 2> rawNames(TriggerSettings::CornerAction) {
    return {"lock", "quickBlur"};
}

}  // namespace OrvelCore
