#include "OrvelCore/URLCommand.h"

#include <algorithm>
#include <string>

namespace OrvelCore::URLCommands {

namespace {

std::string lowerCase(std::string_view text) {
    std::string result(text);
    for (char& character : result) {
        if (character >= 'A' && character <= 'Z') character = static_cast<char>(character + 32);
    }
    return result;
}

/// The relevant parts of a URL. They are not percent-decoded, since no known word needs an escape.
struct Parts {
    std::string scheme;
    std::string host;
    std::string path;
};

std::optional<Parts> split(std::string_view url) {
    const auto colon = url.find(':');
    if (colon == std::string_view::npos) return std::nullopt;
    Parts parts{lowerCase(url.substr(0, colon)), {}, {}};
    url.remove_prefix(colon + 1);
    if (!url.starts_with("//")) return std::nullopt;
    url.remove_prefix(2);
    url = url.substr(0, url.find_first_of("?#"));

    const auto authorityEnd = std::min(url.find('/'), url.size());
    std::string_view authority = url.substr(0, authorityEnd);
    parts.path = lowerCase(url.substr(authorityEnd));
    if (const auto at = authority.rfind('@'); at != std::string_view::npos)
        authority.remove_prefix(at + 1);
    if (const auto port = authority.find(':'); port != std::string_view::npos) {
        if (authority.find_first_not_of("0123456789", port + 1) != std::string_view::npos)
            return std::nullopt;
        authority = authority.substr(0, port);
    }
    parts.host = lowerCase(authority);
    return parts;
}

std::optional<Switch> readSwitch(std::string_view path) {
    if (path.empty() || path == "/" || path == "/toggle") return Switch::toggle;
    if (path == "/on") return Switch::on;
    if (path == "/off") return Switch::off;
    return std::nullopt;
}

}  // namespace

bool apply(Switch change, bool current) {
    return change == Switch::toggle ? !current : change == Switch::on;
}

std::optional<URLCommand> parse(std::string_view url, std::string_view scheme) {
    const auto parts = split(url);
    if (!parts || parts->scheme != scheme) return std::nullopt;
    if (parts->host == "lock") return Lock{};
    const auto change = readSwitch(parts->path);
    if (!change) return std::nullopt;
    if (parts->host == "private") return PrivateApps{*change};
    if (parts->host == "blur") return QuickBlur{*change};
    if (parts->host == "focus") return FocusBlur{*change};
    return std::nullopt;
}

}  // namespace OrvelCore::URLCommands
