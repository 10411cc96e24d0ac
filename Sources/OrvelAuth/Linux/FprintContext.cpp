#include "OrvelAuth/Linux/FprintContext.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QStringList>
#include <optional>
#include <utility>

#include "OrvelSystem/Linux/DBus.h"

namespace OrvelAuth {

namespace {

namespace DBus = OrvelSystem::DBus;
using OrvelSystem::Arrival;
using OrvelSystem::Task;

const QString service = QStringLiteral("net.reactivated.Fprint");
const QVariantList serviceName{service};
// An empty name means the calling user.
const QVariantList self{QString()};
const QVariantList anyFinger{QStringLiteral("any")};

DBus::Object manager() {
    return {service, QStringLiteral("/net/reactivated/Fprint/Manager"),
            QStringLiteral("net.reactivated.Fprint.Manager")};
}

// The path is empty if there is no reader.
DBus::Object device(const QDBusMessage& reply) {
    const QString path = DBus::failed(reply)
                             ? QString()
                             : reply.arguments().value(0).value<QDBusObjectPath>().path();
    return {service, path, QStringLiteral("net.reactivated.Fprint.Device")};
}

DBus::Object messageBus() {
    return {QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus")};
}

Task<QDBusMessage> ask(const QDBusConnection& bus, const DBus::Object& object, const char* member,
                       const QVariantList& arguments) {
    return DBus::call(bus, object.method(QLatin1String(member), arguments));
}

bool isError(const QDBusMessage& reply, const char* name) {
    return reply.errorName() ==
           QStringLiteral("net.reactivated.Fprint.Error.") + QLatin1String(name);
}

BiometricResult outcomeOfError(const QDBusMessage& error) {
    // Another user of the reader is active: a login on another seat, or an enrolment.
    if (isError(error, "AlreadyInUse")) return biometricResult(BiometricError::systemCancel);
    // Another session is active, and only the active session may use the reader.
    if (isError(error, "PermissionDenied")) return biometricResult(BiometricError::systemCancel);
    // A reader that has just woken up returns this error.
    if (isError(error, "Internal")) return biometricResult(BiometricError::none);
    return biometricResult(BiometricError::biometryNotAvailable);
}

// `nullopt` while the reader continues to scan.
std::optional<BiometricResult> outcomeOfStatus(const QString& status, bool done) {
    if (status == QStringLiteral("verify-match")) return BiometricSuccess{};
    // The reader was unplugged, or disappeared briefly while the machine woke up.
    if (status == QStringLiteral("verify-disconnected")) {
        return biometricResult(BiometricError::systemCancel);
    }
    if (status == QStringLiteral("verify-no-match")) {
        return biometricResult(BiometricError::authenticationFailed);
    }
    if (!done) return {};
    return biometricResult(BiometricError::none);
}

}  // namespace

struct FprintContext::Prompt {
    Prompt(QDBusConnection on, bool readerIsExpected)
        : bus(std::move(on)), isExpected(readerIsExpected) {}

    QDBusConnection bus;
    bool isExpected;
    bool begun = false;
    bool over = false;
    bool serviceGone = false;
    Arrival<BiometricResult> verdict;
    Arrival<bool> ended;
    OrvelCore::Subscription statuses;
    OrvelCore::Subscription presence;

