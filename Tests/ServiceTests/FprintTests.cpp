#include <QCoreApplication>

#include "OrvelAuth/Biometrics.h"
#include "OrvelAuth/FingerLockout.h"
#include "OrvelAuth/Linux/FingerprintHold.h"
#include "OrvelAuth/Linux/FprintContext.h"
#include "OrvelSystem/Qt/QtMainLoop.h"
#include "OrvelSystem/Task.h"

#include "Bus.h"

namespace {

const QString service = QStringLiteral("net.reactivated.Fprint");
const QString managerPath = QStringLiteral("/net/reactivated/Fprint/Manager");
const QString managerInterface = QStringLiteral("net.reactivated.Fprint.Manager");
const QString devicePath = QStringLiteral("/net/reactivated/Fprint/Device/0");
const QString deviceInterface = QStringLiteral("net.reactivated.Fprint.Device");

QString raise(const QString& error) {
    return QStringLiteral(
               "raise dbus.exceptions.DBusException('no', "
               "name='net.reactivated.Fprint.Error.%1')")
        .arg(error);
}

class Fprint : public testing::Test {
  protected:
    using Results = std::vector<BiometricResult>;

    // Operations that are still pending when the loop is destroyed would be reported as leaks.
    void TearDown() override {
        if (context) context->invalidate();
        if (reader) {
            EXPECT_TRUE(pumpedUntil([&] { return reader->calls("Release") >= held(); }));
        }
        pumpedWhile([] { return true; });
    }
    /// The number of granted claims.
    int held() { return std::min(reader->calls("VerifyStart"), reader->calls("Claim")); }

    void begin(bool isExpected = false) {
        context = std::make_shared<FprintContext>(loop, QDBusConnection::systemBus(), isExpected);
        spawn(loop, keep(context, results));
    }
    static Task<void> keep(std::shared_ptr<FprintContext> context, Results& results) {
        BiometricResult result = co_await context->evaluate();
        results.push_back(result);
    }
    bool verifying() {
        return pumpedUntil([&] { return reader->isVerifying(); });
    }
    std::optional<BiometricResult> next() {
        if (!pumpedUntil([&] { return !results.empty(); })) return {};
        const auto result = results.front();
        results.erase(results.begin());
        return result;
    }
    void answer(const QString& method, const QString& in, const QString& out, const QString& code) {
        bus.answer(service, devicePath, deviceInterface, method, in, out, code);
    }
    // Checks that the reader was released, since only then can it be claimed again.
    void expectFree() {
        begin();
        EXPECT_TRUE(verifying());
        context->invalidate();
        EXPECT_EQ(next(), BiometricResult(BiometricCancelled{}));
    }

    Bus& bus = Bus::shared();
    QtMainLoop loop;
    std::optional<FingerprintReader> reader{std::in_place, bus.connection(), bus.environment(),
                                            bus.log("fprintd")};
    Results results;
    std::shared_ptr<FprintContext> context;
};

TEST_F(Fprint, GivesTheReadersVerdictAndLetsItGo) {
    const std::pair<const char*, BiometricResult> table[] = {
        {"verify-match", BiometricSuccess{}},         {"verify-no-match", BiometricFailed{-1}},
        {"verify-unknown-error", BiometricFailed{0}}, {"verify-retry-scan", BiometricFailed{0}},
        {"verify-something-new", BiometricFailed{0}}, {"verify-disconnected", BiometricCancelled{}},
    };
    for (const auto& [status, result] : table) {
        begin();
        ASSERT_TRUE(verifying()) << status;
        // A claim that was not released would fail the next round.
        reader->report(status, true);
        EXPECT_EQ(next(), result) << status;
        EXPECT_TRUE(pumpedUntil([&] { return !reader->isVerifying(); })) << status;
    }
    expectFree();
}

TEST_F(Fprint, AMatchThatAnotherProgramSendsIsNotBelieved) {
    begin();
    ASSERT_TRUE(verifying());
    ASSERT_GE(sd_bus_emit_signal(bus.connection().connection(), devicePath.toUtf8().constData(),
                                 deviceInterface.toUtf8().constData(), "VerifyStatus", "sb",
                                 "verify-match", 1),
              0);
    EXPECT_TRUE(pumpedWhile([&] { return results.empty() && reader->isVerifying(); }));
}

TEST_F(Fprint, AnInvalidatedPromptReportsNothingMore) {
    begin();
    ASSERT_TRUE(verifying());
    context->invalidate();
    reader->report("verify-match", true);
    EXPECT_EQ(next(), BiometricResult(BiometricCancelled{}));
    EXPECT_TRUE(pumpedWhile([&] { return results.empty(); }));

    // A context that was never used, and one that is destroyed instead of invalidated.
    const auto unused = Biometrics::makeContext(loop);
    unused->invalidate();
    unused->invalidate();
    expectFree();
    context.reset();
    expectFree();
}

TEST_F(Fprint, InvalidatedAtAnyMomentItLetsTheReaderGo) {
    // From before the first message to well into the scan, one turn of the loop later each time.
    for (int turns = 0; turns < 40; ++turns) {
        begin();
        for (int turn = 0; turn < turns; ++turn) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        }
        context->invalidate();
        ASSERT_EQ(next(), BiometricResult(BiometricCancelled{})) << turns;
        ASSERT_TRUE(pumpedUntil([&] { return !reader->isVerifying(); })) << turns;
    }
    EXPECT_TRUE(pumpedUntil([&] {
        begin();
        const bool free = pumpedUntil([&] { return reader->isVerifying() || !results.empty(); }) &&
                          results.empty();
        context->invalidate();
        (void)next();
        return free;
    }));
}

