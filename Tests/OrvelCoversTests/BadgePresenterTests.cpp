#include "OrvelBlurTests/StubOverlayPanel.h"
#include "OrvelCovers/AppKitBadgePresenter.h"

using namespace OrvelCovers;
using OrvelCore::Rect;

namespace {

using CallLog = std::vector<std::string>;

struct Panel final : StubOverlayPanel {
    Panel(PanelRecord& record, CallLog& calls) : StubOverlayPanel(record), log(calls) {}

    void orderFrontRegardless() override {
        StubOverlayPanel::orderFrontRegardless();
        log.push_back("front");
    }
    void orderOut() override {
        StubOverlayPanel::orderOut();
        log.push_back("out");
    }
    void orderAbove(OrvelCore::WindowID number) override {
        log.push_back(fmt::format("above {}", number));
    }
    void makeKeyAndOrderFront() override {
        key = acceptsKeyboard && getsKeyboard;
        log.push_back("key");
    }
    bool isKeyWindow() const override { return key; }

    CallLog& log;
    bool key = false;
    bool getsKeyboard = true;
};

struct BadgePresenterTest : testing::Test {
    BadgePresenterTest() { presenter.show(pid, model); }

    CallLog take() { return std::exchange(log, {}); }

    static constexpr std::int64_t pid = 7;
    CallLog log;
    Panel* panel = nullptr;
    PanelRecord record;
    std::shared_ptr<OrvelUI::LockCardModel> model =
        std::make_shared<OrvelUI::LockCardModel>("App", nullptr, false);
    AppKitBadgePresenter presenter{
        {.makePanel =
             [this](const Rect&, int) {
                 auto made = std::make_unique<Panel>(record, log);
                 panel = made.get();
                 return made;
             },
         .makeContent =
             [this](const auto&, bool unlocking, const auto&, const auto&) {
                 log.push_back(unlocking ? "open" : "compact");
                 return std::make_shared<OrvelBlur::PanelContent>();
             },
         .visibleFrame =
             [] {
                 return Rect{0, 100, 1000, 500};
             },
         .scale = [] { return 1.0; },
         .isAbove = [this](auto, auto) { return isAboveCover; }}};
    bool isAboveCover = true;
};

TEST_F(BadgePresenterTest, StandsOverItsWindowAndMovesOnlyWhenThatDoes) {
    EXPECT_THAT(take(), ElementsAre("compact")) << "out until it is placed";
    EXPECT_EQ(record.frame, Rect(382, 330, 236, 40)) << "no window yet";
    presenter.place(pid, {101, 50, 400, 300}, 33);
    EXPECT_THAT(take(), ElementsAre("front", "above 33"));
    EXPECT_EQ(record.frame, Rect(183, 180, 236, 40));
    presenter.place(pid, {101, 50, 400, 300}, 33);
    EXPECT_THAT(take(), IsEmpty());
    presenter.place(pid, {101, 50, 400, 300}, 34);
    EXPECT_THAT(take(), ElementsAre("above 34"));
    presenter.setUnlocking(pid, true);
    EXPECT_EQ(record.frame, Rect(151, 144, 300, 112)) << "around the same middle";
    presenter.place(pid, {100, 51, 401, 301}, 34);
    EXPECT_EQ(record.frame, Rect(151, 146, 300, 112)) << "on whole points, halves away from zero";
    take();
    presenter.hide(pid);
    presenter.hide(pid);
    presenter.place(pid, {100, 51, 401, 301}, 34);
    EXPECT_THAT(take(), ElementsAre("out", "front", "above 34"));
    presenter.remove(pid);
    presenter.place(pid, {0, 0, 10, 10}, 1);
    EXPECT_THAT(take(), ElementsAre("out"));
}

TEST_F(BadgePresenterTest, TheFieldKnowsWhetherItHasTheKeyboard) {
    EXPECT_TRUE(presenter.takeKeyboard(pid));
    EXPECT_TRUE(model->hasKeyboard.get());
    panel->key = false;
    panel->onKeyChanged();
    EXPECT_FALSE(model->hasKeyboard.get());
    EXPECT_FALSE(presenter.holdsKeyboard(pid));
    presenter.place(pid, {101, 50, 400, 300}, 33);
    take();
    EXPECT_TRUE(presenter.takeKeyboard(pid));
    EXPECT_THAT(take(), ElementsAre("key")) << "in front of all windows, not of its cover alone";
    isAboveCover = false;
    EXPECT_TRUE(presenter.takeKeyboard(pid));
    EXPECT_THAT(take(), ElementsAre("key", "above 33"));
    panel->getsKeyboard = false;
    EXPECT_FALSE(presenter.takeKeyboard(pid));
    EXPECT_FALSE(model->hasKeyboard.get());
    EXPECT_FALSE(presenter.takeKeyboard(8));
}

}  // namespace
