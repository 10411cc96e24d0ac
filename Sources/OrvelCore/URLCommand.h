#pragma once

#include <optional>
#include <string_view>
#include <variant>

namespace OrvelCore {

/// The alternatives of `URLCommand`, and its parser.
namespace URLCommands {

enum class Switch { on, off, toggle };
/// Returns the new state, where `current` is the present one.
bool apply(Switch change, bool current);

struct Lock {
    bool operator==(const Lock&) const = default;
};
struct PrivateApps {
    Switch change = Switch::toggle;
    bool operator==(const PrivateApps&) const = default;
};
struct QuickBlur {
    Switch change = Switch::toggle;
    bool operator==(const QuickBlur&) const = default;
};
struct FocusBlur {
    Switch change = Switch::toggle;
    bool operator==(const FocusBlur&) const = default;
};

}  // namespace URLCommands

/// A request that another program makes by opening a URL.
using URLCommand = std::variant<URLCommands::Lock, URLCommands::PrivateApps, URLCommands::QuickBlur,
                                URLCommands::FocusBlur>;

namespace URLCommands {

/// `nullopt` for an unknown URL. `scheme` must be in lower case.
std::optional<URLCommand> parse(std::string_view url, std::string_view scheme);

}  // namespace URLCommands

}  // namespace OrvelCore