TEST_F(Fprint, MapsRefusals) {
    const std::tuple<const char*, const char*, BiometricResult> table[] = {
        {"VerifyStart", "NoEnrolledPrints", BiometricUnavailable{}},
        {"VerifyStart", "Internal", BiometricFailed{0}},
        {"VerifyStart", "AlreadyInUse", BiometricCancelled{}},
        {"Claim", "PermissionDenied", BiometricCancelled{}},
        {"Claim", "AlreadyInUse", BiometricCancelled{}},
    };
    for (const auto& [method, error, result] : table) {
        answer(QLatin1String(method), QStringLiteral("s"), {}, raise(QLatin1String(error)));
        begin();
        EXPECT_EQ(next(), result) << method << ' ' << error;
        const bool isClaim = std::string_view(method) == "Claim";
        answer(QLatin1String(method), QStringLiteral("s"), {},
               isClaim ? QStringLiteral("self.claimed = True")
                       : QStringLiteral("self.verifying = True"));
        expectFree();
    }
    bus.answer(service, managerPath, managerInterface, QStringLiteral("GetDefaultDevice"), {},
               QStringLiteral("o"), raise(QStringLiteral("NoSuchDevice")));
    begin();
    EXPECT_EQ(next(), BiometricResult(BiometricUnavailable{}));
    begin(true);
    EXPECT_EQ(next(), BiometricResult(BiometricCancelled{})) << "it may be plugged in again";
}

TEST_F(Fprint, AServiceThatVanishesEndsThePrompt) {
    begin();
    ASSERT_TRUE(verifying());
    reader.reset();
    EXPECT_EQ(next(), BiometricResult(BiometricUnavailable{}));
    begin();
    EXPECT_EQ(next(), BiometricResult(BiometricUnavailable{})) << "no service at all";
}

TEST_F(Fprint, LooksForAReaderWithAFingerOnIt) {
    const auto lookUp = [] {
        std::optional<bool> found;
        FprintContext::lookUp(QDBusConnection::systemBus(), [&](bool can) { found = can; });
        EXPECT_FALSE(found) << "never inside the call";
        EXPECT_TRUE(pumpedUntil([&] { return found.has_value(); }));
        return found.value_or(false);
    };
    EXPECT_TRUE(lookUp());
    answer(QStringLiteral("ListEnrolledFingers"), QStringLiteral("s"), QStringLiteral("as"),
           QStringLiteral("ret = dbus.Array([], signature='s')"));
    EXPECT_FALSE(lookUp());
    answer(QStringLiteral("ListEnrolledFingers"), QStringLiteral("s"), QStringLiteral("as"),
           raise(QStringLiteral("NoEnrolledPrints")));
    EXPECT_FALSE(lookUp());
    reader.reset();
    EXPECT_FALSE(lookUp());
}

