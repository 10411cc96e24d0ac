#include <QScrollArea>
#include <QScrollBar>

#include "OrvelUI/Qt/IslandSwitchWidget.h"
#include "OrvelUI/Qt/KeycapsWidget.h"
#include "OrvelUI/Qt/MenuPanelView.h"

#include "Widgets.h"

namespace {

struct MenuPanelViewTest : testing::Test {
    MenuPanelModel model;
    std::unique_ptr<MenuPanelView> view;
    std::vector<std::string> log;

    void show() {
        view = std::make_unique<MenuPanelView>(model, true, false);
        view->resize(view->fittingSize(1000));
        view->show();
    }
    /// The names in Tab order, from the first row on.
    std::vector<std::string> tabOrder() {
        std::vector<std::string> names;
        view->activateWindow();
        view->focusFirst();
        auto* const first = QApplication::focusWidget();
        auto* widget = first;
        do {
            names.push_back(widget->accessibleName().toStdString());
            press(*widget, Qt::Key_Down);
            widget = QApplication::focusWidget();
        } while (widget != first && names.size() < 20);
        return names;
    }
};

TEST_F(MenuPanelViewTest, IsDescribedToAssistivePrograms) {
    model.lockMacShortcut.set(Shortcut::lockMac());
    model.focusBlurOn.set(true);
    model.lockedApps.set({{.id = 7, .name = "Mac"}});
    show();
    auto* const lock = named(*view, "Lock computer");
    ASSERT_NE(lock, nullptr);
    EXPECT_EQ(accessible(lock).role(), QAccessible::Button);
    EXPECT_EQ(lock->accessibleDescription(), "Locks your computer now. Super L");
    auto* const focusBlur = dynamic_cast<IslandSwitchWidget*>(named(*view, "Focus Blur"));
    auto* const quickBlur = named(*view, "Blur Screen");
    ASSERT_TRUE(focusBlur != nullptr && quickBlur != nullptr);
    EXPECT_EQ(accessible(focusBlur).role(), QAccessible::CheckBox);
    EXPECT_TRUE(accessible(focusBlur).state().checked);
    EXPECT_FALSE(accessible(quickBlur).state().checked);
    EXPECT_NE(named(*view, "Unlock Mac"), nullptr) << "the name of an app is not reworded";
    auto* const quit = named(*view, "Unlock apps to quit");
    ASSERT_NE(quit, nullptr);
    EXPECT_TRUE(accessible(quit).state().disabled);
    auto* const section = named(*view, "Locked apps");
    ASSERT_NE(section, nullptr);
    EXPECT_EQ(accessible(section).role(), QAccessible::Heading);

    KeycapsWidget caps;
    caps.setContent({.caps = {"⌥", "⌘", "L"}});
    EXPECT_EQ(caps.accessibleName(), "Alt Super L");
    EXPECT_EQ(accessible(&caps).role(), QAccessible::StaticText);
}

TEST_F(MenuPanelViewTest, KeysReachEverythingInOrderAndPressIt) {
    model.privateChoices.set({{.id = "org.a", .name = "Files"}});
    show();
    // A list that is unfolded later has its normal position in the order.
    model.showsPrivateChoices.set(true);
    QCoreApplication::processEvents();
    EXPECT_THAT(tabOrder(), ElementsAre("Lock computer", "Blur Screen", "Focus Blur", "Hide apps",
                                        "Private Apps", "Files", "Settings", "Quit", "Settings"));
    model.onTogglePrivateApp = [this](const std::string& id) { log.push_back(id); };
    model.onToggleFocusBlur = [this] { log.emplace_back("focusBlur"); };
    press(*named(*view, "Files"), Qt::Key_Return);
    press(*named(*view, "Focus Blur"), Qt::Key_Space);
    EXPECT_THAT(log, ElementsAre("org.a", "focusBlur"));
    auto* const files = dynamic_cast<QAbstractButton*>(named(*view, "Files"));
    EXPECT_FALSE(files->isChecked()) << "only the model says what is chosen";
}

TEST_F(MenuPanelViewTest, FollowsTheModelRowByRow) {
    int resizes = 0;
    model.onResize = [&] { ++resizes; };
    model.privateChoices.set({{.id = "org.a", .name = "Files"}, {.id = "org.b", .name = "Mail"}});
    show();
    EXPECT_EQ(resizes, 1);
    auto* const focusBlur = dynamic_cast<QAbstractButton*>(named(*view, "Focus Blur"));
    model.focusBlurOn.set(true);
    model.frontAppName.set("Mail");
    model.showsPrivateChoices.set(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(resizes, 2) << "once for everything that changed together";
    EXPECT_EQ(named(*view, "Focus Blur"), focusBlur) << "the same row, with the keyboard if it had";
    EXPECT_TRUE(focusBlur->isChecked());
    EXPECT_NE(named(*view, "Lock Mail"), nullptr);
    model.privateChoices.set({{.id = "org.b", .name = "Mail"}});
    QCoreApplication::processEvents();
    EXPECT_EQ(named(*view, "Files"), nullptr);
    EXPECT_NE(named(*view, "Mail"), nullptr);
}

TEST_F(MenuPanelViewTest, ScrollsWhatDoesNotFit) {
    std::vector<MenuPanelModel::PrivateChoice> choices;
    for (int i = 0; i < 40; ++i)
        choices.push_back({.id = std::to_string(i), .name = "App " + std::to_string(i)});
    model.privateChoices.set(choices);
    model.showsPrivateChoices.set(true);
    show();
    view->resize(view->fittingSize(400));
    EXPECT_EQ(view->height(), 400);
    auto* const last = named(*view, "App 39");
    auto* const quit = named(*view, "Quit");
    ASSERT_TRUE(last != nullptr && quit != nullptr);
    EXPECT_GT(last->mapTo(view.get(), QPoint()).y(), view->height());
    EXPECT_LT(quit->mapTo(view.get(), QPoint(0, quit->height())).y(), view->height());
    auto* const scroller = view->findChild<QScrollArea*>();
    EXPECT_EQ(scroller->horizontalScrollBar()->maximum(), 0) << "nothing to scroll to horizontally";
    scroller->ensureWidgetVisible(last);
    EXPECT_LT(last->mapTo(view.get(), QPoint()).y(), quit->mapTo(view.get(), QPoint()).y());
}

}  // namespace
