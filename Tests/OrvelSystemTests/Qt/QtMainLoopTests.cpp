#include <QCoreApplication>
#include <QEventLoop>

#include "OrvelSystem/Qt/QtMainLoop.h"
#include "OrvelSystem/Task.h"
#include "OrvelSystem/Worker.h"

#include "Support/MainLoopChecks.h"

namespace {

Task<void> noteResumption(Task<int> task, std::atomic<bool>& resumed) {
    co_await task;
    resumed = true;
}

Task<void> noteResumptionAfter(MainLoop& loop, double seconds, std::atomic<bool>& resumed) {
    co_await Sleep(loop, seconds);
    resumed = true;
}

}  // namespace

TEST(QtMainLoop, TimersMayBeCancelledInsideTheirOwnCall) {
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    const QCoreApplication app(argc, argv);
    const auto turn = [] {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    QtMainLoop loop;
    checkTimers(loop, turn);

    std::atomic<bool> resumed = false;
    spawn(loop, noteResumptionAfter(loop, 0.001, resumed));
    EXPECT_TRUE(eventually(turn, [&] { return resumed.load(); }));
}

TEST(QtMainLoop, AWorkerMayOutliveIt) {
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    std::atomic<bool> resumed = false;
    std::promise<void> asked, released, ended;
    {
        const QCoreApplication app(argc, argv);
        QtMainLoop loop;
        spawn(loop, noteResumption(runBlocking(loop,
                                               [&, gate = released.get_future().share()] {
                                                   ended.set_value_at_thread_exit();
                                                   asked.set_value();
                                                   gate.wait();
                                                   return 7;
                                               }),
                                   resumed));
        QCoreApplication::sendPostedEvents();
        asked.get_future().wait();
        EXPECT_GT(blockingCalls.load(), 0);
    }
    released.set_value();
    ended.get_future().wait();
    // Wait until the blocking calls of other tests have returned too.
    EXPECT_TRUE(eventually([] {}, [] { return blockingCalls == 0; }));
    EXPECT_FALSE(resumed);
}
