#include <nlohmann/json.hpp>

#include "OrvelCore/Capabilities.h"
#include "OrvelCore/SwayConfig.h"
#include "OrvelCore/SwayWindows.h"

#include "Support/Prelude.h"

using namespace OrvelCore;
using Modifiers = Shortcut::Modifiers;

namespace {

constexpr Modifiers command{1}, option{2}, control{4}, shift{8};

TEST(SwayBindings, AreFoundWhereverTheConfigurationMakesThem) {
    const char* const config = R"(
# bindsym Mod4+a nop
set $mod Mod4
set $mode Mod1
set $left h
bindsym $mod+$left focus left
bindsym --locked --to-code $mode+Shift+SPACE \
    exec x
bindsym Control+Alt+Delete exec x
bindcode $mod+46 exec x
mode "resize" {
    bindsym Mod4+r nop
}
mode "default" {
    bindsym Mod4+d nop
}
bindsym {
    Mod4+Return exec x
}
input type:keyboard {
    xkb_layout de
}
include more/*.conf
)";
    const auto read = [&](std::optional<std::vector<std::string>> included) {
        return swayBindings(config, [included](const std::string& path) {
            EXPECT_EQ(path, "more/*.conf");
            return included;
        });
    };
    const auto bindings =
        read(std::vector<std::string>{"bindsym $mod+i nop", "bindsym Mod4+j nop"});
    struct Case {
        Modifiers modifiers;
        const char* key;
        std::uint32_t code;
        bool isBound;
    };
    for (const auto& c : std::vector<Case>{{command, "a", 38, false},
                                           {command, "h", 43, true},
                                           {command | shift, "h", 43, false},
                                           {option | shift, "space", 65, true},
                                           {control | option, "Delete", 119, true},
                                           {command, "l", 46, true},
                                           {command, "n", 57, false},
                                           {command, "r", 27, false},
                                           {command, "d", 40, true},
                                           {command, "Return", 36, true},
                                           {command, "i", 31, true},
                                           {command, "j", 44, true}})
        EXPECT_EQ(bindings.mayHave(swayModifiers(c.modifiers), c.key, c.code), c.isBound) << c.key;
    EXPECT_TRUE(read({}).mayHave(swayModifiers(command), "a", 38)) << "not all could be read";
}

TEST(Capabilities, FollowFromWhatTheCompositorOffers) {
    struct Case {
        const char* compositor;
        CompositorOffers offers;
        Capabilities permits;
    };
    constexpr bool yes = true, no = false;
    for (const auto& [compositor, offers, permits] : std::vector<Case>{
             {"sway", {yes, yes, yes, yes}, {yes, yes, yes, no, yes, yes, yes, yes, yes}},
             {"sway without a layer shell",
              {yes, no, yes, yes},
              {yes, no, yes, no, no, yes, no, yes, no}},
             {"labwc", {yes, yes, yes, no}, {yes, no, no, no, yes, no, yes, yes, yes}},
             {"Plasma", {no, yes, yes, no, yes}, {no, no, no, no, yes, yes, yes, yes, yes}},
             {"weston", {}, {no, no, no, no, no, no, no, no, no}}})
        EXPECT_EQ(capabilities(offers), permits) << compositor;
    EXPECT_EQ(Capabilities(), (Capabilities{yes, yes, no, yes, yes, yes, yes, yes, yes}));
}

TEST(SwayHidden, BringsEachWindowBackToItsPlace) {
    const auto tree = nlohmann::json::parse(R"({"type": "root", "nodes": [
        {"type": "output", "nodes": [
            {"type": "workspace", "name": "__i3_scratch", "floating_nodes": [
                {"type": "floating_con", "id": 9, "pid": 3, "app_id": "kept"}]}]},
        {"type": "output", "nodes": [
            {"type": "workspace", "name": "2: \"x\"", "nodes": [
                {"type": "con", "nodes": [
                    {"type": "con", "id": 5, "pid": 1, "app_id": "foot", "focused": true,
                     "rect": {"x": 10, "y": 20, "width": 300, "height": 200}}]}],
             "floating_nodes": [
                {"type": "floating_con", "id": 6, "pid": 2, "app_id": null,
                 "window_properties": {"class": "Xterm"}}]}]}]})");
    const auto windows = swayWindows(tree);
    ASSERT_EQ(windows.size(), 3U);
    EXPECT_FALSE(windows[0].isShown());
    const SwayWindow tiled{5, 1, "foot", {10, 20, 300, 200}, "2: \"x\"", false, true};
    EXPECT_EQ(windows[1], tiled);
    EXPECT_EQ(windows[2].appID, "Xterm");
    EXPECT_TRUE(windows[2].isFloating);

    const auto toWorkspace = R"([con_id=5] move container to workspace "2: \"x\"")";
    EXPECT_EQ(SwayHidden::show(tiled, false),
              std::string(toWorkspace) + "; [con_id=5] floating disable");
    EXPECT_EQ(SwayHidden::show(tiled, true), "[con_id=5] floating disable");
    EXPECT_EQ(SwayHidden::show(windows[2], true), "") << "where the user has put it";

    // After a crash, from the file; another sway has other windows with these numbers.
    SwayHidden hidden{"socket", {{5, tiled}, {6, windows[2]}}};
    const auto read = SwayHidden::decode(hidden.encoded(), "socket");
    ASSERT_EQ(read.windows.size(), 2U);
    for (const auto& [id, window] : hidden.windows)
        EXPECT_EQ(SwayHidden::show(read.windows.at(id), false), SwayHidden::show(window, false));
    EXPECT_TRUE(SwayHidden::decode(hidden.encoded(), "other").windows.empty());
    for (const char* const damaged :
         {"", "[]", "{", R"({"session": "socket", "windows": [1, {}]})"})
        EXPECT_TRUE(SwayHidden::decode(damaged, "socket").windows.empty()) << damaged;
}

}  // namespace
