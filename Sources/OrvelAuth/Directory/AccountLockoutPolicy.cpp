#include "OrvelAuth/AccountLockoutPolicy.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

#include "OrvelAuth/Directory/PropertyList.h"

namespace OrvelAuth {

namespace {

using PropertyValue = OrvelSystem::PropertyValue;

const PropertyValue* entry(const PropertyValue::Dictionary* dictionary, std::string_view key) {
    if (!dictionary) return nullptr;
    const auto found = dictionary->find(key);
    return found == dictionary->end() ? nullptr : &found->second;
}

std::optional<int> intIn(const PropertyValue::Dictionary* dictionary, std::string_view key) {
    const auto* const value = entry(dictionary, key);
    return value ? AccountLockoutPolicy::intValue(*value) : std::nullopt;
}

std::optional<int> decimal(std::string_view text) {
    // `from_chars` accepts a minus sign but no plus sign.
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return {};
    return value;
}

}  // namespace

std::optional<int> AccountLockoutPolicy::intValue(const PropertyValue& value) {
    if (const auto* const flag = value.get<bool>()) return *flag ? 1 : 0;
    if (const auto* const text = value.get<std::string>()) return decimal(*text);
    if (const auto* const whole = value.get<std::int64_t>()) {
        if (!std::in_range<int>(*whole)) return {};
        return static_cast<int>(*whole);
    }
    if (const auto* const real = value.get<double>()) {
        const double cut = std::trunc(*real);
        using Limits = std::numeric_limits<int>;
        if (!(cut >= Limits::min() && cut <= Limits::max())) return {};
        return static_cast<int>(cut);
    }
    return {};
}

std::optional<int> AccountLockoutPolicy::limit(const PropertyValue::Dictionary& policies) {
    std::optional<int> strictest;
    const auto consider = [&strictest](std::optional<int> candidate) {
        if (candidate && *candidate > 0)
            strictest = std::min(*candidate, strictest.value_or(*candidate));
    };
    consider(intIn(&policies, "maxFailedLoginAttempts"));
    for (const auto& [key, value] : policies) {
        const auto* const policyList = value.get<PropertyValue::Array>();
        if (!policyList) continue;
        for (const auto& policy : *policyList) {
            const auto* const parameters =
                entry(policy.get<PropertyValue::Dictionary>(), "policyParameters");
            if (!parameters) continue;
            consider(intIn(parameters->get<PropertyValue::Dictionary>(),
                           "policyAttributeMaximumFailedAuthentications"));
        }
    }
    return strictest;
}

std::optional<int> AccountLockoutPolicy::failedLoginCount(std::span<const std::byte> data) {
    const auto count = propertyListEntry(data, "failedLoginCount");
    return count ? intValue(*count) : std::nullopt;
}

}  // namespace OrvelAuth
