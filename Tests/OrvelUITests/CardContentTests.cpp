#include "OrvelUI/CardContent.h"
#include "OrvelUI/Contrast.h"
#include "OrvelUITests/Cards.h"

using End = PasswordFieldContent::End;
using Kind = IndicatorContent::Kind;

namespace {

LockIslandContent island(const Card& card) {
    return LockIslandContent::of(card.model, std::nullopt, false);
}

Palette::Value over(const Palette::Ink& ink, Palette::Value background) {
    return Contrast::blend(ink.value, ink.opacity, background);
}

}  // namespace

TEST(CardContent, EachStatusHasItsFieldAndItsIndicator) {
    struct Row {
        LockCardModel::Status status;
        End end;
        Kind withTouchID, without;
        bool danger;
    };
    for (const auto& row :
         {Row{cooldownFor(15), End::ring, Kind::touchID, Kind::none, false},
          Row{LockCardModel::Ready{}, End::unlock, Kind::touchID, Kind::none, false},
          Row{LockCardModel::Verifying{}, End::lock, Kind::spinner, Kind::spinner, false},
          Row{LockCardModel::WrongPassword{}, End::unlock, Kind::touchID, Kind::none, true},
          Row{LockCardModel::PasswordsPaused{}, End::lock, Kind::touchID, Kind::none, false},
          Row{LockCardModel::Unavailable{}, End::unlock, Kind::touchID, Kind::none, true}}) {
        SCOPED_TRACE(row.status.index());
        Card card;
        card.model.status.set(row.status);
        const auto body = CardBodyContent::of(card.model, false);
        EXPECT_EQ(body.field.end, row.end);
        EXPECT_EQ(body.indicator.kind, row.withTouchID);
        EXPECT_EQ(body.field.border.value == Palette::lockDanger, row.danger);
        EXPECT_EQ(body.caption.ink.value == Palette::lockDanger, row.danger);
        card.model.touchIDAvailable.set(false);
        EXPECT_EQ(IndicatorContent::of(card.model).kind, row.without);

        card.model.hasKeyboard.set(false);
        const auto field = PasswordFieldContent::of(card.model);
        EXPECT_EQ(field.placeholder, "Click to type your password");
        EXPECT_EQ(field.end, row.end == End::ring ? End::ring : End::lock);
    }
}

TEST(CardContent, AwayMessageStandsInForTheReadyCaptionOnly) {
    for (const auto& status : everyStatus()) {
        Card card;
        card.model.status.set(status);
        card.model.awayMessage.set("Mac is mine. Touch ID off.");
        const bool ready = std::holds_alternative<LockCardModel::Ready>(status);
        auto caption = CardBodyContent::of(card.model, false).caption;
        EXPECT_EQ(caption.text == "Mac is mine. Touch ID off.", ready) << status.index();
        EXPECT_EQ(caption.verbatim, ready) << "the owner's words are not ours to change";
        card.model.awayMessage.set("");
        EXPECT_EQ(CardBodyContent::of(card.model, false).caption.text, card.model.caption());
    }
}

TEST(CardContent, PillShowsTheTimeOrThatItIsLocked) {
    Card card;
    const NotchMetrics notch{.width = 200, .height = 38, .centerX = 700};
    auto pill = SecondaryDisplayPillContent::of(card.model, {});
    EXPECT_EQ(pill.label.text, "14:05");
    EXPECT_EQ(pill.symbol, std::nullopt);
    EXPECT_EQ(pill.size, (Size{120, 30}));
    card.model.showsClock.set(false);
    pill = SecondaryDisplayPillContent::of(card.model, {});
    EXPECT_EQ(pill.label.text, "Locked");
    EXPECT_EQ(pill.symbol->name, "lock.fill");
    pill = SecondaryDisplayPillContent::of(card.model, notch);
    EXPECT_EQ(pill.size.height, 38);
    EXPECT_GT((pill.size.width - pill.gap) / 2, 60) << "the ears must hold what is shown";
}

TEST(CardContent, EveryTextOfTheCardCanBeRead) {
    // The badge's worst case is a white window, over which its shadow has half its strength.
    const auto badge = Contrast::blend(Palette::lockCard, Palette::lockCardOpacity,
                                       Contrast::blend(Palette::island, 0.2, 0xFFFFFF));
    for (const auto& status : everyStatus()) {
        Card card;
        card.model.status.set(status);
        const auto content = island(card);
        for (const auto& ink :
             {content.clock.ink, content.mark.ink, content.body.name.ink, content.body.caption.ink})
            EXPECT_GE(Contrast::ratio(over(ink, Palette::island), Palette::island), 4.5);
        const auto open = AppLockBadgeContent::of(card.model, true);
        for (const auto& ink : {open.title.ink, open.mark.ink, open.body->caption.ink})
            EXPECT_GE(Contrast::ratio(over(ink, badge), badge), 4.5);
        for (const auto field :
             {over(content.body.field.fill, Palette::island), over(open.body->field.fill, badge)})
            for (const double opacity :
                 {Palette::islandPlaceholderOpacity, Palette::islandFieldTextOpacity,
                  Palette::lockTertiaryOpacity})
                EXPECT_GE(Contrast::ratio(over({Palette::lockInk, opacity}, field), field), 4.5);
        const auto increased = LockIslandContent::of(card.model, {}, true);
        EXPECT_GE(increased.body.caption.ink.opacity, content.body.caption.ink.opacity);
    }
    for (const auto gradient : {Palette::ink3Light, Palette::ink2Light})
        EXPECT_GE(Contrast::ratio(Palette::lockInk, gradient), 4.4);
}
