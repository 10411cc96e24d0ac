#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace OrvelCore {

/// The user's settings: a flat map of keys to typed values. A read returns `nullopt` if the key is
/// missing or its value has another type; `has` distinguishes the two cases. Strings are UTF-8.
/// Main thread only.
class SettingsStore {
  public:
    SettingsStore() = default;
    SettingsStore(const SettingsStore&) = delete;
    SettingsStore& operator=(const SettingsStore&) = delete;
    virtual ~SettingsStore() = default;

    virtual bool has(std::string_view key) const = 0;
    virtual std::optional<std::string> stringForKey(std::string_view key) const = 0;
    virtual std::optional<bool> boolForKey(std::string_view key) const = 0;
    /// A fractional number is truncated towards zero; `nullopt` for a number beyond 64 bits.
    virtual std::optional<std::int64_t> integerForKey(std::string_view key) const = 0;
    /// Also reads integers.
    virtual std::optional<double> doubleForKey(std::string_view key) const = 0;
    /// `nullopt` unless every element is a string.
    virtual std::optional<std::vector<std::string>> stringArrayForKey(
        std::string_view key) const = 0;

    virtual void setString(std::string_view key, std::string_view value) = 0;
    virtual void setBool(std::string_view key, bool value) = 0;
    virtual void setInteger(std::string_view key, std::int64_t value) = 0;
    /// `value` must be finite.
    virtual void setDouble(std::string_view key, double value) = 0;
    virtual void setStringArray(std::string_view key, const std::vector<std::string>& value) = 0;
    virtual void remove(std::string_view key) = 0;
    /// Removes all settings, including those with unknown keys.
    virtual void removeAll() = 0;

  protected:
    /// Implements the rule of `integerForKey` for fractional numbers.
    static std::optional<std::int64_t> wholeNumber(double value);
};

/// Settings that exist only in memory, for previews and tests.
class InMemorySettingsStore final : public SettingsStore {
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
    void removeAll() override { values_.clear(); }

  private:
    using Value = std::variant<std::string, bool, std::int64_t, double, std::vector<std::string>>;
    template <class T>
    std::optional<T> find(std::string_view key) const;

    std::map<std::string, Value, std::less<>> values_;
};

}  // namespace OrvelCore
