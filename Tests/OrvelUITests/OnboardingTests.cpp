#include "OrvelCore/OnboardingText.h"
#include "OrvelUI/OnboardingContent.h"
#include "OrvelUITests/FormSketch.h"

namespace Words = OnboardingText;

namespace {

struct OnboardingTest : testing::Test {
    OnboardingModel model;
    int tries = 0;
    std::optional<OnboardingFlow::Outcome> outcome;

    void SetUp() override {
        model.lockMac.set(Shortcut::lockMac());
        model.lockApp.set(Shortcut::lockApp());
        model.apps.set({{.id = "a", .name = "Alpha"}, {.id = "b", .name = "Beta"}});
        model.onTry = [this] { ++tries; };
        model.onFinish = [this](const auto& given) { outcome = given; };
    }
    OnboardingContent content() { return OnboardingContent::of(model); }
    std::vector<std::string> lines() { return sketch(content().form); }
    /// Returns "back | secondary | primary", with a disabled button in brackets.
    std::string footer() {
        const auto now = content();
        const auto name = [](const FormButton& button) {
            return button.enabled ? button.title : "[" + button.title + "]";
        };
        std::string text = now.back ? name(*now.back) : "";
        text += " | " + (now.secondary ? name(*now.secondary) : "") + " | " + name(now.primary);
        return text;
    }
    OnboardingStep step() const { return model.flow.get().step; }
};

}  // namespace

TEST_F(OnboardingTest, LeadsThroughToTheEnd) {
    EXPECT_EQ(footer(), " |  | Get started");
    EXPECT_THAT(lines(), ElementsAre("desktop, moving", Words::welcomeTitle, Words::welcomeBody));
    EXPECT_EQ(content().dots.spoken(), "Step 1 of 4");
    model.secondary();
    EXPECT_EQ(step(), OnboardingStep::welcome);
    content().primary.press();

    EXPECT_EQ(footer(), "Back | Skip | Try it now");
    EXPECT_THAT(lines(),
                ElementsAre(Words::shortcutsTitle, "Lock your Mac *⌘L", "Lock the app in front ⌥⌘L",
                            "^ " + *Words::browserNote(Shortcut::lockMac()),
                            std::string("^ ") + Words::changeNote));
    content().primary.press();
    content().primary.press();
    EXPECT_EQ(tries, 1);
    EXPECT_EQ(footer(), "[Back] | [Skip] | [Try it now]");
    EXPECT_THAT(lines(), Contains(Words::tryWaiting));
    EXPECT_THAT(lines(), Contains("Lock your Mac ⌘L")) << "no pulse while it is being tried";
    EXPECT_TRUE(model.keepsFocusAfterLock());
    EXPECT_TRUE(model.lockUncovered());
    EXPECT_FALSE(model.lockUncovered());
    EXPECT_EQ(footer(), "Back |  | Continue");
    EXPECT_THAT(lines(), Contains("Lock your Mac ⌘L {Tried}"));
    EXPECT_THAT(lines(), Contains(Words::tryDone));
    content().primary.press();

    EXPECT_EQ(footer(), "Back | Skip for now | Continue");
    EXPECT_THAT(lines(), ElementsAre(Words::privateTitle, Words::privateBody(), "Alpha Beta"));
    control<AppChoiceTiles>(content().form, "apps").tiles[1].toggle();
    EXPECT_EQ(footer(), "Back | Skip for now | Set up");
    EXPECT_THAT(lines(), Contains("Alpha (Beta)"));
    content().primary.press();

    EXPECT_EQ(footer(), "Back |  | Done");
    EXPECT_THAT(lines(), ElementsAre(Words::finishTitle, "bar", Words::menuBarNote(),
                                     "[x] " + Words::launchAtLogin()));
    control<SettingsSwitch>(content().form, "launchAtLogin").set(false);
    content().primary.press();
    EXPECT_EQ(outcome, (OnboardingFlow::Outcome{{"b"}, false}));
    EXPECT_EQ(content().dots.current, 4);
}
