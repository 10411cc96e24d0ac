#include "OrvelAuth/Biometrics.h"
#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelSystem/macOS/TouchIDContext.h"

namespace OrvelAuth {

namespace {

constexpr LAPolicy policy = LAPolicyDeviceOwnerAuthenticationWithBiometrics;

}  // namespace

bool Biometrics::isAvailable() {
    @autoreleasepool {
        return [[[LAContext alloc] init] canEvaluatePolicy:policy error:nil];
    }
}

std::shared_ptr<OrvelSystem::BiometricContext> Biometrics::makeContext(
    OrvelSystem::MainLoop& loop) {
    return std::make_shared<OrvelSystem::TouchIDContext>(loop);
}

OrvelSystem::Task<BiometricResult> Biometrics::evaluate(
    std::shared_ptr<OrvelSystem::BiometricContext> context, std::string reason) {
    const auto prompt = std::dynamic_pointer_cast<OrvelSystem::TouchIDContext>(context);
    if (!prompt) co_return biometricResult(BiometricError::biometryNotAvailable);
    OrvelSystem::Arrival<BiometricResult> arrival;
    // The framework calls the reply on its own queue, possibly after the loop has ended.
    [prompt->context() evaluatePolicy:policy
                      localizedReason:OrvelSystem::Cocoa::string(reason)
                                reply:[post = prompt->loop().poster(), finish = arrival.promise()](
                                          BOOL success, NSError* error) {
                                    // A reply without an error and without success is a failure
                                    // without a code.
                                    const int code =
                                        error ? static_cast<int>(error.code) : BiometricError::none;
                                    post([finish, success, code] {
                                        finish(success ? BiometricResult(BiometricSuccess{})
                                                       : biometricResult(code));
                                    });
                                }];
    BiometricResult result = co_await arrival;
    co_return result;
}

// The sensor has its own lock-out, which the system ends after the password.
void Biometrics::passwordAccepted() {}

// The result of a prompt reports the lock-out.
void Biometrics::observeLockout(std::function<void()>) {}

}  // namespace OrvelAuth
