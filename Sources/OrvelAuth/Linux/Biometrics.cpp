#include "OrvelAuth/Biometrics.h"

#include <QElapsedTimer>
#include <utility>
#include <variant>

#include "OrvelAuth/FingerLockout.h"
#include "OrvelAuth/Linux/FprintContext.h"

namespace OrvelAuth {

namespace {

// A lock must not wait for a service that may hang, so it uses the result of an earlier request.
class Availability {
  public:
    static Availability& shared() {
        static Availability availability;
        return availability;
    }

    bool known() {
        constexpr qint64 freshFor = 10'000;  // in milliseconds
        if (!asked_.isValid() || asked_.elapsed() >= freshFor) lookUp();
        return known_;
    }
    void failed() { known_ = false; }

  private:
    void lookUp() {
        // A running request may miss a change that happens meanwhile, so repeat it afterwards.
        looksAgain_ = asking_;
        if (std::exchange(asking_, true)) return;
        asked_.start();
        FprintContext::lookUp(QDBusConnection::systemBus(), [this](bool canEvaluate) {
            asking_ = false;
            known_ = canEvaluate;
            if (looksAgain_) lookUp();
        });
    }

    bool known_ = false;
    bool asking_ = false;
    bool looksAgain_ = false;
    QElapsedTimer asked_;
    // The next lock must offer a finger that was enrolled just before it.
    OrvelCore::Subscription enrolments_ =
        FprintContext::onEnrolled(QDBusConnection::systemBus(), [this] { lookUp(); });
};

// fprintd does not limit the number of attempts.
FingerLockout& lockout() {
    static FingerLockout shared;
    return shared;
}

std::function<void()>& lockoutObserver() {
    static std::function<void()> observer = [] {};
    return observer;
}

// A reader that has worked before may return: it may be plugged in again, or become available some
// time after the machine wakes up.
bool readerHasWorked = false;

}  // namespace

bool Biometrics::isAvailable() {
    return Availability::shared().known() && !lockout().isLocked();
}

std::shared_ptr<OrvelSystem::BiometricContext> Biometrics::makeContext(
    OrvelSystem::MainLoop& loop) {
    return std::make_shared<FprintContext>(loop, QDBusConnection::systemBus(), readerHasWorked);
}

OrvelSystem::Task<BiometricResult> Biometrics::evaluate(
    std::shared_ptr<OrvelSystem::BiometricContext> context, std::string /*reason*/) {
    // fprintd shows no text, so `reason` is not used; the card has its own text.
    const auto prompt = std::dynamic_pointer_cast<FprintContext>(context);
    if (!prompt) co_return biometricResult(BiometricError::biometryNotAvailable);
    if (lockout().isLocked()) co_return BiometricLockout{};
    BiometricResult result = co_await prompt->evaluate();
    if (std::holds_alternative<BiometricUnavailable>(result)) Availability::shared().failed();
    if (std::holds_alternative<BiometricSuccess>(result) ||
        std::holds_alternative<BiometricFailed>(result))
        readerHasWorked = true;
    const bool wasLocked = lockout().isLocked();
    result = lockout().judge(result);
    if (!wasLocked && lockout().isLocked()) lockoutObserver()();
    co_return result;
}

void Biometrics::passwordAccepted() {
    lockout().reset();
}

void Biometrics::observeLockout(std::function<void()> lockedOut) {
    lockoutObserver() = std::move(lockedOut);
}

}  // namespace OrvelAuth