// The prompts as the whole program uses them.
class FprintPrompts : public Fprint {
  protected:
    FprintPrompts() {
        // A completed enrolment makes the program look for the reader again, in case another test
        // removed it.
        EXPECT_TRUE(pumpedUntil([this] {
            if (Biometrics::isAvailable()) return true;
            reader->reportEnrolment("enroll-completed", true);
            return false;
        }));
        // Wait for pending look-ups, whose results would overwrite what the test changes.
        for (int looks = 0; looks != reader->calls("ListEnrolledFingers");) {
            looks = reader->calls("ListEnrolledFingers");
            pumpedWhile([] { return true; });
        }
    }
    ~FprintPrompts() override { Biometrics::passwordAccepted(); }
    void prompt() { spawn(loop, keepPrompt(loop, results)); }
    static Task<void> keepPrompt(MainLoop& on, Results& into) {
        BiometricResult result = co_await Biometrics::evaluate(Biometrics::makeContext(on), "x");
        into.push_back(result);
    }
};

TEST_F(FprintPrompts, AvailabilityFallsWithAFailedPromptAndRisesWithAnEnrolment) {
    answer(QStringLiteral("VerifyStart"), QStringLiteral("s"), {},
           raise(QStringLiteral("NoEnrolledPrints")));
    prompt();
    EXPECT_EQ(next(), BiometricResult(BiometricUnavailable{}));
    EXPECT_FALSE(Biometrics::isAvailable());

    reader->reportEnrolment("enroll-stage-passed", false);
    EXPECT_TRUE(pumpedWhile([] { return !Biometrics::isAvailable(); })) << "no finger yet";
    const int looks = reader->calls("ListEnrolledFingers");
    reader->reportEnrolment("enroll-completed", true);
    // The look-up happens immediately, so that the next lock already has the result.
    EXPECT_TRUE(pumpedUntil([&] { return reader->calls("ListEnrolledFingers") > looks; }));
    EXPECT_TRUE(pumpedUntil([] { return Biometrics::isAvailable(); }));
}

TEST_F(FprintPrompts, FiveFingersThatDoNotMatchLockTheReaderUntilThePassword) {
    int lockouts = 0;
    Biometrics::observeLockout([&] { ++lockouts; });
    for (int i = 1; i <= FingerLockout::limit; ++i) {
        prompt();
        ASSERT_TRUE(verifying()) << i;
        reader->report("verify-no-match", true);
        EXPECT_EQ(next(), i < FingerLockout::limit ? BiometricResult(BiometricFailed{-1})
                                                   : BiometricResult(BiometricLockout{}));
        EXPECT_TRUE(pumpedUntil([&] { return !reader->isVerifying(); }));
    }
    EXPECT_EQ(lockouts, 1);
    EXPECT_FALSE(Biometrics::isAvailable());
    const int claims = reader->calls("Claim");
    prompt();
    EXPECT_EQ(next(), BiometricResult(BiometricLockout{}));
    EXPECT_EQ(reader->calls("Claim"), claims) << "the reader is left alone";
    EXPECT_EQ(lockouts, 1);

    Biometrics::passwordAccepted();
    EXPECT_TRUE(Biometrics::isAvailable());
    prompt();
    ASSERT_TRUE(verifying());
    reader->report("verify-match", true);
    EXPECT_EQ(next(), BiometricResult(BiometricSuccess{}));
    Biometrics::observeLockout([] {});
}

TEST_F(Fprint, APasswordCheckKeepsTheReaderFromItsOwnFingerprintModule) {
    const PAMUse finger{.control = "success=1 default=ignore", .module = "pam_fprintd.so"};
    const PAMUse password{.control = "required", .module = "pam_unix.so"};
    {
        const FingerprintHold none({.authentication = {password}, .account = {finger}});
        EXPECT_EQ(reader->calls("Claim"), 0) << "nothing asks for a finger";
    }
    {
        const FingerprintHold hold({.authentication = {finger, password}});
        begin();
        EXPECT_EQ(next(), BiometricResult(BiometricCancelled{})) << "in use";
    }
    expectFree();
    ASSERT_TRUE(pumpedUntil([&] { return !reader->isVerifying(); }));
    // A prompt that has already claimed the reader keeps it.
    begin();
    ASSERT_TRUE(verifying());
    { const FingerprintHold hold({.authentication = {finger, password}}); }
    EXPECT_TRUE(reader->isVerifying());
    reader.reset();
    EXPECT_TRUE(next()) << "the prompt ends with the reader";
    const FingerprintHold gone({.authentication = {finger, password}});
}

}  // namespace
