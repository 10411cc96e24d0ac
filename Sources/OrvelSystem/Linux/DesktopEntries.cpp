#include "OrvelSystem/Linux/DesktopEntries.h"

#include <algorithm>
#include <cctype>
#include <memory>

#include <gio/gdesktopappinfo.h>

namespace OrvelSystem {

namespace {

constexpr std::string_view ending = ".desktop";

std::string text(const char* value) {
    return value == nullptr ? std::string() : std::string(value);
}

std::string lower(std::string_view value) {
    std::string result(value);
    std::ranges::transform(result, result.begin(), [](unsigned char character) {
        return static_cast<char>(std::tolower(character));
    });
    return result;
}

bool sameWithoutCase(std::string_view one, std::string_view other) {
    return !one.empty() && lower(one) == lower(other);
}

std::string baseName(std::string_view path) {
    return std::string(path.substr(path.rfind('/') + 1));
}

std::string iconOf(GAppInfo* info) {
    GIcon* const icon = g_app_info_get_icon(info);
    if (icon == nullptr) return {};
    const std::unique_ptr<char, decltype(&g_free)> name(g_icon_to_string(icon), g_free);
    return text(name.get());
}

}  // namespace

std::vector<DesktopEntry> readDesktopEntries() {
    std::vector<DesktopEntry> entries;
    GList* const all = g_app_info_get_all();
    for (const GList* at = all; at != nullptr; at = at->next) {
        auto* const info = static_cast<GAppInfo*>(at->data);
        auto id = text(g_app_info_get_id(info));
        if (!id.ends_with(ending)) continue;
        id.resize(id.size() - ending.size());
        auto* const desktop = G_DESKTOP_APP_INFO(info);
        entries.push_back({.id = std::move(id),
                           .name = text(g_app_info_get_display_name(info)),
                           .icon = iconOf(info),
                           .startupClass = text(g_desktop_app_info_get_startup_wm_class(desktop)),
                           .executable = baseName(text(g_app_info_get_executable(info))),
                           .isShown = g_app_info_should_show(info) != FALSE});
    }
    g_list_free_full(all, g_object_unref);
    return entries;
}

const DesktopEntry* findEntry(const std::vector<DesktopEntry>& entries, const AppTraits& traits) {
    // Of several that fit, one that menus show comes before others of the same program.
    const auto first = [&](auto&& fits) -> const DesktopEntry* {
        const DesktopEntry* found = nullptr;
        for (const auto& entry : entries) {
            if (fits(entry) && (found == nullptr || (entry.isShown && !found->isShown)))
                found = &entry;
        }
        return found;
    };
    const auto byID = [&](std::string_view id) -> const DesktopEntry* {
        if (id.empty()) return nullptr;
        return first([&](const DesktopEntry& entry) { return sameWithoutCase(entry.id, id); });
    };
    for (const auto& name : {traits.windowClass, traits.windowInstance}) {
        if (const auto* entry = first([&](const DesktopEntry& candidate) {
                return sameWithoutCase(candidate.startupClass, name);
            }))
            return entry;
    }
    for (const auto& id : {traits.gtkApplicationID, traits.scope, traits.windowClass,
                           traits.windowInstance, traits.executable}) {
        if (const auto* entry = byID(id)) return entry;
    }
    if (traits.executable.empty()) return nullptr;
    return first(
        [&](const DesktopEntry& candidate) { return candidate.executable == traits.executable; });
}

std::string appOfScope(std::string_view controlGroup) {
    auto unit = controlGroup.substr(controlGroup.rfind('/') + 1);
    while (!unit.empty() && (unit.back() == '\n' || unit.back() == ' ')) unit.remove_suffix(1);
    const auto drop = [&](std::string_view prefix) {
        const bool has = unit.starts_with(prefix);
        if (has) unit.remove_prefix(prefix.size());
        return has;
    };
    if (drop("snap.")) {
        // snap.<package>.<app>-<id>.scope; its entry is <package>_<app>.
        const auto package = unit.substr(0, unit.find('.'));
        if (package.size() == unit.size()) return {};
        const auto app = unit.substr(package.size() + 1);
        return std::string(package) + "_" + std::string(app.substr(0, app.find_first_of("-.")));
    }
    if (!drop("app-")) return {};
    // app[-<launcher>]-<id>[@<instance>].service or app[-<launcher>]-<id>-<number>.scope, where
    // a hyphen within the id is written as \x2d.
    if (unit.ends_with(".scope")) {
        unit.remove_suffix(std::string_view(".scope").size());
        unit = unit.substr(0, unit.rfind('-'));
    } else if (unit.ends_with(".service")) {
        unit.remove_suffix(std::string_view(".service").size());
        unit = unit.substr(0, unit.find('@'));
    } else {
        return {};
    }
    if (const auto launcher = unit.rfind('-'); launcher != std::string_view::npos)
        unit.remove_prefix(launcher + 1);
    std::string app(unit);
    constexpr std::string_view hyphen = "\\x2d";
    for (auto at = app.find(hyphen); at != std::string::npos; at = app.find(hyphen, at))
        app.replace(at, hyphen.size(), "-");
    return app;
}

}  // namespace OrvelSystem
