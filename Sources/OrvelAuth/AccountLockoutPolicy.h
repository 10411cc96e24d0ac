#pragma once

#include <optional>
#include <span>
#include <string>

#include "OrvelSystem/PropertyValue.h"

namespace OrvelAuth {

/// The number of failed logins after which the account locks itself, and the number that it counts
/// now. Both are `nullopt` if there is no such number or it cannot be read.
struct AccountLockoutPolicy {
    using PropertyValue = OrvelSystem::PropertyValue;

    /// Both read a small amount of local data and may be called on the main thread. On Linux the
    /// limit is the one that `Faillock::sparedLimit` returns.
    static std::optional<int> currentLimit(const std::string& userName);
    static std::optional<int> currentFailures(const std::string& userName);
    /// Whether the account currently refuses every password because of its failures. False if that
    /// cannot be read. Any thread.
    static bool isLocked(const std::string& userName);

    /// The smallest positive limit in a directory's account policies.
    static std::optional<int> limit(const PropertyValue::Dictionary& policies);
    /// Reads the account's policy data, a property list in any format.
    static std::optional<int> failedLoginCount(std::span<const std::byte> data);
    /// Accepts a number, which is truncated, and a text that consists only of a decimal integer.
    /// `nullopt` if the value does not fit into an int or has another type.
    static std::optional<int> intValue(const PropertyValue& value);
};

}  // namespace OrvelAuth
