#pragma once

#include "OrvelCore/SettingsStore.h"

namespace OrvelSystem {

/// The program's own domain of the user defaults. The system writes changes to disk.
class UserDefaultsStore final : public OrvelCore::SettingsStore {
  public:
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
    void removeAll() override;
};

}  // namespace OrvelSystem
