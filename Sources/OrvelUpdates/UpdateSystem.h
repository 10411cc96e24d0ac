#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "OrvelCore/Date.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/Task.h"
#include "OrvelUpdates/UpdateChecker.h"

namespace OrvelUpdates {

/// What the update controller needs of the outside. Main thread only.
struct UpdateSystem {
    /// Runs one check off the main thread, and tells of its download on the main thread.
    std::function<OrvelSystem::Task<UpdateResult>(UpdateChecker::OnProgress)> check;
    /// Ends all checks that run, each with `UpdateCancelled` unless it has its result already.
    std::function<void()> cancel;
    std::function<OrvelCore::Date()> now;
    /// Runs the call at that date, at once when it is past. A second one takes the place of the
    /// first.
    std::function<void(OrvelCore::Date, std::function<void()>)> schedule;
    /// The bytes of the package on disk if it is still the one of this item; nothing otherwise.
    std::function<std::optional<std::string>(const std::filesystem::path& package,
                                             const AppcastItem& item)>
        verify;
    /// Hands these bytes to the system's installer, in the file of the package. False when they
    /// could not be put there.
    std::function<bool(const std::filesystem::path& package, std::string_view archive)> open;

    /// Against the product's own feed, host and key. What still runs is ended with the last copy of
    /// the record, which must go before `loop`.
    static UpdateSystem live(OrvelSystem::MainLoop& loop);
};

}  // namespace OrvelUpdates
