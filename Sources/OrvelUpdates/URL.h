#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace OrvelUpdates {

/// A URL or a relative reference in the generic syntax of RFC 3986. A default-constructed one is
/// empty and has no parts.
class URL {
  public:
    URL() = default;
    /// `nullopt` for empty text, for an invalid scheme, host or port, and for more than one "@"
    /// before the host, which programs interpret differently. Characters that are not allowed in a
    /// path or query are percent-encoded there.
    static std::optional<URL> parse(std::string_view text);

    const std::string& text() const { return text_; }
    /// As written, including the letter case; `nullopt` if it is missing or empty.
    const std::optional<std::string>& scheme() const { return scheme_; }
    const std::optional<std::string>& host() const { return host_; }

    bool operator==(const URL&) const = default;

  private:
    std::string text_;
    std::optional<std::string> scheme_;
    std::optional<std::string> host_;
};

}  // namespace OrvelUpdates
