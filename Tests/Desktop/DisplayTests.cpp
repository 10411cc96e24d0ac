// Displays that appear, change and disappear while the program hides what they show.

#include "CoverDesk.h"
#include "LockDesk.h"

namespace {

const Monitor left{"Left", leftDisplay};
const Monitor right{"Right", rightDisplay};

Desktop::Options wideScreen(const std::vector<Monitor>& displays) {
    Desktop::Options options;
    options.width = 3840;
    options.displays = displays;
    return options;
}

/// Sets these displays and checks until `done` that `area`, which was not a display or a different
/// one before, shows nothing of the desktop.
bool changes(LockDesk& desk, const std::vector<Monitor>& displays, Area area,
             const std::function<bool()>& done) {
    desk.screen().setDisplays(displays);
    return eventually([&] {
        EXPECT_TRUE(desk.isCovered(area));
        return testing::Test::HasFailure() || done();
    });
}

TEST(LockDisplays, ADisplayThatComesIsCoveredBeforeItShowsAnything) {
    LockDesk desk(wideScreen({left}));
    desk.start();
    ASSERT_TRUE(desk.lockToCard(leftDisplay));
    EXPECT_TRUE(changes(desk, {left, right}, rightDisplay,
                        [&] { return desk.hasPill(rightDisplay) && desk.hasCard(leftDisplay); }));
    // When the display disappears, the card stays where it is.
    EXPECT_TRUE(changes(desk, {left}, rightDisplay,
                        [&] { return !desk.hasPill(rightDisplay) && desk.hasCard(leftDisplay); }));
    EXPECT_TRUE(desk.unlock());
}

TEST(LockDisplays, AScreenThatGrowsShowsNothing) {
    LockDesk desk(wideScreen({left, right}));
    desk.start();
    desk.screen().resize(1920, 1080);
    desk.screen().setDisplays({left});
    ASSERT_TRUE(desk.lockUnseen());
    ASSERT_TRUE(desk.cardSays(leftDisplay, "enter your password"));
    desk.screen().resize(3840, 1080);
    EXPECT_TRUE(desk.isCovered(rightDisplay));
    EXPECT_TRUE(desk.staysCovered());
    EXPECT_TRUE(desk.isCovered(rightDisplay));
    EXPECT_TRUE(
        changes(desk, {left, right}, rightDisplay, [&] { return desk.hasPill(rightDisplay); }));
    EXPECT_TRUE(desk.unlock());
}

TEST(LockDisplays, TheCardMovesWhenItsDisplayGoes) {
    LockDesk desk(wideScreen({left, right}));
    desk.start();
    desk.screen().movePointer(2400, 900);
    ASSERT_TRUE(desk.lockToCard(rightDisplay));
    EXPECT_TRUE(changes(desk, {left}, leftDisplay, [&] { return desk.hasCard(leftDisplay); }));
    ASSERT_TRUE(desk.cardSays(leftDisplay, "enter your password"));
    // When the display returns, the card does not move back.
    EXPECT_TRUE(changes(desk, {left, right}, rightDisplay,
                        [&] { return desk.hasPill(rightDisplay) && desk.hasCard(leftDisplay); }));
    EXPECT_TRUE(desk.submitWrong());
    EXPECT_TRUE(desk.cardSays(leftDisplay, "incorrect password"));
    EXPECT_TRUE(desk.unlock());
}

/// Displays that are added, removed, resized and moved at random, each within its own third of the
/// screen.
class RandomDisplays {
  public:
    static constexpr int width = 1200;
    static constexpr int height = 400;

    explicit RandomDisplays(unsigned seed) : random_(seed) {}

    std::vector<Monitor> displays() const {
        std::vector<Monitor> list;
        for (const auto& display : slots_)
            if (display) list.push_back(*display);
        return list;
    }

    /// Makes one change, which leaves at least one display.
    void change() {
        const auto before = displays();
        while (displays() == before) {
            auto& slot = slots_[pick(0, 2)];
            if (slot && before.size() > 1 && pick(0, 2) == 0)
                slot.reset();
            else
                slot = anywhere(static_cast<int>(&slot - slots_.data()));
        }
    }

  private:
    static constexpr int third = width / 3;

    int pick(int lowest, int highest) {
        return lowest + static_cast<int>(random_() % static_cast<unsigned>(highest - lowest + 1));
    }
    Monitor anywhere(int slot) {
        const int x = pick(0, third / 2), y = pick(0, height / 2);
        return {"Display" + std::to_string(slot),
                {slot * third + x, y, pick(third / 4, third - x), pick(height / 4, height - y)}};
    }

    std::minstd_rand random_;
    std::array<std::optional<Monitor>, 3> slots_{anywhere(0)};
};

struct Mode {
    const char* name;
    /// Hides the app that fills the screen.
    std::function<void(CoverDesk&)> start;
    /// Whether nothing may be visible at any moment, and not only after a change has settled.
    bool always = false;
};

class RandomDisplayChanges : public testing::TestWithParam<Mode> {};

TEST_P(RandomDisplayChanges, LeaveNoPixelUncovered) {
    constexpr unsigned seed = 20261122;
    constexpr int changes = 50;
    RandomDisplays random(seed);
    Desktop::Options options;
    options.width = RandomDisplays::width;
    options.height = RandomDisplays::height;
    CoverDesk desk(options);
    // It fills the screen with its frame. The window manager would move it onto a smaller display.
    const Area window{0, 0, options.width - 10, options.height - 40};
    const auto& app = desk.addApp("pink", 0xff00ff, 0xff00f0, {window});
    desk.start();
    desk.activate(app);
    desk.screen().setDisplays(random.displays());
    GetParam().start(desk);
    const auto isHidden = [&] {
        return std::ranges::all_of(random.displays(), [&](const Monitor& display) {
            return desk.shown(app, display.area) == 0;
        });
    };
    ASSERT_TRUE(eventually(isHidden));
    for (int i = 0; i < changes && !HasFailure(); ++i) {
        random.change();
        desk.screen().setDisplays(random.displays());
        EXPECT_TRUE(GetParam().always ? stays(isHidden, std::chrono::milliseconds(150))
                                      : eventually(isHidden))
            << "seed " << seed << ", change " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Under, RandomDisplayChanges,
    testing::Values(
        Mode{"FocusBlur",
             [](CoverDesk& desk) {
                 // The window in use is another one.
                 desk.activate(desk.addApp("blue", 0x0000ff, 0x00ffff, {{40, 40, 200, 100}}));
                 desk.karvo().open("karvo://focus/on");
             }},
        Mode{"BlurScreen", [](CoverDesk& desk) { desk.karvo().open("karvo://blur/on"); }},
        Mode{"AppLock",
             [](CoverDesk& desk) {
                 desk.screen().press({XK_Super_L, XK_Alt_L, XK_l});
             }},
        Mode{"Lock",
             [](CoverDesk& desk) {
                 desk.screen().press({XK_Super_L, XK_l});
             },
             true}),
    [](const auto& mode) { return std::string(mode.param.name); });

}  // namespace
