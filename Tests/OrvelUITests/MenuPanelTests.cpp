#include "OrvelUI/MenuPanelContent.h"
#include "OrvelUI/MenuPanelText.h"

#include "Support/FullMenu.h"
#include "Support/MenuChoices.h"

using Role = MenuPanelControl::Role;

namespace {

const Date now = dateFromSecondsSince1970(1'763'733'909);

using Names = std::vector<std::string>;

/// Renders a row as one line: its texts, and its controls as "[name]", "[x name]" if on, or
/// "(name)" if disabled.
std::string line(const MenuPanelRow& row) {
    std::string text = row.title.text;
    if (!row.subtitle.text.empty()) text += ", " + row.subtitle.text;
    const auto add = [&](const MenuPanelControl& control) {
        const std::string name = (control.on ? "x " : "") + control.name;
        text += (text.empty() ? "" : " ") + (control.enabled ? "[" + name + "]" : "(" + name + ")");
    };
    if (row.control) add(*row.control);
    for (const auto& button : row.buttons) add(button.control);
    return row.kind == MenuPanelRow::Kind::separator ? "-" : text;
}

std::vector<std::string> lines(const MenuPanelModel& model) {
    const auto content = MenuPanelContent::of(model, false);
    std::vector<std::string> result{line(content.header)};
    for (const auto& row : content.rows) result.push_back(line(row));
    result.push_back(line(content.footer));
    return result;
}

template <class Do>
void eachControl(const MenuPanelContent& content, Do act) {
    auto rows = content.rows;
    rows.push_back(content.header);
    rows.push_back(content.footer);
    for (const auto& row : rows) {
        if (row.control) act(*row.control);
        for (const auto& button : row.buttons) act(button.control);
    }
}

TEST(MenuPanelText, SaysWhatIsHidden) {
    struct Case {
        Names names;
        std::size_t locked;
        bool focusBlur, quickBlur;
        std::string text;
    };
    for (const auto& [names, locked, focusBlur, quickBlur, text] :
         {Case{{}, 0, false, false, "Ready"}, Case{{}, 0, true, false, "Focus Blur is on"},
          Case{{"A"}, 0, true, false, "Protecting A"}, Case{{"A"}, 1, true, false, "1 app locked"},
          Case{{"A"}, 2, true, false, "2 apps locked"},
          Case{{"A", "B", "C", "D"}, 0, false, false, "Protecting A, B and 2 more"},
          Case{{"A"}, 1, true, true, "Screen blurred"}})
        EXPECT_EQ(MenuPanelText::status(names, locked, focusBlur, quickBlur), text);
    EXPECT_EQ(MenuPanelText::list({}), "");
    EXPECT_EQ(MenuPanelText::list({"A", "B"}), "A and B");
    EXPECT_EQ(MenuPanelText::list({"A", "B", "C"}), "A, B and 1 more");
    EXPECT_EQ(MenuPanelText::privateSummary({}), "Choose apps");
    for (const auto& [minutes, text] :
         std::vector<std::pair<double, std::string>>{{-5, "Locked just now"},
                                                     {0.99, "Locked just now"},
                                                     {1, "Locked 1 min ago"},
                                                     {59.9, "Locked 59 min ago"},
                                                     {60, "Locked 1 hr ago"},
                                                     {179, "Locked 2 hr ago"}})
        EXPECT_EQ(MenuPanelText::lockedAgo(now - Seconds(minutes * 60), now), text);
}

TEST(MenuPanelContent, KeepsTheCountOfNamesThatAreTooLong) {
    MenuPanelModel model;
    model.privateAppsOn.set(true);
    std::vector<MenuPanelModel::PrivateChoice> choices;
    for (int i = 10; i < 40; ++i)
        choices.push_back({.id = std::to_string(i), .name = std::to_string(i), .chosen = true});
    model.privateChoices.set(choices);
    const auto content = MenuPanelContent::of(model, false);
    const auto row = std::ranges::find(content.rows, "Private Apps", &MenuPanelRow::id);
    EXPECT_EQ(content.header.title.text, "Protecting 10, 11");
    EXPECT_EQ(row->subtitle.text, "10, 11");
    for (const auto& label : {content.header.title, row->subtitle})
        EXPECT_EQ(label.tail, " and 28 more");
}

TEST(MenuPanelContent, OffersWhatTheModelHas) {
    MenuPanelModel model;
    EXPECT_THAT(lines(model), ElementsAre("Ready [Settings]", "Lock Mac [Lock Mac]", "-",
                                          "Blur Screen, Hide everything, no password [Blur Screen]",
                                          "Focus Blur [Focus Blur]",
                                          "Private Apps, Choose apps [Private Apps] [Choose apps]",
                                          "[Settings] [Quit]"));
    fill(model, now);
    EXPECT_THAT(
        lines(model),
        ElementsAre("1 app locked [Settings]", "Lock Mac [Lock Mac]", "Lock Mail [Lock Mail]", "-",
                    "Blur Screen, Hide everything, no password [Blur Screen]",
                    "Focus Blur [Focus Blur]", "Private Apps, Signal [x Private Apps] [Hide apps]",
                    "Files [Files]", "Signal [x Signal]", "-", "Locked apps",
                    "Notes, Locked 3 min ago [Unlock Notes]", "-",
                    "Version 2.1 is ready to install [Install]", "-",
                    "Karvo restarts after you unlock", "[Settings] (Unlock apps to quit)"));
}

TEST(MenuPanelContent, CarriesOutWhatIsChosen) {
    MenuPanelModel model;
    fill(model, now);
    std::vector<std::string> log;
    logChoices(model, log);
    model.onDone = [&] { log.emplace_back("done"); };
    std::map<std::string, std::vector<std::string>> heard;
    eachControl(MenuPanelContent::of(model, false), [&](const MenuPanelControl& control) {
        log.clear();
        perform(model, control.action);
        heard[control.name] = log;
    });
    using Log = std::vector<std::string>;
    EXPECT_EQ(heard, (std::map<std::string, Log>{{"Lock Mac", {"done", "lockMac"}},
                                                 {"Lock Mail", {"done", "lockFront"}},
                                                 {"Blur Screen", {"done", "quickBlur"}},
                                                 {"Focus Blur", {"focusBlur"}},
                                                 {"Private Apps", {"privateApps"}},
                                                 {"Hide apps", {}},
                                                 {"Files", {"org.a"}},
                                                 {"Signal", {"org.b"}},
                                                 {"Unlock Notes", {"done", "7"}},
                                                 {"Install", {"done", "install"}},
                                                 {"Settings", {"done", "settings"}},
                                                 {"Unlock apps to quit", {"done", "quit"}}}));
    EXPECT_FALSE(model.showsPrivateChoices.get());
}

}  // namespace
