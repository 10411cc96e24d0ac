#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace OrvelCore {

/// To give an enumeration raw strings, define a function in its namespace that lists them in the
/// order of the cases, which are numbered from 0: `constexpr std::array<std::string_view, 2>
/// rawNames(Fruit) { return {"apple", "pear"}; }`
template <class E>
constexpr std::string_view rawValue(E value) {
    return rawNames(E{})[static_cast<std::size_t>(value)];
}

/// The comparison is exact and case-sensitive; `nullopt` for any other text.
template <class E>
constexpr std::optional<E> fromRawValue(std::string_view text) {
    constexpr auto names = rawNames(E{});
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (names[i] == text) return static_cast<E>(i);
    }
    return std::nullopt;
}

/// All cases, in order.
template <class E>
constexpr auto allCases() {
    std::array<E, rawNames(E{}).size()> cases{};
    for (std::size_t i = 0; i < cases.size(); ++i) cases[i] = static_cast<E>(i);
    return cases;
}

}  // namespace OrvelCore
