#include "OrvelSystem/JSONSettingsStore.h"

#include <utility>

#include <fmt/core.h>

#include "OrvelCore/AppFolders.h"
#include "OrvelCore/AtomicFile.h"

namespace OrvelSystem {

using nlohmann::json;

std::filesystem::path JSONSettingsStore::standardFile() {
    return OrvelCore::configFolder() / "settings.json";
}

JSONSettingsStore::JSONSettingsStore(MainLoop& loop, std::filesystem::path file,
                                     std::function<void(std::error_code)> onError)
    : loop_(loop), file_(std::move(file)), onError_(std::move(onError)) {
    load();
}

JSONSettingsStore::~JSONSettingsStore() {
    flush();
}

void JSONSettingsStore::load() {
    const auto bytes = OrvelCore::readFile(file_);
    if (!bytes) {
        if (bytes.error() == std::errc::no_such_file_or_directory) return;
        isDamaged_ = true;
        onError_(bytes.error());
        return;
    }
    json values = json::parse(*bytes, nullptr, false);
    if (values.is_object()) {
        values_ = std::move(values);
    } else {
        isDamaged_ = true;
        onError_(std::make_error_code(std::errc::bad_message));
    }
}

void JSONSettingsStore::flush() {
    writing_.cancel();
    if (!std::exchange(isDirty_, false)) return;
    if (isDamaged_) {
        if (const auto error = moveAside()) return onError_(error);
        isDamaged_ = false;
    }
    const auto text = values_.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
    if (const auto written = OrvelCore::writeAtomically(file_, text); !written)
        onError_(written.error());
}

std::error_code JSONSettingsStore::moveAside() const {
    std::error_code error;
    for (int n = 1;; ++n) {
        const std::filesystem::path aside = fmt::format("{}.damaged-{}", file_.string(), n);
        const auto status = std::filesystem::symlink_status(aside, error);
        if (status.type() == std::filesystem::file_type::none) return error;
        if (std::filesystem::exists(status)) continue;
        std::filesystem::rename(file_, aside, error);
        // Another process has already removed the file.
        if (error == std::errc::no_such_file_or_directory) error.clear();
        return error;
    }
}

const json* JSONSettingsStore::find(std::string_view key) const {
    const auto found = values_.find(std::string(key));
    return found == values_.end() ? nullptr : &*found;
}

bool JSONSettingsStore::has(std::string_view key) const {
    return find(key) != nullptr;
}

std::optional<std::string> JSONSettingsStore::stringForKey(std::string_view key) const {
    const json* const value = find(key);
    if (!value || !value->is_string()) return std::nullopt;
    return value->get<std::string>();
}

std::optional<bool> JSONSettingsStore::boolForKey(std::string_view key) const {
    const json* const value = find(key);
    if (!value || !value->is_boolean()) return std::nullopt;
    return value->get<bool>();
}

std::optional<std::int64_t> JSONSettingsStore::integerForKey(std::string_view key) const {
    const json* const value = find(key);
    if (!value || !value->is_number()) return std::nullopt;
    if (value->is_number_float()) return wholeNumber(value->get<double>());
    if (value->is_number_unsigned() && !std::in_range<std::int64_t>(value->get<std::uint64_t>()))
        return std::nullopt;
    return value->get<std::int64_t>();
}

std::optional<double> JSONSettingsStore::doubleForKey(std::string_view key) const {
    const json* const value = find(key);
    if (!value || !value->is_number()) return std::nullopt;
    return value->get<double>();
}

std::optional<std::vector<std::string>> JSONSettingsStore::stringArrayForKey(
    std::string_view key) const {
    const json* const value = find(key);
    if (!value || !value->is_array()) return std::nullopt;
    std::vector<std::string> strings;
    for (const json& element : *value) {
        if (!element.is_string()) return std::nullopt;
        strings.push_back(element.get<std::string>());
    }
    return strings;
}

void JSONSettingsStore::setString(std::string_view key, std::string_view value) {
    set(key, std::string(value));
}

void JSONSettingsStore::setBool(std::string_view key, bool value) {
    set(key, value);
}

void JSONSettingsStore::setInteger(std::string_view key, std::int64_t value) {
    set(key, value);
}

void JSONSettingsStore::setDouble(std::string_view key, double value) {
    set(key, value);
}

void JSONSettingsStore::setStringArray(std::string_view key,
                                       const std::vector<std::string>& value) {
    set(key, value);
}

void JSONSettingsStore::remove(std::string_view key) {
    if (values_.erase(std::string(key)) > 0) changed();
}

void JSONSettingsStore::removeAll() {
    writing_.cancel();
    isDirty_ = isDamaged_ = false;
    values_ = json::object();
    std::error_code error;
    std::filesystem::remove(file_, error);
    if (error) onError_(error);
    const auto aside = file_.filename().string() + ".damaged-";
    for (std::filesystem::directory_iterator entry(file_.parent_path(), error), end;
         !error && entry != end; entry.increment(error)) {
        std::error_code ignored;
        if (entry->path().filename().string().starts_with(aside))
            std::filesystem::remove(entry->path(), ignored);
    }
    // `remove` deletes the folder only if it is empty.
    std::filesystem::remove(file_.parent_path(), error);
}

void JSONSettingsStore::set(std::string_view key, json value) {
    const json* const old = find(key);
    // An integer compares equal to a float of the same value, but the file stores them differently.
    if (old && old->is_number_float() == value.is_number_float() && *old == value) return;
    values_[std::string(key)] = std::move(value);
    changed();
}

void JSONSettingsStore::changed() {
    if (std::exchange(isDirty_, true)) return;
    writing_ = loop_.after(writeDelay, [this] { flush(); });
}

}  // namespace OrvelSystem
