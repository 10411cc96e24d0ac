#include "OrvelAuth/Biometrics.h"

#include <QElapsedTimer>
#include <utility>
#include <variant>

#include "OrvelAuth/Linux/FprintContext.h"

namespace OrvelAuth {

namespace {

// A lock must not wait for a service that may hang, so it goes by what was found out earlier.
class Availability {
  public:
    static Availability& shared() {
        static Availability availability;
        return availability;
    }

    bool known() {
        refresh();
        return known_;
    }
    void failed() { known_ = false; }

  private:
    void refresh() {
        constexpr qint64 freshFor = 10'000;  // milliseconds
        if (asking_ || (asked_.isValid() && asked_.elapsed() < freshFor)) return;
        asking_ = true;
        asked_.start();
        FprintContext::lookUp(QDBusConnection::systemBus(), [this](bool canEvaluate) {
            asking_ = false;
            known_ = canEvaluate;
        });
    }

    bool known_ = false;
    bool asking_ = false;
    QElapsedTimer asked_;
};

}  // namespace

bool Biometrics::isAvailable() {
    return Availability::shared().known();
}

std::shared_ptr<OrvelSystem::BiometricContext> Biometrics::makeContext(
    OrvelSystem::MainLoop& loop) {
    return std::make_shared<FprintContext>(loop, QDBusConnection::systemBus());
}

OrvelSystem::Task<BiometricResult> Biometrics::evaluate(
    std::shared_ptr<OrvelSystem::BiometricContext> context, std::string /*reason*/) {
    // fprintd shows no sentence of its own; the card's words stand in its place.
    const auto prompt = std::dynamic_pointer_cast<FprintContext>(context);
    if (!prompt) co_return biometricResult(BiometricError::biometryNotAvailable);
    BiometricResult result = co_await prompt->evaluate();
    if (std::holds_alternative<BiometricUnavailable>(result)) Availability::shared().failed();
    co_return result;
}

}  // namespace OrvelAuth
