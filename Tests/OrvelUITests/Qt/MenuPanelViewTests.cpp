#include <QScrollArea>
#include <QScrollBar>

#include "OrvelUI/Qt/IslandSwitchWidget.h"
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
