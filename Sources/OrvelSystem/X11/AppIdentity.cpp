#include "OrvelSystem/X11/AppIdentity.h"

#include <QString>
#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "OrvelCore/Text.h"
#include "OrvelSystem/Linux/WellKnownApps.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

namespace {

using OrvelCore::Text::lowerCase;

/// Programs that run other programs, without version numbers.
constexpr std::array<std::string_view, 28> starters = {"ash",
                                                       "bash",
                                                       "bwrap",
                                                       "dash",
                                                       "electron",
                                                       "flatpak",
                                                       "gjs",
                                                       "gjs-console",
                                                       "guile",
                                                       "gtk-launch",
                                                       "java",
                                                       "javaw",
                                                       "lua",
                                                       "mono",
                                                       "node",
                                                       "nodejs",
                                                       "perl",
                                                       "pkexec",
                                                       "python",
                                                       "qml",
                                                       "ruby",
                                                       "sh",
                                                       "snap",
                                                       "sudo",
                                                       "systemd-run",
                                                       "wine",
                                                       "wine64-preloader",
                                                       "wine-preloader"};

bool isStarter(std::string_view program) {
    const auto last = program.find_last_not_of("0123456789.");
    const auto unversioned = program.substr(0, last == std::string_view::npos ? 0 : last + 1);
    return std::ranges::find(starters, program) != starters.end() ||
           std::ranges::find(starters, unversioned) != starters.end();
}

std::string baseName(std::string_view path) {
    return std::string(path.substr(path.rfind('/') + 1));
}

bool sameWithoutCase(std::string_view one, std::string_view other) {
    return !one.empty() && lowerCase(one) == lowerCase(other);
}

/// Decodes the name that a program or a file has given itself. Invalid bytes are replaced, so that
/// the text can be stored.
std::string validText(std::string_view bytes) {
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size())).toStdString();
}

std::string textProperty(xcb_window_t window, std::string_view name) {
    constexpr std::uint32_t words = 64;
    auto& x11 = X11::shared();
    const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        x11.connection(),
        xcb_get_property(x11.connection(), 0, window, x11.atom(name), XCB_ATOM_ANY, 0, words),
        nullptr));
    if (!reply || reply->format != 8) return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())), reply->value_len};
}

std::string wholeFile(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string executableOf(const std::string& process) {
    std::error_code error;
    auto path = std::filesystem::read_symlink(process + "/exe", error).string();
    // The kernel appends this after an update has replaced the file of a running program.
    constexpr std::string_view gone = " (deleted)";
    if (path.ends_with(gone)) path.resize(path.size() - gone.size());
    if (!path.empty()) return validText(baseName(path));
    // The link of a process with more privileges is not readable, but the name is.
    auto name = wholeFile(process + "/comm");
    return validText(name.substr(0, name.find('\n')));
}

bool drop(std::string_view& text, std::string_view prefix) {
    const bool has = text.starts_with(prefix);
    if (has) text.remove_prefix(prefix.size());
    return has;
}

std::string unescaped(std::string_view unit) {
    std::string text(unit);
    constexpr std::string_view hyphen = "\\x2d";
    for (auto at = text.find(hyphen); at != std::string::npos; at = text.find(hyphen, at))
        text.replace(at, hyphen.size(), "-");
    return text;
}

/// `unit` is <package>.<app>-<uuid>, or has a dot before the UUID; the desktop entry is
/// <package>_<app>. Returns an empty string for other units.
std::string snapOf(std::string_view unit) {
    constexpr std::size_t uuid = 36;
    const auto package = unit.substr(0, unit.find('.'));
    if (unit.size() < package.size() + uuid + 3) return {};
    const auto app = unit.substr(package.size() + 1, unit.size() - package.size() - uuid - 2);
    return std::string(package) + "_" + std::string(app);
}

void readUnit(std::string_view unit, AppTraits& traits) {
    const bool isScope = unit.ends_with(".scope");
    if (!isScope && !unit.ends_with(".service")) return;
    unit = unit.substr(0, unit.rfind('.'));
    if (isScope && drop(unit, "snap.")) traits.sandbox = snapOf(unit);
    if (!drop(unit, "app-")) return;
    // The formats are app[-<launcher>]-<id>-<number>.scope and
    // app[-<launcher>]-<id>[@<instance>].service. A hyphen within the identifier is escaped.
    unit = unit.substr(0, isScope ? unit.rfind('-') : unit.find('@'));
    if (isScope && drop(unit, "flatpak-")) {
        traits.sandbox = unescaped(unit);
        return;
    }
    traits.scope = unescaped(unit.substr(unit.rfind('-') + 1));
}

/// Returns the first matching entry that menus show, else the first matching entry, else null.
template <class Fits>
const DesktopEntry* firstOf(const std::vector<DesktopEntry>& entries, Fits fits) {
    const DesktopEntry* found = nullptr;
    for (const auto& entry : entries) {
        if (fits(entry) && (found == nullptr || (entry.isShown && !found->isShown))) found = &entry;
    }
    return found;
}

const DesktopEntry* findEntry(const std::vector<DesktopEntry>& entries, const AppTraits& traits) {
    for (const auto& name : {traits.windowClass, traits.windowInstance}) {
        if (const auto* const entry = firstOf(entries, [&](const DesktopEntry& candidate) {
                return sameWithoutCase(candidate.startupClass, name);
            }))
            return entry;
    }
    const auto byID = [&](std::initializer_list<std::string> ids) -> const DesktopEntry* {
        for (const auto& id : ids) {
            if (const auto* const entry = firstOf(entries, [&](const DesktopEntry& candidate) {
                    return sameWithoutCase(candidate.id, id);
                }))
                return entry;
        }
        return nullptr;
    };
    if (const auto* const entry = byID({traits.toolkitID, traits.sandbox, traits.windowClass,
                                        traits.windowInstance, traits.executable}))
        return entry;
    // Entries with a panel's executable are those of its settings dialogs, not of the panel.
    if (isWellKnownEntry(traits.executable)) return nullptr;
    if (const auto* const entry = firstOf(entries, [&](const DesktopEntry& candidate) {
            return !candidate.executable.empty() && candidate.executable == traits.executable;
        }))
        return entry;
    // The scope comes last, since a program that runs in a terminal is in the terminal's scope.
    return byID({traits.scope});
}

}  // namespace

