#include "OrvelUI/CardContent.h"

#include "OrvelUI/AccessibilityText.h"
#include "OrvelUI/Controls.h"
#include "OrvelUI/IslandLayout.h"
#include "OrvelUI/LockFeedback.h"

namespace OrvelUI {

namespace {

using Weight = LabelContent::Weight;

constexpr double clockSize = 13;
constexpr double markSize = 11;
constexpr double nameSize = 14;
constexpr double captionSize = 12;
constexpr double fieldBorderOpacity = 0.14;
constexpr double fieldFocusBorderOpacity = 0.3;
constexpr double badgeFieldFillOpacity = 0.35;

template <class Case>
bool is(const LockCardModel& model) {
    return std::holds_alternative<Case>(model.status.get());
}

// A problem that was just shown and that the user can act on.
bool isError(const LockCardModel& model) {
    return is<LockCardModel::WrongPassword>(model) || is<LockCardModel::Unavailable>(model);
}

LabelContent captionLabel(const LockCardModel& model, bool increasedContrast) {
    const auto& away = model.awayMessage.get();
    const bool showsAway = is<LockCardModel::Ready>(model) && away && !away->empty();
    const Palette::Ink quiet{Palette::lockInk, Palette::lockSecondaryOpacity(increasedContrast)};
    return {.text = showsAway ? *away : model.caption(),
            .tail = {},
            .size = captionSize,
            .weight = Weight::regular,
            .ink = isError(model) ? Palette::Ink{Palette::lockDanger} : quiet,
            .verbatim = showsAway};
}

LabelContent clockLabel(const LockCardModel& model) {
    return {.text = model.showsClock.get() ? model.timeText() : std::string(),
            .tail = {},
            .size = clockSize,
            .weight = Weight::semibold,
            .ink = {},
            .verbatim = true};
}

SymbolContent lockMark(double opacity) {
    return {.name = "lock.fill", .size = markSize, .ink = {Palette::lockInk, opacity}};
}

}  // namespace

PasswordFieldContent PasswordFieldContent::of(const LockCardModel& model) {
    const bool canType = model.canType();
    PasswordFieldContent field{
        .canType = canType,
        .bullets = model.password.get().characterCount(),
        .placeholder =
            model.hasKeyboard.get() ? model.placeholder() : "Click to type your password",
        .end = canType ? End::unlock : End::lock,
        .ringFraction = 0,
        .fill = {Palette::lockInk, Palette::islandFieldFillOpacity},
        .border = {Palette::lockInk, canType ? fieldFocusBorderOpacity : fieldBorderOpacity},
        .accessibleName = "Mac password",
        .accessibleHint = AccessibilityText::passwordField};
    if (is<LockCardModel::Cooldown>(model)) {
        field.end = End::ring;
        field.ringFraction = model.cooldownFraction();
    }
    if (isError(model)) field.border = {Palette::lockDanger, 0.85};
    return field;
}

IndicatorContent IndicatorContent::of(const LockCardModel& model) {
    // A password check also takes a moment, so the spinner is shown even without a sensor.
    if (is<LockCardModel::Verifying>(model))
        return {.kind = Kind::spinner,
                .accessibleName = std::string(Spinner::label),
                .accessibleHint = {}};
    if (!model.touchIDAvailable.get()) return {};
    return {.kind = Kind::touchID,
            .accessibleName = "Touch ID",
            .accessibleHint = AccessibilityText::touchID};
}

CardBodyContent CardBodyContent::of(const LockCardModel& model, bool increasedContrast) {
    return {.avatar = {.picture = model.picture.get(), .initials = model.initials(), .symbol = {}},
            .name = {.text = model.fullName.get(),
                     .tail = {},
                     .size = nameSize,
                     .weight = Weight::semibold,
                     .ink = {},
                     .verbatim = true},
            .caption = captionLabel(model, increasedContrast),
            .indicator = IndicatorContent::of(model),
            .field = PasswordFieldContent::of(model)};
}

LockIslandContent LockIslandContent::of(const LockCardModel& model,
                                        const std::optional<NotchMetrics>& notch,
                                        bool increasedContrast) {
    return {.openSize = IslandLayout::size(notch, 1),
            .closedSize = IslandLayout::size(notch, 0),
            .bandHeight = IslandLayout::bandHeight(notch),
            .earWidth = IslandLayout::earWidth(notch),
            .clock = clockLabel(model),
            .mark = lockMark(Palette::lockSecondaryOpacity(increasedContrast)),
            .body = CardBodyContent::of(model, increasedContrast),
            .accessibleName = LockFeedback::lockedAnnouncement(model.touchIDAvailable.get()),
            .accessibleDescription = model.timeText() + ", " + model.dateText()};
}

SecondaryDisplayPillContent SecondaryDisplayPillContent::of(
    const LockCardModel& model, const std::optional<NotchMetrics>& notch) {
    const bool showsClock = model.showsClock.get();
    SecondaryDisplayPillContent pill{.size = IslandLayout::size(notch, 0),
                                     .gap = 0,
                                     .label = clockLabel(model),
                                     .symbol = {},
                                     .accessibleName = "Locked"};
    if (notch) {
        // Nothing is visible behind a notch, so the pill extends over the band's ears.
        pill.size.width = IslandLayout::width(notch);
        pill.gap = notch->width;
    }
    if (!showsClock) {
        pill.label.text = "Locked";
        pill.label.verbatim = false;
    }
    if (!showsClock || notch) pill.symbol = lockMark(1);
    return pill;
}

AppLockBadgeContent AppLockBadgeContent::of(const LockCardModel& model, bool unlocking) {
    // Part of a window, which may be white, shows through a badge. It therefore uses the stronger
    // secondary text and the darker field.
    constexpr bool increasedContrast = true;
    AppLockBadgeContent badge{.size = unlocking ? openSize : compactSize,
                              .shadowOpacity = unlocking ? 0.45 : 0.4,
                              .shadowRadius = unlocking ? 24.0 : 16.0,
                              .icon = {.picture = model.picture.get(),
                                       .initials = {},
                                       .symbol = "app.fill",
                                       .size = 22,
                                       .round = false},
                              .title = {.text = model.fullName.get(),
                                        .tail = " is locked",
                                        .size = 13,
                                        .weight = Weight::medium,
                                        .ink = {},
                                        .verbatim = true},
                              .mark = lockMark(Palette::lockSecondaryOpacity(increasedContrast)),
                              .accessibleName = "Unlock with Touch ID or your Mac password",
                              .accessibleHint = AccessibilityText::unlockApp,
                              .body = {}};
    if (unlocking) {
        badge.body = CardBodyContent::of(model, increasedContrast);
        badge.body->avatar.round = false;
        badge.body->avatar.symbol = "app.fill";
        badge.body->field.fill = {Palette::island, badgeFieldFillOpacity};
    }
    return badge;
}

}  // namespace OrvelUI
