#include "OrvelSystem/Linux/DesktopEntries.h"

#include <algorithm>

#include <gio/gdesktopappinfo.h>

#include "OrvelSystem/X11/AppIdentity.h"

namespace OrvelSystem {

namespace {

constexpr std::string_view ending = ".desktop";

template <auto release>
struct Release {
    template <class T>
    void operator()(T* owned) const {
        release(owned);
    }
};
using Characters = std::unique_ptr<char, Release<g_free>>;
using Words = std::unique_ptr<char*, Release<g_strfreev>>;

std::string text(const char* value) {
    return value == nullptr ? std::string() : std::string(value);
}

std::string programOfLine(const char* commandLine) {
    char** words = nullptr;
    int count = 0;
    if (commandLine == nullptr || g_shell_parse_argv(commandLine, &count, &words, nullptr) == FALSE)
        return {};
    const Words owned(words);
    return programOf({words, words + count});
}

DesktopEntry read(GAppInfo* info, std::string id) {
    auto* const desktop = G_DESKTOP_APP_INFO(info);
    DesktopEntry entry{.id = std::move(id),
                       .name = text(g_app_info_get_name(info)),
                       .startupClass = text(g_desktop_app_info_get_startup_wm_class(desktop)),
                       .executable = programOfLine(g_app_info_get_commandline(info)),
                       .isShown = g_app_info_should_show(info) != FALSE};
    if (GIcon* const icon = g_app_info_get_icon(info))
        entry.icon = text(Characters(g_icon_to_string(icon)).get());
    if (entry.executable.empty()) {
        const Characters tried(g_desktop_app_info_get_string(desktop, "TryExec"));
        if (tried) entry.executable = programOf({tried.get()});
    }
    return entry;
}

}  // namespace

std::optional<std::string> DesktopEntry::idOf(std::string_view file) {
    // An identifier that is not valid UTF-8 cannot be stored in the settings.
    if (!file.ends_with(ending) || file == ending ||
        g_utf8_validate(file.data(), static_cast<gssize>(file.size()), nullptr) == FALSE)
        return {};
    return std::string(file.substr(0, file.size() - ending.size()));
}

/// Discards the entries and calls `onChange` once after each reading, as soon as the entries on
/// disk change.
class DesktopEntries::Monitor {
  public:
    explicit Monitor(DesktopEntries& entries) : monitor_(g_app_info_monitor_get()) {
        handler_ =
            g_signal_connect(monitor_, "changed", G_CALLBACK(+[](GAppInfoMonitor*, gpointer data) {
                                 auto& changed = *static_cast<DesktopEntries*>(data);
                                 changed.entries_.reset();
                                 changed.onChange();
                             }),
                             &entries);
    }
    ~Monitor() {
        g_signal_handler_disconnect(monitor_, handler_);
        g_object_unref(monitor_);
    }
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;

  private:
    GAppInfoMonitor* monitor_;
    gulong handler_;
};

DesktopEntries::DesktopEntries() = default;
DesktopEntries::~DesktopEntries() = default;

const std::vector<DesktopEntry>& DesktopEntries::all() {
    if (entries_) return *entries_;
    if (!monitor_) monitor_ = std::make_unique<Monitor>(*this);
    auto& entries = entries_.emplace();
    GList* const infos = g_app_info_get_all();
    for (const GList* at = infos; at != nullptr; at = at->next) {
        auto* const info = static_cast<GAppInfo*>(at->data);
        auto id = DesktopEntry::idOf(text(g_app_info_get_id(info)));
        if (id) entries.push_back(read(info, std::move(*id)));
    }
    g_list_free_full(infos, g_object_unref);
    // The order on disk is arbitrary. Sorting makes the choice among several matching entries
    // reproducible.
    std::ranges::sort(entries, {}, &DesktopEntry::id);
    return entries;
}

const DesktopEntry* DesktopEntries::find(std::string_view id) {
    const auto& entries = all();
    const auto found = std::ranges::lower_bound(entries, id, {}, &DesktopEntry::id);
    return found != entries.end() && found->id == id ? &*found : nullptr;
}

}  // namespace OrvelSystem
