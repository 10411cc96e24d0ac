#include <map>

#include <gmock/gmock.h>

#include "OrvelModes/MenuPanelPresenter.h"

#include "Support/ManualLoop.h"

using namespace OrvelModes;
using OrvelCore::Point;
using OrvelCore::Rect;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Log = std::vector<std::string>;

constexpr Rect anchor{600, 0, 24, 30};
constexpr Rect screen{0, 0, 1000, 800};
constexpr Point onItem{610, 10};
constexpr Point onPanel{610, 100};
constexpr Point elsewhere{50, 700};

class StubSurface final : public MenuPanelSurface {
  public:
    StubSurface(Log& log, OrvelCore::Size& size, Rect& frame)
        : log_(log), size_(size), frame_(frame) {}

    void renewView() override { log_.emplace_back("view"); }
    OrvelCore::Size fittingSize(double room) override {
        return {size_.width, std::min(size_.height, room)};
    }
    void setFrame(const Rect& frame) override { frame_ = frame; }
    void orderFront(bool takesKeyboard) override {
        log_.emplace_back(takesKeyboard ? "front with keys" : "front");
    }
    void orderOut(bool handBack) override {
        log_.emplace_back(handBack ? "out, hand back" : "out");
    }

  private:
    Log& log_;
    OrvelCore::Size& size_;
    Rect& frame_;
};

struct PresenterTest : testing::Test {
    Log log;
    OrvelCore::Size size{320, 400};
    Rect frame;
    StubSurface* surface = nullptr;
    std::function<void(Point)> pressed;
    std::function<void(std::int64_t)> activated;
    ManualLoop loop;
    OrvelUI::MenuPanelModel model;
    MenuPanelPresenter presenter{
        model,
        loop,
        {.makePanel =
             [this](OrvelUI::MenuPanelModel&) {
                 log.emplace_back("panel");
                 auto made = std::make_unique<StubSurface>(log, size, frame);
                 surface = made.get();
                 return made;
             },
         .watchPresses = [this](auto heard) { return watch(pressed, std::move(heard)); },
         .watchActivations = [this](auto heard) { return watch(activated, std::move(heard)); },
         .ownPID = 42}};

    PresenterTest() {
        presenter.onWillOpen = [this] { log.emplace_back("refresh"); };
        presenter.onHandBack = [this] { log.emplace_back("back to the item"); };
    }

    template <class Handler>
    static std::shared_ptr<void> watch(Handler& handler, Handler heard) {
        handler = std::move(heard);
        return {&handler, [](Handler* watched) { *watched = nullptr; }};
    }
    void open(bool takesKeyboard = false) {
        presenter.open(anchor, screen, takesKeyboard);
        log.clear();
    }
    void press(Point at) {
        const auto tell = pressed;
        if (tell) tell(at);
    }
    void click(bool takesKeyboard = false) { presenter.toggle(anchor, screen, takesKeyboard); }
};

TEST_F(PresenterTest, OpensUnderTheItemWithANewViewEachTime) {
    presenter.open(anchor, screen, false);
    EXPECT_THAT(log, ElementsAre("refresh", "panel", "view", "front"));
    EXPECT_EQ(frame, (Rect{452, 30, 320, 400}));
    log.clear();
    presenter.open(anchor, screen, true);
    EXPECT_THAT(log, IsEmpty()) << "open already";
    model.showsPrivateChoices.set(true);
    size = {320, 2000};
    model.onResize();
    EXPECT_EQ(frame, (Rect{452, 30, 320, 762})) << "grown downwards, as far as there is room";
    presenter.close(false);
    presenter.close(true);
    EXPECT_THAT(log, ElementsAre("out"));
    EXPECT_FALSE(model.showsPrivateChoices.get());
    EXPECT_FALSE(pressed || activated);
    model.onResize();
    log.clear();
    presenter.open(anchor, screen, true);
    EXPECT_THAT(log, ElementsAre("refresh", "view", "front with keys"));
}

TEST_F(PresenterTest, ClosesOnWhateverEndsItsUse) {
    struct Case {
        const char* what;
        bool takesKeyboard;
        std::function<void()> act;
        Log expected;
    };
    const Case cases[] = {
        {"a press elsewhere", true, [&] { press(elsewhere); }, {"out"}},
        {"a press on the panel", false, [&] { press(onPanel); }, {}},
        {"a press on the item", false, [&] { press(onItem); }, {}},
        {"another app", true, [&] { activated(7); }, {"out"}},
        {"this app", true, [&] { activated(42); }, {}},
        {"Escape", true, [&] { surface->onCancel(); }, {"out, hand back", "back to the item"}},
        {"Escape without the keyboard", false, [&] { surface->onCancel(); }, {"out, hand back"}},
        {"a choice", true, [&] { model.onDone(); }, {"out, hand back", "back to the item"}},
        {"the item, by mouse", false, [&] { click(); }, {"out"}},
        {"the item, by keyboard", true, [&] { click(); }, {"out, hand back", "back to the item"}},
    };
    for (const auto& [what, takesKeyboard, act, expected] : cases) {
        open(takesKeyboard);
        act();
        EXPECT_EQ(log, expected) << what;
        EXPECT_EQ(presenter.isOpen(), expected.empty()) << what;
        presenter.close(false);
        loop.advance(2);
    }
}

TEST_F(PresenterTest, ThePressThatClosedItDoesNotOpenItAgain) {
    // As when the item is wider than anybody can tell: the press comes first, then the click.
    const auto closeByPress = [&] {
        open();
        press(elsewhere);
        EXPECT_FALSE(presenter.isOpen());
        log.clear();
    };
    closeByPress();
    click();
    EXPECT_FALSE(presenter.isOpen());
    click();
    EXPECT_TRUE(presenter.isOpen()) << "one click counts once";
    presenter.close(false);

    closeByPress();
    press(onItem);
    click();
    EXPECT_TRUE(presenter.isOpen()) << "a click of its own";
    presenter.close(false);

    closeByPress();
    loop.advance(1.1);
    EXPECT_FALSE(pressed) << "nobody listens for longer than a click takes";
    click();
    EXPECT_TRUE(presenter.isOpen());
}

}  // namespace
