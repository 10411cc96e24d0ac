#pragma once

#include <functional>

#import <Foundation/Foundation.h>

namespace OrvelUI {

/// Calls a function up to sixty times a second while something moves.
class Animation {
  public:
    Animation() = default;
    Animation(const Animation&) = delete;
    Animation& operator=(const Animation&) = delete;
    ~Animation() { stop(); }

    /// `step` gets the seconds since the start and ends the animation by returning false.
    void start(std::function<bool(double seconds)> step) {
        stop();
        const double begin = NSProcessInfo.processInfo.systemUptime;
        timer_ = [NSTimer timerWithTimeInterval:1.0 / 60
                                        repeats:YES
                                          block:^(NSTimer* timer) {
                                            const double now =
                                                NSProcessInfo.processInfo.systemUptime;
                                            if (!step(now - begin)) [timer invalidate];
                                          }];
        [NSRunLoop.mainRunLoop addTimer:timer_ forMode:NSRunLoopCommonModes];
    }
    void stop() {
        [timer_ invalidate];
        timer_ = nil;
    }
    bool isRunning() const { return timer_ && timer_.isValid; }

  private:
    NSTimer* timer_ = nil;
};

}  // namespace OrvelUI
