#pragma once

#include <QDBusConnection>
#include <functional>
#include <memory>

#include "OrvelAuth/BiometricResult.h"
#include "OrvelCore/WeakList.h"
#include "OrvelSystem/BiometricContext.h"
#include "OrvelSystem/Linux/DBus.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/Task.h"

namespace OrvelAuth {

/// A prompt of fprintd's default reader. The reader is claimed only while the prompt runs. It is
/// always released afterwards, even if this object is destroyed.
class FprintContext final : public OrvelSystem::BiometricContext {
  public:
    /// `isExpected` means that a missing reader may return, so its absence ends a prompt as
    /// cancelled, not as unavailable.
    FprintContext(OrvelSystem::MainLoop& loop, QDBusConnection bus, bool isExpected = false);
    ~FprintContext() override;

    /// Call this once. A second call, and a call after `invalidate`, returns `BiometricCancelled`.
    OrvelSystem::Task<BiometricResult> evaluate();
    void invalidate() override;

    /// Calls `done` once, with true if there is a reader and this user has enrolled a finger.
    static void lookUp(QDBusConnection bus, std::function<void(bool canEvaluate)> done);
    /// Calls `enrolled` whenever any user has enrolled a finger, until the token is destroyed.
    static OrvelCore::Subscription onEnrolled(QDBusConnection bus, std::function<void()> enrolled);

  private:
    struct Prompt;
    static OrvelSystem::Task<void> run(std::shared_ptr<Prompt> prompt);
    static void listen(const std::shared_ptr<Prompt>& prompt,
                       const OrvelSystem::DBus::Object& reader);

    OrvelSystem::MainLoop& loop_;
    std::shared_ptr<Prompt> prompt_;
};

}  // namespace OrvelAuth
