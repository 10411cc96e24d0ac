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
    /// Follows the text, and stays whole where the text must be cut.
    std::string tail;
    double size = 12;  ///< Points.
    Weight weight = Weight::regular;
    Palette::Ink ink;
    /// The text holds words of the user or of another program, which nobody may reword.
    bool verbatim = false;

    bool operator==(const LabelContent&) const = default;
};

/// A symbol by its name, in a square of `size` points.
struct SymbolContent {
    std::string name;
    double size = 11;
    Palette::Ink ink;

    bool operator==(const SymbolContent&) const = default;
};

/// A picture of the account or of an app; without one, the initials, or a symbol where it names
/// one.
struct AvatarContent {
    std::shared_ptr<const OrvelSystem::Picture> picture;
    std::string initials;
    std::string symbol;
    double size = 36;  ///< Points, of the side.
    bool round = true;

    bool operator==(const AvatarContent&) const = default;
};

struct PasswordFieldContent {
    /// What stands at the right end: the arrow that submits, the rest of a cooldown, or a lock.
    enum class End { unlock, ring, lock };

    static constexpr double height = 36;  ///< Points.

    bool canType = false;
    /// One bullet per typed character.
    std::size_t bullets = 0;
    /// Shown while there are no bullets.
    std::string placeholder;
    End end = End::lock;
    /// 0 to 1, for the ring.
    double ringFraction = 0;
    Palette::Ink fill;
    Palette::Ink border;
    std::string accessibleName;
    std::string accessibleHint;

    static PasswordFieldContent of(const LockCardModel& model);
    bool operator==(const PasswordFieldContent&) const = default;
};

/// The right end of the card's first row.
struct IndicatorContent {
    enum class Kind { none, touchID, spinner };

    static constexpr double size = 25;  ///< Points, of the symbol.

    Kind kind = Kind::none;
    std::string accessibleName;
    std::string accessibleHint;

    static IndicatorContent of(const LockCardModel& model);
    bool operator==(const IndicatorContent&) const = default;
};

/// What takes the password, in the island and in an open badge: the avatar, the name over the
/// caption and the indicator in one row, the field below.
struct CardBodyContent {
    AvatarContent avatar;
    LabelContent name;
    LabelContent caption;
    IndicatorContent indicator;
    PasswordFieldContent field;

    static CardBodyContent of(const LockCardModel& model, bool increasedContrast);
    bool operator==(const CardBodyContent&) const = default;
};

/// The card of the whole-Mac lock.
struct LockIslandContent {
    OrvelCore::Size openSize;
    OrvelCore::Size closedSize;
    /// The height of the band, and the width of each of its ears.
    double bandHeight = 0;
    double earWidth = 0;
    /// Empty where no clock is wanted.
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

/// What a display shows that does not carry the card: the time, or that it is locked.
struct SecondaryDisplayPillContent {
    OrvelCore::Size size;
    /// The width in the middle that a notch hides; 0 without one.
    double gap = 0;
    LabelContent label;
    /// Stands beside the label, or across the gap from it.
    std::optional<SymbolContent> symbol;
    std::string accessibleName;

    static SecondaryDisplayPillContent of(const LockCardModel& model,
                                          const std::optional<NotchMetrics>& notch);
    bool operator==(const SecondaryDisplayPillContent&) const = default;
};

/// The badge of a locked app: a pill to click, or the card that takes the password.
struct AppLockBadgeContent {
    static constexpr OrvelCore::Size compactSize{236, 40};
    static constexpr OrvelCore::Size openSize{300, 112};
    static constexpr double cornerRadius = 14;

    OrvelCore::Size size;
    double shadowOpacity = 0;
    double shadowRadius = 0;
    AvatarContent icon;
    LabelContent title;
    SymbolContent mark;
    std::string accessibleName;
    std::string accessibleHint;
    /// There while the badge is open, in place of icon, title and mark.
    std::optional<CardBodyContent> body;

    static AppLockBadgeContent of(const LockCardModel& model, bool unlocking);
    bool operator==(const AppLockBadgeContent&) const = default;
};

}  // namespace OrvelUI
