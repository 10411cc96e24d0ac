#include <memory>
#include <vector>

#include <gmock/gmock.h>

#include "OrvelSystem/HotkeyCenter.h"

using namespace OrvelSystem;
using OrvelCore::Shortcut;
using testing::ElementsAre;

namespace {

class StubPlatform final : public HotkeyPlatform {
  public:
    struct Asked {
        std::uint32_t keyCode;
        std::uint32_t modifiers;
        std::uint32_t number;
        bool operator==(const Asked&) const = default;
    };

    int installs = 0;
    bool refuses = false;
    std::vector<Asked> asked;
    std::vector<HotkeyRef> released;
    std::function<void(std::uint32_t)> press;

    void installEventHandler(std::function<void(std::uint32_t)> pressed) override {
        ++installs;
        press = std::move(pressed);
    }
    std::optional<HotkeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                            std::uint32_t number) override {
        asked.push_back({keyCode, modifiers, number});
        if (refuses) return {};
        return 1000 + number;
    }
    void unregisterHotKey(HotkeyRef ref) override { released.push_back(ref); }
};

struct HotkeyTest : testing::Test {
    StubPlatform platform;
    HotkeyCenter center{platform};
    int fired = 0;

    std::optional<std::uint32_t> add(const Shortcut& shortcut = Shortcut::lockMac()) {
        return center.registerHotkey(shortcut, [this] { ++fired; });
    }
};

TEST_F(HotkeyTest, numbersCountUpAndARefusalUsesOneUp) {
    EXPECT_EQ(add(), 1);
    platform.refuses = true;
    EXPECT_EQ(add(Shortcut::lockApp()), std::nullopt);
    platform.refuses = false;
    EXPECT_EQ(add(Shortcut::lockApp()), 3);

    EXPECT_EQ(platform.installs, 1);
    EXPECT_THAT(platform.asked,
                ElementsAre(StubPlatform::Asked{37, 0x100, 1}, StubPlatform::Asked{37, 0x900, 2},
                            StubPlatform::Asked{37, 0x900, 3}));
}

TEST_F(HotkeyTest, aPressRunsTheHandlerOfItsNumberOnly) {
    add();
    int other = 0;
    center.registerHotkey(Shortcut::lockApp(), [&] { ++other; });

    platform.press(2);
    for (const std::uint32_t unknown : {0U, 3U}) platform.press(unknown);

    EXPECT_EQ(fired, 0);
    EXPECT_EQ(other, 1);
}

TEST_F(HotkeyTest, unregisteringReleasesOnceAndSilences) {
    const auto number = add();
    center.unregister(*number);
    center.unregister(*number);
    center.unregister(99);
    platform.press(*number);

    EXPECT_THAT(platform.released, ElementsAre(1001));
    EXPECT_EQ(fired, 0);
    EXPECT_EQ(add(), 2);
    EXPECT_EQ(platform.installs, 1);
}

TEST_F(HotkeyTest, aHandlerMayRemoveItselfAndAddAnother) {
    // On the heap, so that a handler that was destroyed under itself is found.
    const auto ran = std::make_shared<int>(0);
    std::optional<std::uint32_t> number;
    number = center.registerHotkey(Shortcut::lockMac(), [&, ran] {
        center.unregister(*number);
        add();
        ++*ran;
    });
    platform.press(*number);

    EXPECT_EQ(*ran, 1);
    platform.press(2);
    EXPECT_EQ(fired, 1);
}

TEST(HotkeyCenterLifetime, aDroppedCenterUnregistersNothingAndHearsNothing) {
    StubPlatform platform;
    int fired = 0;
    {
        HotkeyCenter center(platform);
        center.registerHotkey(Shortcut::lockMac(), [&] { ++fired; });
    }
    platform.press(1);
    EXPECT_EQ(fired, 0);
    EXPECT_TRUE(platform.released.empty());
}

TEST(HotkeyCenterModifiers, eachFlagHasItsBitAndNoOtherBitCounts) {
    EXPECT_EQ(HotkeyCenter::carbonModifiers({}), 0u);
    EXPECT_EQ(HotkeyCenter::carbonModifiers(Shortcut::Modifiers::command), 0x100u);
    EXPECT_EQ(HotkeyCenter::carbonModifiers(Shortcut::Modifiers::shift), 0x200u);
    EXPECT_EQ(HotkeyCenter::carbonModifiers(Shortcut::Modifiers::option), 0x800u);
    EXPECT_EQ(HotkeyCenter::carbonModifiers(Shortcut::Modifiers::control), 0x1000u);
    EXPECT_EQ(HotkeyCenter::carbonModifiers({0xFF}), 0x1B00u);
}

}  // namespace
