#include "OrvelUpdates/URL.h"

#include <algorithm>

namespace OrvelUpdates {

namespace {

// These ignore the locale, unlike the standard functions of these names.
constexpr bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
constexpr bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
/// A lookup table for bytes, since a feed may contain thousands of URLs.
class CharacterSet {
  public:
    constexpr explicit CharacterSet(std::string_view others) {
        for (int c = 0; c < 256; ++c)
            has_[c] = isLetter(static_cast<char>(c)) || isDigit(static_cast<char>(c));
        for (const char c : others) has_[static_cast<unsigned char>(c)] = true;
    }
    constexpr bool operator()(char c) const { return has_[static_cast<unsigned char>(c)]; }

  private:
    bool has_[256]{};
};
// The sets contain letters, digits and these characters.
constexpr CharacterSet isSchemeCharacter("+-.");
constexpr CharacterSet isAuthorityCharacter("-._~!$&'()*+,;=:@[]%");
constexpr CharacterSet isPathCharacter("-._~:/?#[]@!$&'()*+,;=");

bool isScheme(std::string_view text) {
    return !text.empty() && isLetter(text.front()) && std::ranges::all_of(text, isSchemeCharacter);
}

/// The host in "user@host:port"; `nullopt` if the text is not a valid authority.
std::optional<std::string_view> hostOf(std::string_view authority) {
    if (!std::ranges::all_of(authority, isAuthorityCharacter)) return {};
    if (const auto at = authority.find('@'); at != authority.npos) authority.remove_prefix(at + 1);
    if (authority.find('@') != authority.npos) return {};
    auto host = authority;
    std::string_view port;
    const auto bracket = authority.rfind(']');  // an IPv6 address contains colons
    const auto colon = authority.find(':', bracket == authority.npos ? 0 : bracket);
    if (colon != authority.npos) {
        host = authority.substr(0, colon);
        port = authority.substr(colon + 1);
    }
    if (!std::ranges::all_of(port, isDigit)) return {};
    return host;
}

std::string percentEncoded(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool isEscape =
            c == '%' && i + 2 < text.size() && isHexDigit(text[i + 1]) && isHexDigit(text[i + 2]);
        if (isPathCharacter(c) || isEscape) {
            result += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        result += {'%', digits[byte >> 4], digits[byte & 15]};
    }
    return result;
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
    if (text.empty()) return {};
    URL url;
    auto rest = text;
    const auto end = text.find_first_of(":/?#");
    if (end != text.npos && text[end] == ':') {
        const auto scheme = text.substr(0, end);
        if (!isScheme(scheme)) return {};
        url.scheme_ = scheme;
        rest.remove_prefix(end + 1);
    }
    if (rest.starts_with("//")) {
        rest.remove_prefix(2);
        const auto authority = rest.substr(0, rest.find_first_of("/?#"));
        const auto host = hostOf(authority);
        if (!host) return {};
        if (!host->empty()) url.host_ = *host;
        rest.remove_prefix(authority.size());
    }
    url.text_ = text.substr(0, text.size() - rest.size());
    url.text_ += percentEncoded(rest);
    return url;
}

}  // namespace OrvelUpdates