AppTraits appTraits(std::int64_t pid, xcb_window_t window) {
    AppTraits traits;
    if (window != 0) {
        const auto both = textProperty(window, "WM_CLASS");
        const auto end = both.find('\0');
        traits.windowInstance = validText(both.substr(0, end));
        if (end != std::string::npos)
            traits.windowClass = validText(std::string_view(both).substr(end + 1).data());
        traits.toolkitID = validText(textProperty(window, "_GTK_APPLICATION_ID"));
        if (traits.toolkitID.empty())
            traits.toolkitID = validText(textProperty(window, "_KDE_NET_WM_DESKTOP_FILE"));
    }
    const auto process = "/proc/" + std::to_string(pid);
    readControlGroup(wholeFile(process + "/cgroup"), traits);
    traits.executable = executableOf(process);
    return traits;
}

AppIdentity identifyApp(const std::vector<DesktopEntry>& entries, const AppTraits& traits) {
    if (const auto* const entry = findEntry(entries, traits))
        return {bundleIDForEntry(entry->id), entry->name};
    AppIdentity identity;
    auto id = traits.executable;
    if ((id.empty() || isStarter(id)) && !traits.windowClass.empty())
        id = lowerCase(traits.windowClass);
    if (!id.empty()) identity.bundleID = bundleIDForEntry(id);
    identity.name = traits.windowClass.empty() ? traits.executable : traits.windowClass;
    return identity;
}

void readControlGroup(std::string_view text, AppTraits& traits) {
    // Each line describes one hierarchy as <number>:<controllers>:<path>. The last component of the
    // path is the unit.
    while (!text.empty() && traits.sandbox.empty() && traits.scope.empty()) {
        const auto end = text.find('\n');
        const auto line = text.substr(0, end);
        readUnit(line.substr(line.rfind('/') + 1), traits);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

std::string programOf(const std::vector<std::string>& command) {
    auto word = command.begin();
    if (word != command.end() && baseName(*word) == "env") {
        // The options and assignments of `env` precede the program.
        word = std::find_if(std::next(word), command.end(), [](const auto& argument) {
            return !argument.starts_with('-') && argument.find('=') == std::string::npos;
        });
    }
    if (word == command.end()) return {};
    auto program = baseName(*word);
    return isStarter(program) ? std::string() : program;
}

}  // namespace OrvelSystem
