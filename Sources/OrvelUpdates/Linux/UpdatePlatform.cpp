#include "OrvelUpdates/UpdatePlatform.h"

#include <ctime>

#include "OrvelSystem/Linux/Spawn.h"

namespace OrvelUpdates::UpdatePlatform {

std::string_view packageExtension() {
    return ".deb";
}

void openPackage(const std::filesystem::path& package) {
    // Some desktops' openers last as long as what they opened, and the installer must outlive this
    // program, which it replaces: so nobody waits here.
    constexpr const char* open = R"(xdg-open "$1" || xdg-open "$2")";
    (void)OrvelSystem::spawnDetached(
        {"sh", "-c", open, "sh", package.string(), package.parent_path().string()});
}

double continuousClock() {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

}  // namespace OrvelUpdates::UpdatePlatform
