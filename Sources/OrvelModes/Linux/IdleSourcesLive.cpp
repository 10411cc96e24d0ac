#include <memory>
#include <optional>

#include "OrvelModes/Blur/IdleController.h"
#include "OrvelSystem/Linux/IdleInhibitors.h"
#include "OrvelSystem/Linux/SessionState.h"
#include "OrvelSystem/X11/InputIdle.h"

namespace OrvelModes {

namespace {

/// What must be tracked, from the first read on.
struct Session {
    OrvelSystem::IdleInhibitors inhibitors;
    OrvelSystem::SessionState state;
};

}  // namespace

IdleSources IdleSources::live(OrvelSystem::MainLoop& loop) {
    const auto session = [kept = std::make_shared<std::optional<Session>>()]() -> const Session& {
        if (!*kept) kept->emplace();
        return **kept;
    };
    return {.idleSeconds = OrvelSystem::InputIdle::seconds,
            .displayKeptAwake = [session] { return session().inhibitors.areHeld(); },
            .sessionLocked = [session] { return session().state.isLockedOrAway(); },
            .now = [&loop] { return loop.uptime(); }};
}

}  // namespace OrvelModes
