#pragma once

#import <LocalAuthentication/LocalAuthentication.h>

#include "OrvelSystem/BiometricContext.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelSystem {

/// A Touch ID prompt. The lock card embeds its context.
class TouchIDContext final : public BiometricContext {
  public:
    /// The result is posted to the loop, which must outlive the context.
    explicit TouchIDContext(MainLoop& loop) : loop_(loop) {}
    void invalidate() override { [context_ invalidate]; }
    LAContext* context() const { return context_; }
    MainLoop& loop() const { return loop_; }

  private:
    MainLoop& loop_;
    LAContext* context_ = [[LAContext alloc] init];
};

}  // namespace OrvelSystem
