#pragma once

#include <QDBusConnection>
#include <functional>
#include <memory>

#include "OrvelAuth/BiometricResult.h"
#include "OrvelSystem/BiometricContext.h"
#include "OrvelSystem/Linux/DBus.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/Task.h"

namespace OrvelAuth {

/// One prompt of fprintd's default reader. The reader is claimed only while the prompt runs, and
/// is let go however that ends, the end of this object included.
class FprintContext final : public OrvelSystem::BiometricContext {
  public:
    /// A missing reader counts as one that may come back if it `isExpected`.
    FprintContext(OrvelSystem::MainLoop& loop, QDBusConnection bus, bool isExpected = false);
    ~FprintContext() override;

    /// Once. A second call, and one after `invalidate`, gives `BiometricCancelled`.
    OrvelSystem::Task<BiometricResult> evaluate();
    void invalidate() override;

    /// Calls `done` once, with whether there is a reader and this user has a finger enrolled.
    static void lookUp(QDBusConnection bus, std::function<void(bool canEvaluate)> done);
    /// Whenever some user has enrolled a finger, until the token is dropped.
    static OrvelSystem::DBus::Subscription onEnrolled(QDBusConnection bus,
                                                      std::function<void()> enrolled);

  private:
    struct Prompt;
    static OrvelSystem::Task<void> run(std::shared_ptr<Prompt> prompt);
    static void listen(const std::shared_ptr<Prompt>& prompt,
                       const OrvelSystem::DBus::Object& reader, const QString& owner);

    OrvelSystem::MainLoop& loop_;
    std::shared_ptr<Prompt> prompt_;
};

}  // namespace OrvelAuth
