#pragma once

#import <LocalAuthentication/LocalAuthentication.h>

#include "OrvelSystem/BiometricContext.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelAuth {

/// A prompt of Touch ID. The lock card embeds its context.
class TouchIDContext final : public OrvelSystem::BiometricContext {
  public:
    /// The answer goes to the loop, which outlives the context.
    explicit TouchIDContext(OrvelSystem::MainLoop& loop) : loop_(loop) {}
    void invalidate() override { [context_ invalidate]; }
    LAContext* context() const { return context_; }
    OrvelSystem::MainLoop& loop() const { return loop_; }

  private:
    OrvelSystem::MainLoop& loop_;
    LAContext* context_ = [[LAContext alloc] init];
};

}  // namespace OrvelAuth
