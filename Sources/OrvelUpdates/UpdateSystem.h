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

/// The external functions that the update controller uses. Main thread only.
struct UpdateSystem {
    /// Runs a check on another thread, and reports the download's progress on the main thread.
    std::function<OrvelSystem::Task<UpdateResult>(UpdateChecker::OnProgress)> check;
    /// Ends all running checks. Each returns `UpdateCancelled` unless it already has its result.
    std::function<void()> cancel;
    std::function<OrvelCore::Date()> now;
    /// Calls the function at that date, or as soon as possible if the date is past. A second call
    /// replaces the first.
    std::function<void(OrvelCore::Date, std::function<void()>)> schedule;
    /// The contents of the package on disk if it is still that of the item; `nullopt` otherwise.
    std::function<std::optional<std::string>(const std::filesystem::path& package,
                                             const AppcastItem& item)>
        verify;
    /// Writes these bytes to the package's file and opens it with the system's installer. False if
    /// they could not be written.
    std::function<bool(const std::filesystem::path& package, std::string_view archive)> open;

    /// Uses the product's own feed, host and key. Destroying the last copy of the record ends the
    /// running checks; this must happen before `loop` is destroyed.
    static UpdateSystem live(OrvelSystem::MainLoop& loop);
};

}  // namespace OrvelUpdates
