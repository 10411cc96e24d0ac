#include "OrvelSystem/macOS/DispatchMainLoop.h"

#include <algorithm>
#include <utility>

#import <Foundation/Foundation.h>

namespace OrvelSystem {

namespace {

MainLoop::Poster posterWhile(std::weak_ptr<bool> alive) {
    return [alive = std::move(alive)](std::function<void()> f) {
        dispatch_async(dispatch_get_main_queue(), ^{
          if (alive.lock()) f();
        });
    };
}

/// The tolerance, in seconds, lets the system combine wake-ups.
Timer start(double seconds, bool repeats, double tolerance, std::function<void()> f) {
    NSTimer* const timer = [NSTimer timerWithTimeInterval:seconds
                                                  repeats:repeats
                                                    block:^(NSTimer*) {
                                                      // The call may cancel the timer, which
                                                      // destroys this closure.
                                                      const auto call = f;
                                                      call();
                                                    }];
    timer.tolerance = tolerance;
    [NSRunLoop.mainRunLoop addTimer:timer forMode:NSRunLoopCommonModes];
    return Timer([timer] { [timer invalidate]; });
}

}  // namespace

DispatchMainLoop::DispatchMainLoop() : isAlive_(std::make_shared<bool>(true)) {}
DispatchMainLoop::~DispatchMainLoop() = default;

void DispatchMainLoop::post(std::function<void()> f) {
    posterWhile(isAlive_)(std::move(f));
}

MainLoop::Poster DispatchMainLoop::poster() {
    return posterWhile(isAlive_);
}

Timer DispatchMainLoop::after(double seconds, std::function<void()> f) {
    return start(std::max(seconds, 0.0), false, 0, std::move(f));
}

Timer DispatchMainLoop::every(double interval, std::function<void()> f) {
    return start(interval, true, interval / 10, std::move(f));
}

double DispatchMainLoop::uptime() const {
    return NSProcessInfo.processInfo.systemUptime;
}

}  // namespace OrvelSystem
