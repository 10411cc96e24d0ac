#pragma once

#include <utility>
#include <variant>

namespace OrvelCore {

template <class... Fs>
struct Overloaded : Fs... {
    using Fs::operator()...;
};

/// Visits a variant with one function per alternative: `match(event, [](const A&) {...}, ...)`. A
/// missing function is a compile error.
template <class Variant, class... Fs>
decltype(auto) match(Variant&& value, Fs&&... fs) {
    return std::visit(Overloaded{std::forward<Fs>(fs)...}, std::forward<Variant>(value));
}

}  // namespace OrvelCore
