#include <QFile>
#include <filesystem>
#include <string>

#include <fmt/format.h>
#include <unistd.h>

#include "OrvelCore/AppFolders.h"
#include "OrvelCore/Brand.h"
#include "OrvelModes/Windows/Uninstaller.h"
#include "OrvelSystem/GuardService.h"
#include "OrvelSystem/LoginItem.h"
#include "OrvelSystem/Worker.h"

namespace OrvelModes {

namespace {

namespace fs = std::filesystem;
namespace Brand = OrvelCore::Brand;

OrvelSystem::Task<void> unregisterGuard(OrvelSystem::MainLoop& loop) {
    (void)co_await OrvelSystem::runBlocking(loop, [] {
        OrvelSystem::GuardService::unregisterService();
        return true;
    });
}

bool trash(const fs::path& file) {
    return QFile::moveToTrash(QString::fromStdString(file.string()));
}

/// Only for an installation that the user owns: packages belong to the package manager, and a
/// folder with another name may contain more than this program.
bool moveAppToTrash() {
    std::error_code error;
    const auto folder = fs::read_symlink("/proc/self/exe", error).parent_path();
    const auto prefix = folder.parent_path().parent_path();
    const bool isInstalled = folder.filename() == Brand::slug &&
                             folder.parent_path().filename() == "libexec" &&
                             access(folder.parent_path().c_str(), W_OK) == 0;
    if (!isInstalled || !trash(folder)) return false;
    const std::string id(Brand::bundleIdentifier);
    const std::string installed[] = {fmt::format("bin/{}", Brand::slug),
                                     fmt::format("lib/systemd/user/{}-guard.service", Brand::slug),
                                     "share/applications/" + id + ".desktop",
                                     "share/icons/hicolor/scalable/apps/" + id + ".svg"};
    for (const auto& file : installed)
        if (fs::exists(fs::symlink_status(prefix / file, error))) (void)trash(prefix / file);
    return true;
}

}  // namespace

UninstallSystem UninstallSystem::live(OrvelSystem::MainLoop& loop,
                                      OrvelCore::SettingsStore& defaults,
                                      std::function<void()> quit) {
    return {.unregisterGuard = [&loop] { return OrvelModes::unregisterGuard(loop); },
            .unregisterLoginItem = [] { (void)OrvelSystem::LoginItem::unregisterItem(); },
            .removeSettings = [&defaults] { defaults.removeAll(); },
            .removeSupportFolder =
                [] {
                    std::error_code ignored;
                    fs::remove_all(OrvelCore::dataFolder(), ignored);
                },
            .moveAppToTrash = OrvelModes::moveAppToTrash,
            .quit = std::move(quit)};
}

}  // namespace OrvelModes
