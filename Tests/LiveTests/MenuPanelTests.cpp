#include <QApplication>

#include "Desktop/SampleWindow.h"
#include "MenuDesktop.h"

namespace {

class MenuPanelTest : public MenuDesktopTest {
  protected:
    MenuPanelTest() {
        item.setVisible(true);
        eventually([this] { return !panel.items().isEmpty(); });
    }

    bool isOnScreen() {
        const Area area = card();
        return area.width > 0 &&
               // The inside of the card is dark, whatever is behind it.
               screen().picture({area.x + 60, area.y + 4, 40, 4}).shareOf(0x16181d, 2) == 1;
    }
    bool isGone() {
        return !isOpen() && screen().picture({itemX - 40, 60, 40, 4}).shareOf(0x16181d, 2) < 1;
    }

    DesktopPanel panel;
};

TEST_F(MenuPanelTest, HangsUnderTheBarAndTakesClicks) {
    SampleWindow behind(display(), {0, 30, 800, 570}, 0xffffff, SampleWindow::Kind::popup);
    behind.map();
    behind.takeFocus();
    clickItem(panel);
    ASSERT_TRUE(eventually([&] { return isOnScreen(); }));
    const Area area = card();
    EXPECT_EQ(area.y, 30);
    EXPECT_EQ(area.x, itemX - 160);
    EXPECT_TRUE(behind.hasFocus()) << "a click leaves the keyboard where it is";

    clickControl("Focus Blur");
    EXPECT_TRUE(eventually([&] { return chosen.size() == 1; }));
    EXPECT_TRUE(isOpen());
    const int before = card().height;
    clickControl("Choose apps");
    model.privateChoices.set({{.id = "org.mail", .name = "Mail"}});
    EXPECT_TRUE(eventually([&] { return card().height > before; }));
    EXPECT_EQ(card().y, 30) << "it grows downwards";
    clickControl("Mail");
    EXPECT_TRUE(eventually([&] { return chosen.size() == 2; }));
    EXPECT_THAT(chosen, ElementsAre("focusBlur", "org.mail"));
    EXPECT_EQ(behind.clicks(), 0);

    clickControl("Lock computer");
    EXPECT_TRUE(eventually([&] { return chosen.size() == 3 && isGone(); }));
    EXPECT_FALSE(model.showsPrivateChoices.get());
}

TEST_F(MenuPanelTest, AClickElsewhereClosesItAndArrivesThere) {
    SampleWindow other(display(), {0, 400, 400, 200}, 0xffffff, SampleWindow::Kind::popup);
    other.map();
    clickItem(panel);
    ASSERT_TRUE(eventually([&] { return isOnScreen(); }));
    screen().click(100, 500);
    EXPECT_TRUE(eventually([&] { return isGone(); }));
    EXPECT_TRUE(eventually([&] { return other.clicks() == 1; }));
}

TEST_F(MenuPanelTest, OpenedByKeyboardItTakesTheKeyboardAndHandsItBack) {
    SampleWindow behind(display(), {0, 300, 400, 300}, 0xffffff, SampleWindow::Kind::popup);
    behind.map();
    behind.takeFocus();
    ASSERT_TRUE(eventually([&] { return behind.hasFocus(); }));
    // The pointer is far from the item's position, as it is when the item is activated by keyboard.
    panel.call("Activate", {itemX, itemY});
    ASSERT_TRUE(eventually([&] {
        return isOnScreen() && !behind.hasFocus() && QApplication::focusWidget() != nullptr;
    }));
    EXPECT_EQ(QApplication::focusWidget()->accessibleName(), QStringLiteral("Lock computer"));
    screen().press({XK_Down});
    screen().press({XK_Down});
    EXPECT_TRUE(eventually([&] {
        const auto* const focus = QApplication::focusWidget();
        return focus != nullptr && focus->accessibleName() == QStringLiteral("Focus Blur");
    }));
    screen().press({XK_Return});
    EXPECT_TRUE(eventually([&] { return chosen.size() == 1; }));
    EXPECT_THAT(chosen, ElementsAre("focusBlur"));
    EXPECT_EQ(behind.keyPresses(), 0);
    screen().press({XK_Escape});
    EXPECT_TRUE(eventually([&] { return isGone() && behind.hasFocus(); }));
}

}  // namespace
