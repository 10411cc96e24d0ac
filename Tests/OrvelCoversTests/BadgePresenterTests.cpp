#include "OrvelBlurTests/StubOverlayPanel.h"
#include "OrvelCovers/AppKitBadgePresenter.h"

namespace {

struct Panel final : StubOverlayPanel {
    using StubOverlayPanel::StubOverlayPanel;

    void orderAbove(WindowID number) override { log.push_back(fmt::format("above {}", number)); }
    void makeKeyAndOrderFront() override {
        key = acceptsKeyboard && getsKeyboard;
        log.emplace_back("key");
    }
    bool isKeyWindow() const override { return key; }

    std::vector<std::string> log;
    bool key = false;
    bool getsKeyboard = true;
};

TEST(BadgePresenter, TheFieldKnowsWhetherItHasTheKeyboard) {
    constexpr std::int64_t pid = 7;
    PanelRecord record;
    Panel* panel = nullptr;
    bool isAboveCover = true;
    AppKitBadgePresenter presenter{
        {.makePanel =
             [&](const Rect&, int) {
                 auto made = std::make_unique<Panel>(record);
                 panel = made.get();
                 return made;
             },
         .makeContent = [](const auto&...) { return std::make_shared<PanelContent>(); },
         .visibleFrame = [] { return Rect{}; },
         .scale = [] { return 1.0; },
         .isAbove = [&](auto, auto) { return isAboveCover; }}};
    const auto model = std::make_shared<LockCardModel>("App", nullptr, false);
    presenter.show(pid, model);
    EXPECT_TRUE(presenter.takeKeyboard(pid));
    EXPECT_TRUE(model->hasKeyboard.get());
    panel->key = false;
    panel->onKeyChanged();
    EXPECT_FALSE(model->hasKeyboard.get());
    EXPECT_FALSE(presenter.holdsKeyboard(pid));
    presenter.place(pid, {101, 50, 400, 300}, 33);
    EXPECT_EQ(record.frame, Rect(183, 180, 236, 40)) << "in the middle, on whole points";
    panel->log.clear();
    EXPECT_TRUE(presenter.takeKeyboard(pid));
    EXPECT_THAT(panel->log, ElementsAre("key"))
        << "in front of all windows, not of its cover alone";
    EXPECT_TRUE(model->hasKeyboard.get());
    isAboveCover = false;
    EXPECT_TRUE(presenter.takeKeyboard(pid));
    EXPECT_THAT(panel->log, ElementsAre("key", "key", "above 33"));
    panel->getsKeyboard = false;
    EXPECT_FALSE(presenter.takeKeyboard(pid));
    EXPECT_FALSE(model->hasKeyboard.get());
    EXPECT_FALSE(presenter.takeKeyboard(8));
}

}  // namespace
