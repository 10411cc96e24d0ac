#include "OrvelCore/SwayWindows.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace OrvelCore {

using nlohmann::json;

namespace {

constexpr std::string_view scratchpad = "__i3_scratch";

std::string textOf(const json& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

double numberOf(const json& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_number() ? found->get<double>() : 0;
}

void collect(const json& node, std::string workspace, bool isFloating,
             std::vector<SwayWindow>& windows) {
    if (!node.is_object()) return;
    const auto type = textOf(node, "type");
    if (type == "workspace") workspace = textOf(node, "name");
    if (workspace == scratchpad) workspace.clear();
    isFloating = isFloating || type == "floating_con";
    if (const auto pid = numberOf(node, "pid"); pid > 0) {
        SwayWindow window{.id = static_cast<WindowID>(numberOf(node, "id")),
                          .pid = static_cast<std::int64_t>(pid),
                          .appID = textOf(node, "app_id"),
                          .workspace = workspace,
                          .isFloating = isFloating};
        if (const auto rect = node.find("rect"); rect != node.end() && rect->is_object())
            window.frame = {numberOf(*rect, "x"), numberOf(*rect, "y"), numberOf(*rect, "width"),
                            numberOf(*rect, "height")};
        const auto properties = node.find("window_properties");
        if (window.appID.empty() && properties != node.end() && properties->is_object())
            window.appID = textOf(*properties, "class");
        const auto focused = node.find("focused");
        window.isFocused = focused != node.end() && *focused == true;
        windows.push_back(std::move(window));
    }
    for (const char* const list : {"nodes", "floating_nodes"}) {
        const auto nodes = node.find(list);
        if (nodes == node.end() || !nodes->is_array()) continue;
        for (const auto& inner : *nodes) collect(inner, workspace, isFloating, windows);
    }
}

std::string inQuotes(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') result += '\\';
        result += c;
    }
    return result + '"';
}

}  // namespace

std::vector<SwayWindow> swayWindows(const json& tree) {
    std::vector<SwayWindow> windows;
    collect(tree, {}, false, windows);
    return windows;
}

std::string SwayHidden::encoded() const {
    json list = json::array();
    for (const auto& [id, window] : windows)
        list.push_back({{"id", id},
                        {"pid", window.pid},
                        {"workspace", window.workspace},
                        {"floating", window.isFloating}});
    const json object = {{"session", session}, {"windows", list}};
    return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

SwayHidden SwayHidden::decode(std::string_view text, const std::string& session) {
    SwayHidden hidden{.session = session};
    const auto object = json::parse(text, nullptr, false);
    if (!object.is_object() || textOf(object, "session") != session) return hidden;
    const auto list = object.find("windows");
    if (list == object.end() || !list->is_array()) return hidden;
    for (const auto& entry : *list) {
        if (!entry.is_object()) continue;
        const SwayWindow window{.id = static_cast<WindowID>(numberOf(entry, "id")),
                                .pid = static_cast<std::int64_t>(numberOf(entry, "pid")),
                                .workspace = textOf(entry, "workspace"),
                                .isFloating = entry.value("floating", json()) == true};
        if (window.id > 0) hidden.windows.emplace(window.id, window);
    }
    return hidden;
}

std::string SwayHidden::hide(WindowID id) {
    return fmt::format("[con_id={}] move scratchpad", id);
}

std::string SwayHidden::show(const SwayWindow& before, bool isShown) {
    std::string commands;
    // The scratchpad is left by a move, which does not take the focus.
    if (!isShown)
        commands = fmt::format("[con_id={}] move container to workspace {}", before.id,
                               inQuotes(before.workspace));
    if (!before.isFloating)
        commands +=
            fmt::format("{}[con_id={}] floating disable", commands.empty() ? "" : "; ", before.id);
    return commands;
}

}  // namespace OrvelCore
