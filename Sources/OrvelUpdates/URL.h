#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace OrvelUpdates {

/// A URL or a relative reference, in the generic syntax of RFC 3986. An empty one has no parts.
class URL {
  public:
    URL() = default;
    /// Nothing for empty text, for a scheme, host or port that cannot be one, and for more than one
    /// "@" before the host, about which programs disagree. What may not stand in a path or a query
    /// is percent-encoded there.
    static std::optional<URL> parse(std::string_view text);

    const std::string& text() const { return text_; }
    /// As written, letter case included; nothing when it is missing or empty.
    const std::optional<std::string>& scheme() const { return scheme_; }
    const std::optional<std::string>& host() const { return host_; }

    bool operator==(const URL&) const = default;

  private:
    std::string text_;
    std::optional<std::string> scheme_;
    std::optional<std::string> host_;
};

}  // namespace OrvelUpdates
