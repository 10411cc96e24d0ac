#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace OrvelSystem {

/// A value of a property list. Types that the program does not use are `std::monostate`.
struct PropertyValue {
    using Data = std::vector<std::byte>;
    using Array = std::vector<PropertyValue>;
    using Dictionary = std::map<std::string, PropertyValue, std::less<>>;
    using Value = std::variant<std::monostate, bool, std::int64_t, double, std::string, Data, Array,
                               Dictionary>;

    Value value;

    PropertyValue() = default;
    template <class T>
    requires std::constructible_from<Value, T> PropertyValue(T&& from)
        : value(std::forward<T>(from)) {}

    /// Null if the value has another type.
    template <class T>
    const T* get() const {
        return std::get_if<T>(&value);
    }
    bool operator==(const PropertyValue&) const = default;
};

}  // namespace OrvelSystem
