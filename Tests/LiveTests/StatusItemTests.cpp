#include <QDBusArgument>

#include "OrvelModes/Linux/StatusNotifierTypes.h"

#include "MenuDesktop.h"

using StatusNotifier::Layout;

namespace {

using StatusItemTest = MenuDesktopTest;

struct Row {
    int id = 0;
    std::string text;
};

/// Reads every row of the menu as "label", "*label" if checked, "(label)" if disabled, or "-" for a
/// separator. The rows of a submenu follow their parent row with an indent.
void read(const Layout& layout, const std::string& indent, std::vector<Row>& rows) {
    for (const auto& child : layout.children) {
        const auto row = qdbus_cast<Layout>(child.variant());
        std::string text = row.properties.value(QStringLiteral("label")).toString().toStdString();
        if (row.properties.value(QStringLiteral("type")) == QStringLiteral("separator")) text = "-";
        if (row.properties.value(QStringLiteral("toggle-state")).toInt() == 1) text = "*" + text;
        if (!row.properties.value(QStringLiteral("enabled"), true).toBool())
            text = "(" + text + ")";
        rows.push_back({row.id, indent + text});
        read(row, indent + "  ", rows);
    }
}

std::vector<Row> menuRows(DesktopPanel& panel) {
    panel.callMenu("AboutToShow", {0});
    const auto reply = panel.callMenu("GetLayout", {0, -1, QStringList{}});
    std::vector<Row> rows;
    read(qdbus_cast<Layout>(reply.arguments().value(1)), "", rows);
    return rows;
}

int idOf(const std::vector<Row>& rows, const std::string& text) {
    for (const auto& row : rows) {
        if (row.text == text) return row.id;
    }
    ADD_FAILURE() << "no " << text;
    return -1;
}

void choose(DesktopPanel& panel, int id) {
    panel.callMenu(
        "Event", {id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(QString())), 0U});
}

TEST_F(StatusItemTest, AnnouncesItselfToEveryWatcherAndGoesWhenHidden) {
    EXPECT_EQ(item.isShown(), false) << "it is not visible yet";
    item.setVisible(true);
    EXPECT_TRUE(eventually([&] { return item.isShown() == false; })) << "no panel draws it";
    // The item outlives this function, and may still report that the last panel has gone.
    const auto changes = std::make_shared<int>(0);
    item.onShownChanged = [changes] { ++*changes; };
    for (int round = 0; round < 2; ++round) {
        DesktopPanel panel(false);
        ASSERT_TRUE(eventually([&] { return panel.items().size() == 1; })) << "watcher " << round;
        EXPECT_TRUE(eventually([&] { return item.isShown() == false; }));
        panel.setHost(true);
        EXPECT_TRUE(eventually([&] { return item.isShown() == true; }));
        EXPECT_EQ(panel.property("Title").toString(), QStringLiteral("Karvo"));
        panel.setHost(false);
        EXPECT_TRUE(eventually([&] { return item.isShown() == false; }));
    }
    EXPECT_GE(*changes, 4);

    DesktopPanel panel;
    ASSERT_TRUE(eventually([&] { return item.isShown() == true; }));
    item.setVisible(false);
    EXPECT_EQ(item.isShown(), false);
    EXPECT_TRUE(panel.property("Title").isNull()) << "its name is still on the bus";
    item.setVisible(true);
    EXPECT_TRUE(eventually([&] { return panel.items().size() == 2; }));
    EXPECT_FALSE(panel.property("Title").isNull());
}

TEST_F(StatusItemTest, ExportsItsMenu) {
    DesktopPanel panel;
    item.setVisible(true);
    ASSERT_TRUE(eventually([&] { return !panel.items().isEmpty(); }));
    int opened = 0;
    menu.onWillOpen = [&] {
        ++opened;
        model.frontAppName.set("Mac & Co_");
        model.lockedApps.set({{.id = 7, .name = "Signal"}});
        model.focusBlurOn.set(true);
        model.privateChoices.set({{.id = "org.mail", .name = "Mail", .chosen = true}});
    };
    const auto rows = menuRows(panel);
    std::vector<std::string> texts;
    for (const auto& row : rows) texts.push_back(row.text);
    EXPECT_THAT(texts,
                ElementsAre("(1 app locked)", "-", "Lock computer", "Lock Mac & Co__", "-",
                            "Blur Screen", "*Focus Blur", "Private Apps", "  Turn Private Apps On",
                            "  -", "  *Mail", "  -", "  Add Apps…", "-", "(Locked Apps)",
                            "Unlock Signal", "-", "Settings…", "(Quit Karvo)"));
    EXPECT_GE(opened, 1);

    choose(panel, idOf(rows, "  *Mail"));
    choose(panel, idOf(rows, "(Quit Karvo)"));
    choose(panel, 0);
    EXPECT_TRUE(eventually([&] { return !chosen.empty(); }));
    EXPECT_THAT(chosen, ElementsAre("org.mail"));

    // The desktop's panel still shows the rows that it has read, although another row now has that
    // position.
    menu.onWillOpen = [&] {
        model.frontAppName.set(std::nullopt);
        model.lockedApps.set({{.id = 9, .name = "Files"}, {.id = 7, .name = "Signal"}});
    };
    menuRows(panel);
    choose(panel, idOf(rows, "Unlock Signal"));
    choose(panel, idOf(rows, "Settings…"));
    EXPECT_TRUE(eventually([&] { return chosen.size() == 3; }));
    EXPECT_THAT(chosen, ElementsAre("org.mail", "7", "settings"));
}

}  // namespace
