#include <cstdlib>
#include <string>
#include <string_view>

#include <unicode/locid.h>

#include "OrvelCore/Text.h"

namespace OrvelCore {

namespace {

/// Converts the value of an environment variable, such as "en_GB.UTF-8", to a locale name; empty if
/// it names none.
std::string localeName(const char* variable) {
    const char* const value = std::getenv(variable);
    if (value == nullptr) return {};
    const std::string_view text(value);
    return std::string(text.substr(0, text.find_first_of(".@")));
}

}  // namespace

Locale currentLocale() {
    // The C library uses this order for the language of dates.
    for (const char* const variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const std::string name = localeName(variable);
        if (name.empty()) continue;
        return {name == "C" || name == "POSIX" ? "en_US_POSIX" : name};
    }
    return {icu::Locale::getDefault().getName()};
}

}  // namespace OrvelCore
