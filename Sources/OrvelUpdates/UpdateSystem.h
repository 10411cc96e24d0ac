#pragma once

#include <filesystem>
#include <functional>

#include "OrvelCore/Date.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/Task.h"
#include "OrvelUpdates/UpdateChecker.h"

namespace OrvelUpdates {

/// What the update controller needs of the outside. Main thread only.
struct UpdateSystem {
    /// Runs one check off the main thread.
    std::function<OrvelSystem::Task<UpdateResult>()> check;
    std::function<OrvelCore::Date()> now;
    /// Runs the call at that date, at once when it is past. A second one takes the place of the
    /// first.
    std::function<void(OrvelCore::Date, std::function<void()>)> schedule;
    /// Hands a package to the system's installer.
    std::function<void(const std::filesystem::path& package)> open;
    /// Whether the package on disk is still the one of this item.
    std::function<bool(const std::filesystem::path& package, const AppcastItem& item)> verify;

    /// Against the product's own feed, host and key. What still runs is ended with the last copy of
    /// the record, which must go before `loop`.
    static UpdateSystem live(OrvelSystem::MainLoop& loop);
};

}  // namespace OrvelUpdates