    void finish(const BiometricResult& result) {
        if (std::exchange(over, true)) return;
        statuses.reset();
        presence.reset();
        ended.promise()(true);
        // This comes last, since the awaiting code may destroy the context.
        verdict.promise()(result);
    }
};

FprintContext::FprintContext(OrvelSystem::MainLoop& loop, QDBusConnection bus, bool isExpected)
    : loop_(loop), prompt_(std::make_shared<Prompt>(std::move(bus), isExpected)) {}

FprintContext::~FprintContext() {
    FprintContext::invalidate();
}

void FprintContext::invalidate() {
    const auto prompt = prompt_;
    prompt->finish(BiometricCancelled{});
}

Task<BiometricResult> FprintContext::evaluate() {
    const auto prompt = prompt_;
    if (std::exchange(prompt->begun, true) || prompt->over) co_return BiometricCancelled{};
    OrvelSystem::spawn(loop_, run(prompt));
    BiometricResult result = co_await prompt->verdict;
    co_return result;
}

// A single sequence of steps, so that every claim is followed by its release: a prompt that ends
// early only skips the steps in between.
Task<void> FprintContext::run(std::shared_ptr<Prompt> prompt) {
    if (prompt->over) co_return;
    QDBusMessage reply = co_await ask(prompt->bus, manager(), "GetDefaultDevice", {});
    auto reader = device(reply);
    if (reader.path.isEmpty()) {
        const bool mayComeBack = prompt->isExpected && isError(reply, "NoSuchDevice");
        prompt->finish(biometricResult(mayComeBack ? BiometricError::systemCancel
                                                   : BiometricError::biometryNotAvailable));
    }
    if (prompt->over) co_return;

    // A finger opens the lock, so the claim, the signals and the release belong to one process,
    // whatever process owns the service's name later.
    reply = co_await ask(prompt->bus, messageBus(), "GetNameOwner", serviceName);
    if (DBus::failed(reply)) prompt->finish(biometricResult(BiometricError::biometryNotAvailable));
    if (prompt->over) co_return;
    reader.service = reply.arguments().value(0).toString();

    reply = co_await ask(prompt->bus, reader, "Claim", self);
    if (DBus::failed(reply)) {
        prompt->finish(outcomeOfError(reply));
        // An unanswered claim may still be granted. After a refused claim, do not release: that
        // would end another prompt of this program.
        if (QDBusError(reply).type() != QDBusError::NoReply) co_return;
    }

    if (!prompt->over) {
        listen(prompt, reader);
        reply = co_await ask(prompt->bus, reader, "VerifyStart", anyFinger);
        if (DBus::failed(reply)) {
            prompt->finish(outcomeOfError(reply));
        } else {
            co_await prompt->ended;
        }
        // Stop even after a failed start, since the start may only have been answered too late.
        if (!prompt->serviceGone) reply = co_await ask(prompt->bus, reader, "VerifyStop", {});
    }
    if (!prompt->serviceGone) reply = co_await ask(prompt->bus, reader, "Release", {});
}

void FprintContext::listen(const std::shared_ptr<Prompt>& prompt, const DBus::Object& reader) {
    const std::weak_ptr<Prompt> weak = prompt;
    prompt->presence = DBus::onOwnerChanged(prompt->bus, service, [weak](bool) {
        const auto alive = weak.lock();
        if (!alive) return;
        alive->serviceGone = true;
        alive->finish(biometricResult(BiometricError::biometryNotAvailable));
    });
    prompt->statuses = DBus::onSignal(prompt->bus, reader, QStringLiteral("VerifyStatus"),
                                      [weak, owner = reader.service](const QDBusMessage& status) {
                                          const auto alive = weak.lock();
                                          if (!alive || status.service() != owner) return;
                                          const auto outcome = outcomeOfStatus(
                                              status.arguments().value(0).toString(),
                                              status.arguments().value(1).toBool());
                                          if (outcome) alive->finish(*outcome);
                                      });
}

void FprintContext::lookUp(QDBusConnection bus, std::function<void(bool canEvaluate)> done) {
    const auto listed = [done](const QDBusMessage& reply) {
        done(!DBus::failed(reply) && !reply.arguments().value(0).toStringList().isEmpty());
    };
    const auto found = [bus, done, listed](const QDBusMessage& reply) {
        const auto reader = device(reply);
        if (reader.path.isEmpty()) return done(false);
        DBus::call(bus, reader.method(QStringLiteral("ListEnrolledFingers"), self), listed);
    };
    DBus::call(bus, manager().method(QStringLiteral("GetDefaultDevice")), found);
}

OrvelCore::Subscription FprintContext::onEnrolled(QDBusConnection bus,
                                                  std::function<void()> enrolled) {
    // The signal of any reader, since their paths are unknown here.
    const DBus::Object anyReader{service, QString(),
                                 QStringLiteral("net.reactivated.Fprint.Device")};
    return DBus::onSignal(
        bus, anyReader, QStringLiteral("EnrollStatus"),
        [enrolled = std::move(enrolled)](const QDBusMessage& status) {
            if (status.arguments().value(0).toString() == QStringLiteral("enroll-completed"))
                enrolled();
        });
}

}  // namespace OrvelAuth
