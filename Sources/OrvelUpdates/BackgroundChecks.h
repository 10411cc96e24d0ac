#pragma once

#include <functional>
#include <list>
#include <thread>

#include "OrvelCore/Lifetime.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/StopToken.h"
#include "OrvelSystem/Task.h"
#include "OrvelUpdates/UpdateChecker.h"

namespace OrvelUpdates {

/// Runs checks, each on a thread of its own. With the object go its threads: it asks them to stop
/// and waits for them, so that none outlives the main loop that it reports to.
class BackgroundChecks {
  public:
    using Check = std::function<UpdateResult(const OrvelSystem::StopToken& stop,
                                             const UpdateChecker::OnProgress& onProgress)>;

    /// `check` blocks, on any thread, and ends soon once it is asked to stop.
    BackgroundChecks(OrvelSystem::MainLoop& loop, Check check);

    /// One check. It never returns when the object goes first. Main thread only, and there
    /// `onProgress` is told too.
    OrvelSystem::Task<UpdateResult> run(UpdateChecker::OnProgress onProgress);
    /// Asks all checks that run to stop. Main thread only.
    void cancel();

  private:
    struct Thread {
        Thread() = default;
        Thread(const Thread&) = delete;
        Thread& operator=(const Thread&) = delete;
        ~Thread();

        OrvelSystem::StopSource stop;
        std::thread thread;
    };

    OrvelSystem::MainLoop& loop_;
    Check check_;
    std::list<Thread> threads_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelUpdates
