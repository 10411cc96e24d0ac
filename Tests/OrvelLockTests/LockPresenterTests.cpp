#include "OrvelLock/AppKitLockPresenter.h"

#include "Support/LockStubs.h"

namespace {

const Rect left{0, 0, 100, 100};
const Rect right{100, 0, 200, 100};
const Rect farRight{300, 0, 100, 100};

struct LockPresenterTest : testing::Test {
    ManualLoop loop;
    StubLockDesktop desktop{loop};
    LockCardModel model{"Ada Lovelace", nullptr, true};
    std::unique_ptr<AppKitLockPresenter> presenter = std::make_unique<AppKitLockPresenter>(
        model, [this] { return loop.uptime(); }, desktop.system());
    CallLog reports;

    LockPresenterTest() {
        desktop.displays = {{1, left, {}}, {2, right, NotchMetrics{50, 20, 100}}};
        presenter->onFocusLost = [this] { reports.push_back("focusLost"); };
        presenter->onReclaimFailed = [this] { reports.push_back("reclaimFailed"); };
        presenter->onBiometricAccepted = [this] { reports.push_back("biometricAccepted"); };
        presenter->onTick = [this] { reports.push_back("tick"); };
        presenter->onCoverChanged = [this](bool covered) {
            reports.push_back(covered ? "covered" : "uncovered");
        };
    }

