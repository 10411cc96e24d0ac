#include "OrvelCore/SettingsStore.h"

namespace OrvelCore {

std::optional<std::int64_t> SettingsStore::wholeNumber(double value) {
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (!(value >= -limit && value < limit)) return std::nullopt;
    return static_cast<std::int64_t>(value);
}

template <class T>
std::optional<T> InMemorySettingsStore::find(std::string_view key) const {
    const auto found = values_.find(key);
    if (found == values_.end()) return std::nullopt;
    const auto* value = std::get_if<T>(&found->second);
    return value ? std::optional(*value) : std::nullopt;
}

bool InMemorySettingsStore::has(std::string_view key) const {
    return values_.contains(key);
}

std::optional<std::string> InMemorySettingsStore::stringForKey(std::string_view key) const {
    return find<std::string>(key);
}

std::optional<bool> InMemorySettingsStore::boolForKey(std::string_view key) const {
    return find<bool>(key);
}

std::optional<std::int64_t> InMemorySettingsStore::integerForKey(std::string_view key) const {
    if (const auto value = find<double>(key)) return wholeNumber(*value);
    return find<std::int64_t>(key);
}

std::optional<double> InMemorySettingsStore::doubleForKey(std::string_view key) const {
    if (const auto value = find<std::int64_t>(key)) return static_cast<double>(*value);
    return find<double>(key);
}

std::optional<std::vector<std::string>> InMemorySettingsStore::stringArrayForKey(
    std::string_view key) const {
    return find<std::vector<std::string>>(key);
}

void InMemorySettingsStore::setString(std::string_view key, std::string_view value) {
    values_.insert_or_assign(std::string(key), std::string(value));
}

void InMemorySettingsStore::setBool(std::string_view key, bool value) {
    values_.insert_or_assign(std::string(key), value);
}

void InMemorySettingsStore::setInteger(std::string_view key, std::int64_t value) {
    values_.insert_or_assign(std::string(key), value);
}

void InMemorySettingsStore::setDouble(std::string_view key, double value) {
    values_.insert_or_assign(std::string(key), value);
}

void InMemorySettingsStore::setStringArray(std::string_view key,
                                           const std::vector<std::string>& value) {
    values_.insert_or_assign(std::string(key), value);
}

void InMemorySettingsStore::remove(std::string_view key) {
    if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
}

}  // namespace OrvelCore
