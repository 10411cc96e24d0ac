#pragma once

#include "OrvelLock/LockSession.h"

#include "Support/LockStubs.h"

/// A session on stubs. By default it has a sensor, a running guard and no failures. From the second
/// failure on, each costs a minute.
struct LockSessionTest : testing::Test {
    ManualLoop loop;
    CallLog log;
    StubLockPresenter presenter{log};
    StubKiosk kiosk{log};
    StubMarkers markers{log};
    StubHandoff handoff{log};
    StubVerifier verifier{log};
    bool guard = true;
    bool sensor = true;
    bool screenIsLocked = false;
    bool replacesLock = false;
    bool mayLeave = false;
    std::optional<int> accountFailures;
    Date wall = dateFromSecondsSince1970(1'772'000'000);
    std::vector<Date> attempts;
    std::unique_ptr<LockSession> session;

    LockSessionTest() { make(10); }

    void make(std::optional<int> accountLimit) {
        session =
            std::make_unique<LockSession>(LockCollaborators{
                                              .presenter = presenter,
                                              .kiosk = kiosk,
                                              .markers = markers,
                                              .handoff = handoff,
                                              .verifier = verifier,
                                              .bootSession = "boot",
                                              .clock = [this] { return loop.uptime(); },
                                              .wallClock = [this] { return wall; },
                                              .guardAvailable = [this] { return guard; },
                                              .biometricsAvailable = [this] { return sensor; },
                                              .accountFailures = [this] { return accountFailures; },
                                              .screenIsLocked = [this] { return screenIsLocked; },
                                              .replacesLock = [this] { return replacesLock; },
                                              .mayLeave = [this] { return mayLeave; },
                                              .leave = [this] { log.push_back("leave"); },
                                          },
                                          Backoff{2, {60}, accountLimit}, std::nullopt);
        session->onUncovered = [this] { log.push_back("uncovered"); };
        session->onFailedAttempt = [this](Date date) {
            log.push_back("failedAttempt");
            attempts.push_back(date);
        };
    }

    void run(Task<void> task) {
        spawn(loop, std::move(task));
        loop.drain();
    }
    void lock() { run(session->lock()); }
    void submit(std::string_view password) { run(session->submitPassword(Password(password))); }
    /// The calls since the last time.
    CallLog take() { return std::exchange(log, {}); }
};
