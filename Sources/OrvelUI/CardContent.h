#pragma once

#include <memory>
#include <optional>
#include <string>

#include "OrvelCore/Geometry.h"
#include "OrvelSystem/Picture.h"
#include "OrvelUI/LockCardModel.h"
#include "OrvelUI/NotchMetrics.h"
#include "OrvelUI/Palette.h"

/// What the lock card, its pill and the badge of a locked app show, as plain values. A renderer
/// draws exactly this, and redraws a part only when its value has changed.
namespace OrvelUI {

struct LabelContent {
    enum class Weight { regular, medium, semibold };

    std::string text;
    /// Follows the text, and is never cut when the text is.
    std::string tail;
    double size = 12;  ///< Points.
    Weight weight = Weight::regular;
    Palette::Ink ink;
    /// The text is from the user or another program and must not be reworded.
    bool verbatim = false;

    bool operator==(const LabelContent&) const = default;
};

/// A symbol, given by its name, in a square of `size` points.
struct SymbolContent {
    std::string name;
    double size = 11;
    Palette::Ink ink;

    bool operator==(const SymbolContent&) const = default;
};

/// The picture of the account or of an app. Without a picture, `symbol` is shown, or `initials` if
/// that is empty.
struct AvatarContent {
    std::shared_ptr<const OrvelSystem::Picture> picture;
    std::string initials;
    std::string symbol;
    double size = 36;  ///< The side length in points.
    bool round = true;

    bool operator==(const AvatarContent&) const = default;
};

struct PasswordFieldContent {
    /// What is at the right end: the arrow that submits, the remaining cool-down, or a lock.
    enum class End { unlock, ring, lock };

    // In points.
    static constexpr double height = 36;
    static constexpr double endSide = 24;  ///< Of what is at the right end.
    static constexpr double endInset = 6;  ///< Between that and the sides of the field.

    bool canType = false;
    /// One bullet per typed character.
    std::size_t bullets = 0;
    /// Shown while there are no bullets.
    std::string placeholder;
    End end = End::lock;
    /// The filled part of the ring, 0 to 1.
    double ringFraction = 0;
    Palette::Ink fill;
    Palette::Ink border;
    std::string accessibleName;
    std::string accessibleHint;

    static PasswordFieldContent of(const LockCardModel& model);
    bool operator==(const PasswordFieldContent&) const = default;
};

/// The indicator at the right end of the card's first row.
struct IndicatorContent {
    enum class Kind { none, touchID, spinner };

    static constexpr double size = 25;  ///< The size of the symbol in points.

    Kind kind = Kind::none;
    std::string accessibleName;
    std::string accessibleHint;

    static IndicatorContent of(const LockCardModel& model);
    bool operator==(const IndicatorContent&) const = default;
};

/// The part of the island and of an open badge that takes the password: a row with the avatar, the
/// name above the caption, and the indicator, with the field below.
struct CardBodyContent {
    // In points.
    static constexpr double avatarSide = 36;
    static constexpr double textGap = 11;  ///< Between the avatar, the texts and the indicator.
    static constexpr double rowGap = 12;   ///< Between the row and the field.
    static constexpr double nameHeight = 18;
    static constexpr double captionHeight = 15;  ///< Of one line.

    AvatarContent avatar;
    LabelContent name;
    LabelContent caption;
    IndicatorContent indicator;
    PasswordFieldContent field;

    static CardBodyContent of(const LockCardModel& model, bool increasedContrast);
    bool operator==(const CardBodyContent&) const = default;
};

/// The card of the screen lock.
struct LockIslandContent {
    /// In points, with and without the content below the band.
    OrvelCore::Size openSize;
    OrvelCore::Size closedSize;
    /// The height of the band, and the width of each of its ears, in points.
    double bandHeight = 0;
    double earWidth = 0;
    /// The text is empty when the clock is off.
    LabelContent clock;
    SymbolContent mark;
    CardBodyContent body;
    std::string accessibleName;
    /// The time and the date, whether or not the clock is shown.
    std::string accessibleDescription;

    static LockIslandContent of(const LockCardModel& model,
                                const std::optional<NotchMetrics>& notch, bool increasedContrast);
    bool operator==(const LockIslandContent&) const = default;
};

/// What the displays without the card show: the time, or that the screen is locked.
struct SecondaryDisplayPillContent {
    static constexpr double symbolGap = 6;  ///< Points, between the symbol and the label.

    OrvelCore::Size size;
    /// The width in the middle, in points, that a notch hides; 0 without a notch.
    double gap = 0;
    LabelContent label;
    /// Beside the label, or on the other side of the gap.
    std::optional<SymbolContent> symbol;
    std::string accessibleName;

    static SecondaryDisplayPillContent of(const LockCardModel& model,
                                          const std::optional<NotchMetrics>& notch);
    bool operator==(const SecondaryDisplayPillContent&) const = default;
};

/// The badge of a locked app: a pill to click, or the card that takes the password.
struct AppLockBadgeContent {
    /// Sizes and radii are in points; the open size is that while the badge is unlocking.
    static constexpr OrvelCore::Size compactSize{236, 40};
    static constexpr OrvelCore::Size openSize{300, 112};
    static constexpr double cornerRadius = 14;
    static constexpr double padding = 14;     ///< At the sides of an open badge.
    static constexpr double fieldRadius = 9;  ///< Of the password field.
    static constexpr double compactPadding = 9;
    static constexpr double shadowDrop = 6;

    OrvelCore::Size size;
    double shadowOpacity = 0;
    double shadowRadius = 0;
    AvatarContent icon;
    LabelContent title;
    SymbolContent mark;
    std::string accessibleName;
    std::string accessibleHint;
    /// Set while the badge is open; replaces icon, title and mark.
    std::optional<CardBodyContent> body;

    static AppLockBadgeContent of(const LockCardModel& model, bool unlocking);
    bool operator==(const AppLockBadgeContent&) const = default;
};

}  // namespace OrvelUI
