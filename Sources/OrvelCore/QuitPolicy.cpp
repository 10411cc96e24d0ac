#include "OrvelCore/QuitPolicy.h"

#include <string_view>

namespace OrvelCore {

namespace {

constexpr std::uint32_t code(std::string_view fourCharacters) {
    std::uint32_t value = 0;
    for (const char character : fourCharacters)
        value = value << 8U | static_cast<unsigned char>(character);
    return value;
}

}  // namespace

bool QuitPolicy::mayQuit(int appLocks, bool macLocked, Reason reason) {
    // The session is ending anyway, and the program must not delay it.
    if (reason != Reason::user) return true;
    return appLocks == 0 && !macLocked;
}

QuitPolicy::Reason QuitPolicy::reason(std::optional<std::uint32_t> fromQuitCode) {
    if (!fromQuitCode) return Reason::user;
    switch (*fromQuitCode) {
        case code("logo"):
        case code("rlgo"):
            return Reason::logOut;
        case code("rest"):
        case code("rrst"):
            return Reason::restart;
        case code("shut"):
        case code("rsdn"):
            return Reason::shutDown;
        default:
            return Reason::user;
    }
}

}  // namespace OrvelCore
