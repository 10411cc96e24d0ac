#pragma once

#include <optional>
#include <span>
#include <string>

#include "OrvelSystem/PropertyValue.h"

namespace OrvelAuth {

/// The account's own limit of failed logins, and how many of them it counts at present. Nothing
/// in either means that there is none, or that it cannot be read.
struct AccountLockoutPolicy {
    using PropertyValue = OrvelSystem::PropertyValue;

    /// Short reads of local data, for the main thread.
    static std::optional<int> currentLimit(const std::string& userName);
    static std::optional<int> currentFailures(const std::string& userName);
    /// Whether the account refuses every password at present because of its failures. False when
    /// that cannot be read. Any thread.
    static bool isLocked(const std::string& userName);

    /// The strictest limit above 0 in a directory's account policies.
    static std::optional<int> limit(const PropertyValue::Dictionary& policies);
    /// From an account's policy data, a property list in any of its forms.
    static std::optional<int> failedLoginCount(std::span<const std::byte> data);
    /// A number, its fraction cut off, or a text that is a decimal integer from end to end.
    /// Nothing for what does not fit.
    static std::optional<int> intValue(const PropertyValue& value);
};

}  // namespace OrvelAuth
