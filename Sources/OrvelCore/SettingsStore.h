#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace OrvelCore {

/// The user's settings: flat keys with typed values. A read gives nothing when the key is missing
/// or holds another type; `has` tells the two apart. Strings are UTF-8. Main thread only.
class SettingsStore {
  public:
    SettingsStore() = default;
    SettingsStore(const SettingsStore&) = delete;
    SettingsStore& operator=(const SettingsStore&) = delete;
    virtual ~SettingsStore() = default;

    virtual bool has(std::string_view key) const = 0;
    virtual std::optional<std::string> stringForKey(std::string_view key) const = 0;
    virtual std::optional<bool> boolForKey(std::string_view key) const = 0;
    /// A number with a fraction is cut towards zero; one beyond 64 bits is of another type.
    virtual std::optional<std::int64_t> integerForKey(std::string_view key) const = 0;
    /// Reads integers too.
    virtual std::optional<double> doubleForKey(std::string_view key) const = 0;
    /// Nothing unless every element is a string.
    virtual std::optional<std::vector<std::string>> stringArrayForKey(
        std::string_view key) const = 0;

    virtual void setString(std::string_view key, std::string_view value) = 0;
    virtual void setBool(std::string_view key, bool value) = 0;
    virtual void setInteger(std::string_view key, std::int64_t value) = 0;
    /// `value` is finite.
    virtual void setDouble(std::string_view key, double value) = 0;
    virtual void setStringArray(std::string_view key, const std::vector<std::string>& value) = 0;
    virtual void remove(std::string_view key) = 0;
    /// Leaves no trace of any setting, also not of those that nobody here knows.
    virtual void removeAll() = 0;

  protected:
    /// The rule of `integerForKey` for numbers with a fraction, common to all stores.
    static std::optional<std::int64_t> wholeNumber(double value);
};

/// Settings that last as long as the object: for previews and tests.
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
