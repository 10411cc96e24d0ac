#include "OrvelLock/KioskController.h"

#include "Support/LockStubs.h"

namespace {

struct KioskControllerTest : testing::Test {
    ManualLoop loop;
    CallLog log;
    std::optional<AppHandle> front = AppHandle{42, 4200};
    /// How many checks find the app not yet active.
    int inactiveLooks = 0;
    KioskController kiosk{{
        .loop = loop,
        .ownPID = 7,
        .frontmostApp = [this] { return front; },
        .setRegular = [this] { log.push_back("regular"); },
        .setAccessory = [this] { log.push_back("accessory"); },
        .activate = [this] { log.push_back("activate"); },
        .tryActivate = [this] { return inactiveLooks-- <= 0; },
        .setPresentationOptions =
            [this](std::uint32_t options) { log.push_back(fmt::format("options {:x}", options)); },
        .activateApp =
            [this](const AppHandle& app) {
                log.push_back(fmt::format("front {} {}", app.pid, app.window));
            },
    }};
    std::optional<bool> engaged;

    void engage() {
        engaged.reset();
        spawn(loop, keep(kiosk.engage(), engaged));
        loop.drain();
    }
    static Task<void> keep(Task<bool> task, std::optional<bool>& result) {
        const bool value = co_await task;
        result = value;
    }
    CallLog take() { return std::exchange(log, {}); }
};

TEST_F(KioskControllerTest, AnActiveAppTakesOverAtOnceAndGivesAllBack) {
    engage();
    EXPECT_EQ(engaged, true);
    EXPECT_THAT(take(), ElementsAre("regular", "activate", "options 1fa"));
    kiosk.release(true);
    EXPECT_THAT(take(), ElementsAre("options 0", "accessory", "front 42 4200"));
    kiosk.release(true);
    EXPECT_THAT(take(), ElementsAre("options 0", "accessory"));
}

TEST_F(KioskControllerTest, WaitsAQuarterOfASecondToBecomeActive) {
    struct Case {
        int inactiveLooks;
        bool engages;
    };
    for (const auto& [looks, engages] : {Case{3, true}, Case{24, true}, Case{1000, false}}) {
        inactiveLooks = looks;
        engage();
        EXPECT_FALSE(engaged);
        loop.advance(0.02);
        EXPECT_FALSE(engaged);
        loop.advance(0.25);
        EXPECT_EQ(engaged, engages);
        if (engages)
            EXPECT_THAT(take(), ElementsAre("regular", "activate", "options 1fa"));
        else
            // The activation policy stays until the uncover releases the kiosk.
            EXPECT_THAT(take(), ElementsAre("regular", "activate"));
        EXPECT_EQ(loop.timerCount(), 0u);
        kiosk.release(false);
        take();
    }
}

TEST_F(KioskControllerTest, RemembersTheAppThatWasReallyInFront) {
    engage();
    front = AppHandle{7, 0};
    engage();
    front.reset();
    engage();
    take();
    kiosk.release(true);
    EXPECT_THAT(take(), ElementsAre("options 0", "accessory", "front 42 4200"));

    front = AppHandle{42, 4200};
    engage();
    kiosk.release(false);
    take();
    kiosk.release(true);
    EXPECT_THAT(take(), ElementsAre("options 0", "accessory"));
}

}  // namespace