    StubLockSurface& surface(std::uint32_t display) { return *desktop.surfaces.at(display); }
    CallLog take() { return std::exchange(desktop.log, {}); }
    CallLog takeReports() { return std::exchange(reports, {}); }
    /// The displays whose cover really has the card.
    std::vector<std::uint32_t> cards() {
        std::vector<std::uint32_t> ids;
        for (const auto& [id, cover] : desktop.surfaces) {
            if (!cover->content) continue;
            EXPECT_EQ(cover->content->model, &model);
            EXPECT_EQ(cover->keyboard, cover->content->kind == LockContent::card);
            if (cover->content->kind == LockContent::card) ids.push_back(id);
        }
        return ids;
    }
};

TEST_F(LockPresenterTest, CoversEveryDisplayAndPutsTheCardUnderThePointer) {
    desktop.pointer = {150, 50};
    model.status.set(LockCardModel::Unavailable{});
    model.password.set(Password("left over"));
    model.hasKeyboard.set(false);
    presenter->cover();
    EXPECT_THAT(take(), ElementsAre("1 content pill", "1 show 28 0.28", "2 content card",
                                    "2 show 28 0.28", "2 makeKey"));
    EXPECT_THAT(cards(), ElementsAre(2));
    EXPECT_EQ(surface(1).content->notch, std::nullopt);
    EXPECT_EQ(surface(2).content->notch, desktop.displays[1].notch);
    EXPECT_EQ(model.status.get(), LockCardModel::Status(LockCardModel::Ready{}));
    EXPECT_TRUE(model.password.get().empty());
    EXPECT_EQ(model.now.get(), desktop.present);
    EXPECT_TRUE(model.hasKeyboard.get());
    EXPECT_THAT(takeReports(), ElementsAre("covered"));
}

TEST_F(LockPresenterTest, FadesUnlessToldNotTo) {
    desktop.displays.resize(1);
    presenter->look = [] { return OverlayLook{40, OverlayLook::Tone::light, 0.2, false}; };
    presenter->instantNextCover = true;
    presenter->cover();
    presenter->uncover();
    EXPECT_THAT(take(), testing::AllOf(Contains("1 show 40 0"), Contains("1 hide 0.24")));
    presenter->cover();
    EXPECT_THAT(take(), Contains("1 show 40 0.28"));
    desktop.reduceMotion = true;
    presenter->uncover();
    presenter->cover();
    EXPECT_THAT(take(), testing::AllOf(Contains("1 show 40 0"), Contains("1 hide 0")));
}

TEST_F(LockPresenterTest, UncoveringLeavesNothingBehind) {
    desktop.sensor = true;
    presenter->cover();
    loop.advance(3);
    desktop.events->appActivated(42);
    model.password.set(Password("half typed"));
    model.status.set(LockCardModel::WrongPassword{});
    take();
    takeReports();

    presenter->uncover();
    EXPECT_THAT(takeReports(), ElementsAre("uncovered"));
    EXPECT_EQ(loop.timerCount(), 0u);
    EXPECT_FALSE(desktop.events);
    EXPECT_EQ(model.status.get(), LockCardModel::Status(LockCardModel::Ready{}));
    EXPECT_TRUE(model.password.get().empty());
    EXPECT_EQ(model.biometricContext.get(), nullptr);
    EXPECT_FALSE(surface(1).keyboard);
    EXPECT_THAT(take(), ElementsAre("1 hide 0.24", "2 hide 0.24"));

    // The covers keep their content until they are gone.
    EXPECT_TRUE(surface(1).content);
    surface(1).finishHide();
    EXPECT_THAT(take(), ElementsAre("1 content none"));
    loop.drain();
    EXPECT_THAT(take(), ElementsAre("1 gone"));

    // The other cover still fades out during the next lock; its end must not affect that lock.
    auto& fading = surface(2);
    desktop.pointer = {150, 50};
    presenter->cover();
    take();
    fading.finishHide();
    loop.drain();
    EXPECT_THAT(take(), ElementsAre("2 content none", "2 gone"));
    EXPECT_TRUE(surface(2).shown);
    EXPECT_THAT(cards(), ElementsAre(2)) << "wherever the last one was";
}

TEST_F(LockPresenterTest, ABurstOfLossesCountsOnceAndIsCheckedOnce) {
    struct Case {
        const char* name;
        bool active;
        bool key;
        CallLog verdict;
    };
    for (const auto& [name, active, key, verdict] : {
             Case{"all is back", true, true, {}},
             Case{"another app is in front", false, true, {"reclaimFailed"}},
             Case{"another window is key", true, false, {"reclaimFailed"}},
         }) {
        SCOPED_TRACE(name);
        presenter->cover();
        take();
        takeReports();
        surface(1).canTakeKey = key;
        if (!key) surface(1).key = false;
        desktop.appIsActive = active;
        desktop.events->appActivated(42);
        loop.advance(0.1);
        desktop.events->appActivated(43);
        EXPECT_THAT(take(), ElementsAre("1 makeKey", "activateApp", "1 makeKey", "activateApp"));
        EXPECT_EQ(model.hasKeyboard.get(), key);
        EXPECT_THAT(takeReports(), ElementsAre("focusLost"));
        loop.advance(0.1);
        EXPECT_THAT(takeReports(), ElementsAre());
        loop.advance(0.05);
        EXPECT_EQ(takeReports(), verdict);
        // The next loss counts separately.
        desktop.events->appActivated(42);
        EXPECT_THAT(takeReports(), ElementsAre("focusLost"));
        presenter->uncover();
    }
}

TEST_F(LockPresenterTest, OnlyTheCardsLossesAreReclaimed) {
    presenter->cover();
    take();
    takeReports();
    desktop.events->appActivated(StubLockDesktop::ownPID);
    surface(2).key = true;
    desktop.events->keyChanged(102);
    surface(1).key = false;
    desktop.events->keyChanged(555);
    surface(1).key = true;
    EXPECT_THAT(take(), ElementsAre());

    surface(1).canTakeKey = false;
    surface(1).key = false;
    desktop.events->keyChanged(101);
    EXPECT_THAT(take(), ElementsAre("1 makeKey", "activateApp"));
    EXPECT_FALSE(model.hasKeyboard.get());
    surface(1).key = true;
    desktop.events->keyChanged(101);
    EXPECT_TRUE(model.hasKeyboard.get());
    EXPECT_THAT(take(), ElementsAre());
    EXPECT_THAT(takeReports(), ElementsAre("focusLost"));
    loop.advance(0.25);
    EXPECT_THAT(takeReports(), ElementsAre());

    // Unlocking cancels a pending check.
    surface(1).key = false;
    desktop.events->keyChanged(101);
    presenter->uncover();
    takeReports();
    loop.advance(1);
    EXPECT_THAT(takeReports(), ElementsAre());
}

TEST_F(LockPresenterTest, PromptsAgainAndAgainUntilTheSensorSpeaks) {
    desktop.sensor = true;
    presenter->cover();
    EXPECT_TRUE(model.touchIDAvailable.get());
    EXPECT_EQ(model.biometricContext.get(), desktop.contexts.at(0));
    loop.advance(0.14);
    EXPECT_EQ(desktop.prompting.waiting(), 0u);
    loop.advance(0.01);
    EXPECT_THAT(desktop.reasons, ElementsAre("unlock Karvo"));

    for (const BiometricResult& result :
         {BiometricResult(BiometricFailed{-1}), BiometricResult(BiometricCancelled{})}) {
        const auto contexts = desktop.contexts.size();
        ASSERT_EQ(desktop.prompting.waiting(), 1u);
        desktop.prompting.arrive(result);
        loop.advance(0.99);
        EXPECT_EQ(desktop.contexts.size(), contexts);
        loop.advance(0.01);
        EXPECT_EQ(desktop.contexts.size(), contexts + 1);
        EXPECT_EQ(model.biometricContext.get(), desktop.contexts.back());
        EXPECT_EQ(desktop.prompting.waiting(), 0u);
        loop.advance(0.15);
    }
    takeReports();
    desktop.prompting.arrive(BiometricSuccess{});
    EXPECT_THAT(takeReports(), ElementsAre("biometricAccepted"));
    loop.advance(10);
    EXPECT_EQ(desktop.contexts.size(), 3u);
}

TEST_F(LockPresenterTest, StopsOfferingASensorThatIsGone) {
    for (const BiometricResult& result :
         {BiometricResult(BiometricLockout{}), BiometricResult(BiometricUnavailable{})}) {
        desktop.sensor = true;
        presenter->cover();
        loop.advance(0.15);
        desktop.prompting.arrive(result);
        EXPECT_FALSE(model.touchIDAvailable.get());
        EXPECT_EQ(model.biometricContext.get(), nullptr);
        takeReports();
        loop.advance(10);
        EXPECT_EQ(desktop.prompting.waiting(), 0u);
        EXPECT_THAT(takeReports(), Each("tick"));
        presenter->uncover();
    }
    desktop.sensor = false;
    model.touchIDAvailable.set(true);
    presenter->cover();
    loop.advance(10);
    EXPECT_FALSE(model.touchIDAvailable.get());
    EXPECT_EQ(model.biometricContext.get(), nullptr);
    EXPECT_EQ(desktop.reasons.size(), 2u);
}

TEST_F(LockPresenterTest, UnlockingEndsThePromptWhereverItStands) {
    desktop.sensor = true;
    // Before the prompt and during it.
    for (const double after : {0.1, 0.2}) {
        SCOPED_TRACE(after);
        const bool prompts = after > 0.15;
        presenter->cover();
        loop.advance(after);
        EXPECT_EQ(desktop.prompting.waiting(), prompts ? 1u : 0u);
        presenter->uncover();
        EXPECT_FALSE(desktop.contexts.back()->valid);
        EXPECT_EQ(loop.timerCount(), 0u);
        takeReports();
        // The next lock has its own prompt, and ignores an answer to the old one.
        presenter->cover();
        if (prompts) desktop.prompting.arrive(BiometricSuccess{});
        EXPECT_THAT(takeReports(), ElementsAre("covered"));
        EXPECT_TRUE(desktop.contexts.back()->valid);
        loop.advance(0.15);
        desktop.prompting.arrive(BiometricFailed{0});
        presenter->uncover();
        EXPECT_EQ(loop.timerCount(), 0u);
    }
    presenter->cover();
    loop.advance(0.15);
    takeReports();
    presenter.reset();
    desktop.prompting.arrive(BiometricSuccess{});
    EXPECT_THAT(takeReports(), ElementsAre());
    EXPECT_EQ(loop.timerCount(), 0u);
}

TEST_F(LockPresenterTest, FollowsTheDisplays) {
    presenter->look = [] { return OverlayLook{40, OverlayLook::Tone::light, 0.2, false}; };
    presenter->cover();
    presenter->look = [] { return OverlayLook::standardLock; };
    take();
    // A new display gets the lock's look without an animation.
    desktop.displays.push_back({3, farRight, NotchMetrics{60, 20, 50}});
    presenter->reconcileScreens();
    EXPECT_THAT(take(), ElementsAre("3 content pill", "3 show 40 0", "1 makeKey"));
    EXPECT_EQ(surface(3).content->notch, desktop.displays[2].notch);
    // A new frame does not recreate anything.
    desktop.displays[1].frame = {100, 0, 150, 90};
    presenter->reconcileScreens();
    EXPECT_THAT(take(), ElementsAre("2 setFrame", "1 makeKey"));
    EXPECT_EQ(surface(2).frame(), desktop.displays[1].frame);
    // When a display without the card disappears, the card does not move, wherever the pointer is.
    desktop.pointer = {350, 50};
    desktop.displays.erase(desktop.displays.begin() + 1);
    desktop.surfaces.erase(2);
    presenter->reconcileScreens();
    EXPECT_THAT(take(), ElementsAre("2 remove", "2 gone", "1 makeKey"));
    EXPECT_THAT(cards(), ElementsAre(1));
    // When the card's display disappears, the pill under the pointer becomes the card.
    desktop.displays.insert(desktop.displays.begin(), {4, right, {}});
    desktop.displays.erase(desktop.displays.begin() + 1);
    desktop.surfaces.erase(1);
    presenter->reconcileScreens();
    EXPECT_THAT(take(), ElementsAre("1 remove", "1 gone", "4 content pill", "4 show 40 0",
                                    "3 content card", "4 content pill", "3 makeKey"));
    EXPECT_THAT(cards(), ElementsAre(3));
    EXPECT_TRUE(surface(3).key);
}

TEST_F(LockPresenterTest, CoversTheFirstDisplayThatComesBack) {
    const auto displays = std::exchange(desktop.displays, {});
    presenter->cover();
    desktop.events->appActivated(42);
    EXPECT_THAT(take(), ElementsAre());
    EXPECT_THAT(takeReports(), ElementsAre("covered"));
    desktop.displays = {displays[1]};
    presenter->reconcileScreens();
    EXPECT_THAT(cards(), ElementsAre(2));
    EXPECT_TRUE(model.hasKeyboard.get());
}

TEST_F(LockPresenterTest, ALockEndsAPreviewAndRefusesOne) {
    presenter->preview(5);
    take();
    presenter->cover();
    EXPECT_FALSE(presenter->isPreviewing());
    EXPECT_THAT(take(),
                ElementsAre("1 hide 0.24", "2 hide 0.24", "1 content card", "1 show 28 0.28",
                            "2 content pill", "2 show 28 0.28", "1 makeKey"));
    presenter->preview(1);
    loop.advance(10);
    EXPECT_THAT(take(), ElementsAre());
    EXPECT_THAT(cards(), ElementsAre(1));

    // The end of one preview does not affect the next.
    presenter->uncover();
    presenter->preview(5);
    loop.advance(4);
    presenter->cover();
    presenter->uncover();
    presenter->preview(5);
    loop.advance(4);
    EXPECT_TRUE(presenter->isPreviewing());
}

}  // namespace
