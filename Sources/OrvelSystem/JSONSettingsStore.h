#pragma once

#include <filesystem>
#include <functional>
#include <system_error>

#include <nlohmann/json.hpp>

#include "OrvelCore/SettingsStore.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelSystem {

/// Settings in one JSON file, which is read once. Unknown keys and values of an unexpected type
/// stay in the file until their key is written. A file that does not hold a JSON object counts as
/// empty, and is renamed to "{name}.damaged-{n}" before the first write.
class JSONSettingsStore final : public OrvelCore::SettingsStore {
  public:
    /// Seconds from the first change to the write, so that dragging a slider does not write at each
    /// step.
    static constexpr double writeDelay = 0.25;

    /// "settings.json" in the config folder.
    static std::filesystem::path standardFile();

    /// Calls `onError` after a failed read or write; the values remain available in memory. Does
    /// not throw.
    JSONSettingsStore(MainLoop& loop, std::filesystem::path file,
                      std::function<void(std::error_code)> onError);
    /// Writes pending changes.
    ~JSONSettingsStore() override;

    /// Writes pending changes immediately.
    void flush();

    bool has(std::string_view key) const override;
    std::optional<std::string> stringForKey(std::string_view key) const override;
    std::optional<bool> boolForKey(std::string_view key) const override;
    std::optional<std::int64_t> integerForKey(std::string_view key) const override;
    std::optional<double> doubleForKey(std::string_view key) const override;
    std::optional<std::vector<std::string>> stringArrayForKey(std::string_view key) const override;

    void setString(std::string_view key, std::string_view value) override;
    void setBool(std::string_view key, bool value) override;
    void setInteger(std::string_view key, std::int64_t value) override;
    void setDouble(std::string_view key, double value) override;
    void setStringArray(std::string_view key, const std::vector<std::string>& value) override;
    void remove(std::string_view key) override;
    /// Immediately deletes the file and its renamed damaged copies, and the folder if it is then
    /// empty.
    void removeAll() override;

  private:
    void load();
    const nlohmann::json* find(std::string_view key) const;
    void set(std::string_view key, nlohmann::json value);
    void changed();
    std::error_code moveAside() const;

    MainLoop& loop_;
    std::filesystem::path file_;
    std::function<void(std::error_code)> onError_;
    nlohmann::json values_ = nlohmann::json::object();
    bool isDamaged_ = false;
    bool isDirty_ = false;
    Timer writing_;
};

}  // namespace OrvelSystem
