#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "OrvelCore/RawValue.h"
#include "OrvelCore/SettingsStore.h"

namespace OrvelCore {

/// In seconds without input; `nullopt` means never.
struct IdleSettings {
    std::optional<double> blurAfter;
    std::optional<double> lockAfter;
    bool operator==(const IdleSettings&) const = default;
};

/// Triggers other than shortcuts. A default-constructed object has the defaults of a new
/// installation.
struct TriggerSettings {
    enum class Corner { topLeft, topRight, bottomLeft, bottomRight };
    enum class CornerAction { lock, quickBlur };

    /// The active hot corner; `nullopt` for none.
    std::optional<Corner> hotCorner;
    CornerAction hotCornerAction = CornerAction::lock;
    /// Seconds without input before the screen is blurred; `nullopt` means never.
    std::optional<double> idleBlurAfter;
    /// Seconds without input before the Mac is locked; `nullopt` means never.
    std::optional<double> idleLockAfter;
    /// Seconds of a lock before its hand-off to macOS; `nullopt` means never.
    std::optional<double> handOffAfter = 1800;
    /// Lock before the machine sleeps, in a session without another locker.
    bool locksBeforeSleep = true;

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
