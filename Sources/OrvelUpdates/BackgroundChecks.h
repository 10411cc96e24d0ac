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

/// Runs each check on its own thread. The destructor asks the threads to stop and waits for them,
/// so that no thread outlives the main loop to which it reports.
class BackgroundChecks {
  public:
    using Check = std::function<UpdateResult(const OrvelSystem::StopToken& stop,
                                             const UpdateChecker::OnProgress& onProgress)>;

    /// `check` blocks, may run on any thread, and must return soon after it is asked to stop.
    BackgroundChecks(OrvelSystem::MainLoop& loop, Check check);

    /// Runs one check. The task never finishes if this object is destroyed first. Main thread only;
    /// `onProgress` is also called there.
    OrvelSystem::Task<UpdateResult> run(UpdateChecker::OnProgress onProgress);
    /// Asks all running checks to stop. Main thread only.
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
