#include "OrvelModes/Windows/Uninstaller.h"

#include "Support/ManualLoop.h"
#include "Support/Prelude.h"

using namespace OrvelModes;

namespace {

using Calls = std::vector<std::string>;

struct Locks {
    bool mac = false;
    int apps = 0;
};

/// Changes the locks to `afterwards`, as if that happened while the guard is removed.
OrvelSystem::Task<void> unregister(Calls& calls, Locks& locks, Locks afterwards) {
    calls.push_back("guard");
    locks = afterwards;
    co_return;
}

OrvelSystem::Task<void> uninstall(Uninstaller& uninstaller, const Locks& locks,
                                  std::optional<Uninstaller::Outcome>& outcome) {
    outcome = co_await uninstaller.run([&] { return locks.mac; }, [&] { return locks.apps; });
}

}  // namespace

TEST(Uninstaller, TakesEverythingInOrderOrNothing) {
    using Outcome = Uninstaller::Outcome;
    struct Row {
        Locks locks;
        Locks afterGuard;
        bool trashWorks;
        Outcome outcome;
        Calls calls;
    };
    const Row rows[] = {
        {{.mac = true}, {}, true, Outcome::refusedWhileLocked, {}},
        {{.apps = 1}, {}, true, Outcome::refusedWhileLocked, {}},
        {{}, {.mac = true}, true, Outcome::refusedWhileLocked, {"guard"}},
        {{}, {.apps = 1}, true, Outcome::refusedWhileLocked, {"guard"}},
        {{},
         {},
         false,
         Outcome::leftInApplications,
         {"guard", "login", "settings", "folder", "trash"}},
        {{}, {}, true, Outcome::done, {"guard", "login", "settings", "folder", "trash", "quit"}}};
    for (const auto& row : rows) {
        ManualLoop loop;
        Calls calls;
        Locks locks = row.locks;
        const auto step = [&](const char* name) {
            return [&calls, name] { calls.push_back(name); };
        };
        Uninstaller uninstaller(
            {.unregisterGuard = [&] { return unregister(calls, locks, row.afterGuard); },
             .unregisterLoginItem = step("login"),
             .removeSettings = step("settings"),
             .removeSupportFolder = step("folder"),
             .moveAppToTrash =
                 [&] {
                     calls.push_back("trash");
                     return row.trashWorks;
                 },
             .quit = step("quit")});
        std::optional<Outcome> outcome;
        OrvelSystem::spawn(loop, uninstall(uninstaller, locks, outcome));
        loop.drain();
        EXPECT_EQ(outcome, row.outcome);
        EXPECT_EQ(calls, row.calls);
    }
}
