#pragma once

#include <optional>
#include <string_view>
#include <variant>

namespace OrvelCore {

/// The cases of `URLCommand`, and how it is read.
namespace URLCommands {

enum class Switch { on, off, toggle };
/// The new state of something that is `current`.
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

/// A request of another program, made by opening a URL.
using URLCommand = std::variant<URLCommands::Lock, URLCommands::PrivateApps, URLCommands::QuickBlur,
                                URLCommands::FocusBlur>;

namespace URLCommands {

/// Nothing for a URL that is not understood. `scheme` is in lower case.
std::optional<URLCommand> parse(std::string_view url, std::string_view scheme);

}  // namespace URLCommands

}  // namespace OrvelCore
