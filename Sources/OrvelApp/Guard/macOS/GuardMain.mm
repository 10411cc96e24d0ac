// The crash guard. It sleeps until a marker appears, which the app writes before it covers
// anything, and then waits for the end of the app's process. `Guard` decides; this file only binds
// it to the platform. The system's own lock hides the screen until the app is back, so there is no
// stand-in.

#include <ctime>
#include <filesystem>
#include <map>

#import <Foundation/Foundation.h>
#include <fcntl.h>
#include <unistd.h>

#include "OrvelApp/Guard/LiveGuardSurroundings.h"
#include "OrvelCore/AppFolders.h"
#include "OrvelCore/Brand.h"
#include "OrvelSystem/ProcessList.h"
#include "OrvelSystem/macOS/DispatchMainLoop.h"

namespace {

using namespace OrvelApp;
using OrvelSystem::ProcessList;

constexpr double tickInterval = 0.5;  // seconds

class GuardProgram final : public LiveGuardSurroundings {
  public:
    void start() {
        watchFolder();
        adopt();
        guard_.started(*this);
        // The tick does almost nothing unless a confirmation is awaited.
        ticks_ = loop_.every(tickInterval, [this] {
            if (guard_.needsTicks()) guard_.tick(*this);
        });
    }

    double now() const override {
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);  // continues while the machine sleeps
        return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
    }

    bool appRuns() override {
        adopt();
        return !apps_.empty();
    }
    // Waits for the tool, which ends as soon as it has told the system to start the app.
    void relaunch() override {
        @autoreleasepool {
            NSTask* const task = [[NSTask alloc] init];
            task.executableURL = [NSURL fileURLWithPath:@"/usr/bin/open"];
            task.arguments = @[ NSBundle.mainBundle.bundlePath ];
            if ([task launchAndReturnError:nil]) [task waitUntilExit];
        }
        adopt();
    }

    void hide() override {}
    void reveal() override {}
    void say(const std::string&) override {}
    void checkPassword() override {}

  private:
    /// Waits for the end of every process of the app that is not yet known.
    void adopt() {
        for (const auto pid : ProcessList::running(app_)) {
            if (apps_.contains(pid)) continue;
            dispatch_source_t const exits =
                dispatch_source_create(DISPATCH_SOURCE_TYPE_PROC, static_cast<uintptr_t>(pid),
                                       DISPATCH_PROC_EXIT, dispatch_get_main_queue());
            if (!exits) continue;
            apps_[pid] = exits;
            dispatch_source_set_event_handler(exits, ^{
              exited(pid);
            });
            dispatch_resume(exits);
        }
    }

    void exited(std::int64_t pid) {
        const auto known = apps_.find(pid);
        if (known == apps_.end()) return;
        dispatch_source_cancel(known->second);
        apps_.erase(known);
        // Another process of the app may have taken over.
        adopt();
        if (apps_.empty()) guard_.appExited(*this);
    }

    void watchFolder() {
        const auto folder = OrvelCore::dataFolder();
        std::error_code ignored;
        std::filesystem::create_directories(folder, ignored);
        const int descriptor = ::open(folder.c_str(), O_RDONLY | O_CLOEXEC);
        if (descriptor < 0) return;
        folder_ =
            dispatch_source_create(DISPATCH_SOURCE_TYPE_VNODE, static_cast<uintptr_t>(descriptor),
                                   DISPATCH_VNODE_WRITE, dispatch_get_main_queue());
        dispatch_source_set_event_handler(folder_, ^{
          folderChanged();
        });
        dispatch_resume(folder_);
    }

    void folderChanged() {
        if (!isMarked()) return;
        adopt();
        // The process that wrote the new marker has already ended.
        if (apps_.empty()) guard_.appExited(*this);
    }

    const std::filesystem::path app_ =
        OrvelSystem::ProgramFile::own().path.parent_path() / OrvelCore::Brand::executable;
    OrvelSystem::DispatchMainLoop loop_;
    Guard guard_{bootSession()};
    std::map<std::int64_t, dispatch_source_t> apps_;
    dispatch_source_t folder_ = nil;
    OrvelSystem::Timer ticks_;
};

}  // namespace

int main() {
    @autoreleasepool {
        static GuardProgram program;
        program.start();
        [NSRunLoop.mainRunLoop run];
    }
    return 0;
}
