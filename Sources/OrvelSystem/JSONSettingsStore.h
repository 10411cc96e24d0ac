#pragma once

#include <filesystem>
#include <functional>
#include <system_error>

#include <nlohmann/json.hpp>

#include "OrvelCore/SettingsStore.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelSystem {

/// Settings in one JSON file, read once. Keys that nobody here knows, and values of a type that
/// nobody expects, stay in the file until their key is written. A file that cannot be read as a
/// JSON object counts as empty, and is moved to "{name}.damaged-{n}" before the first write.
class JSONSettingsStore final : public OrvelCore::SettingsStore {
  public:
    /// Seconds from a change to its writing, so that a dragged slider writes once.
    static constexpr double writeDelay = 0.25;

    /// "settings.json" in the config folder.
    static std::filesystem::path standardFile();

    /// `onError` hears of a failed read or write; nothing is thrown, and the values live on in
    /// memory.
    JSONSettingsStore(MainLoop& loop, std::filesystem::path file,
                      std::function<void(std::error_code)> onError);
    /// Writes what is still to be written.
    ~JSONSettingsStore() override;

    /// Writes now what is still to be written.
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
    /// Deletes the file at once, with the damaged ones that were moved aside, and the folder if
    /// nothing else is in it.
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
