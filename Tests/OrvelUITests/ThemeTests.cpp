#include <gtest/gtest.h>

#include "OrvelCore/Looks.h"
#include "OrvelUI/Contrast.h"
#include "OrvelUI/Controls.h"
#include "OrvelUI/SettingsTheme.h"

using namespace OrvelUI;

TEST(Palette, MakesColoursOfValuesAndLooks) {
    EXPECT_EQ(Palette::color(0xFF8000, 0.5),
              (OrvelCore::Color{1, static_cast<double>(0x80) / 255, 0, 0.5}));
    auto look = OrvelCore::OverlayLook::standardLock;
    EXPECT_EQ(Palette::tintColor(look), Palette::color(Palette::lockTint, 0.45));
    EXPECT_EQ(Palette::solidColor(look), Palette::color(Palette::lockTint));
    look.tone = OrvelCore::OverlayLook::Tone::light;
    look.tintOpacity = 0.3;
    EXPECT_EQ(Palette::tintColor(look), Palette::color(Palette::canvasLight, 0.3));
    EXPECT_EQ(Palette::solidColor(look).alpha, 1);
}

TEST(Contrast, FollowsTheDefinition) {
    EXPECT_NEAR(Contrast::ratio(0xFFFFFF, 0x000000), 21, 1e-9);
    EXPECT_EQ(Contrast::ratio(0x3CC6D0, 0x3CC6D0), 1);
    EXPECT_EQ(Contrast::ratio(0x123456, 0xFEDCBA), Contrast::ratio(0xFEDCBA, 0x123456));
    EXPECT_NEAR(Contrast::ratio(0x777777, 0xFFFFFF), 4.48, 0.005);
    EXPECT_NEAR(Contrast::luminance(0xFF0000), 0.2126, 1e-9);
    EXPECT_NEAR(Contrast::luminance(0x00FF00), 0.7152, 1e-9);
    EXPECT_NEAR(Contrast::luminance(0x0000FF), 0.0722, 1e-9);
    EXPECT_NEAR(Contrast::luminance(0x0A0A0A), 10 / 255.0 / 12.92, 1e-9);
    EXPECT_GT(Contrast::ratio(Palette::lockInk, Palette::island), 17);
    EXPECT_EQ(Contrast::blend(0xFF0080, 0.5, 0x00FF00), 0x808040U);
    EXPECT_EQ(Contrast::blend(0x123456, 1, 0xFFFFFF), 0x123456U);
    EXPECT_EQ(Contrast::blend(0x123456, 0, 0xFEDCBA), 0xFEDCBAU);
}

TEST(SettingsTheme, EveryTextCanBeRead) {
    for (const auto scheme : {SettingsTheme::Scheme::light, SettingsTheme::Scheme::dark}) {
        const SettingsTheme standard{scheme, SettingsTheme::Contrast::standard};
        const SettingsTheme increased{scheme, SettingsTheme::Contrast::increased};
        for (const auto background : {standard.canvas(), standard.surface()}) {
            for (const auto ink : {standard.ink(), standard.ink2(), standard.ink3(),
                                   standard.accent(), standard.error()})
                EXPECT_GE(Contrast::ratio(ink, background), 4.4) << std::hex << ink;
            EXPECT_GT(Contrast::ratio(increased.ink2(), background),
                      Contrast::ratio(standard.ink2(), background));
            EXPECT_GT(Contrast::ratio(increased.ink3(), background),
                      Contrast::ratio(standard.ink3(), background));
        }
    }
}

TEST(Controls, AreSpokenInWords) {
    EXPECT_EQ(Keycaps::spoken({"⌃", "⌥", "⇧", "⌘", "L"}), "Control Option Shift Command L");
    EXPECT_EQ(Keycaps::spoken({"esc"}), "Escape");
    EXPECT_EQ(Keycaps::spoken({}), "");
    EXPECT_EQ((PageDots{.count = 4, .current = 1}).spoken(), "Step 1 of 4");
    EXPECT_FALSE(PulsingKeycaps::of({}, true).pulses);
}
