#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>

namespace OrvelCore {

/// The frontmost app.
struct FrontApp {
    std::int64_t pid = 0;
    /// `nullopt` for a process that is not a bundled app.
    std::optional<std::string> bundleID;
    bool operator==(const FrontApp&) const = default;
};

/// The alternatives of `AppLockAction`.
namespace AppLockActions {

struct Lock {
    std::int64_t pid = 0;
    bool operator==(const Lock&) const = default;
};
struct RequestUnlock {
    std::int64_t pid = 0;
    bool operator==(const RequestUnlock&) const = default;
};
struct Ignore {
    bool operator==(const Ignore&) const = default;
};

}  // namespace AppLockActions

using AppLockAction =
    std::variant<AppLockActions::Lock, AppLockActions::RequestUnlock, AppLockActions::Ignore>;

/// Which apps can be locked, and what the shortcut for app locks does.
namespace AppLockRules {

/// This program, and the parts of the desktop without which the user could not unlock anything.
inline constexpr std::array<std::string_view, 8> excluded = {
    "com.brindlewick.karvo",    "com.apple.loginwindow",   "com.apple.dock",
    "com.apple.systemuiserver", "com.apple.controlcenter", "com.apple.notificationcenterui",
    "com.apple.Spotlight",      "com.apple.WindowManager",
};

/// False without an identifier.
bool canLock(const std::optional<std::string>& bundleID);

/// The same shortcut locks an app and asks to unlock it. `badgePID` is the app whose badge is on
/// the screen. It has priority over the frontmost app, since this program itself is frontmost while
/// a badge has the keyboard.
AppLockAction shortcut(const std::optional<FrontApp>& front, std::optional<std::int64_t> badgePID,
                       const std::set<std::int64_t>& locked);

}  // namespace AppLockRules

}  // namespace OrvelCore
