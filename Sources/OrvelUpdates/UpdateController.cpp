#include "OrvelUpdates/UpdateController.h"

#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "OrvelCore/Brand.h"
#include "OrvelCore/Match.h"

namespace OrvelUpdates {

namespace {

namespace Brand = OrvelCore::Brand;

constexpr std::string_view automaticKey = "updatesAutomatic";
// In seconds since 1970.
constexpr std::string_view checkedAtKey = "updatesCheckedAt";

std::string textOf(const DownloadProgress& download) {
    if (download.total > 0)
        return fmt::format("Downloading the update: {} %",
                           download.received * 100 / download.total);
    return fmt::format("Downloading the update: {} MB", download.received / 1'000'000);
}

}  // namespace

UpdateController::UpdateController(UpdateSystem system, OrvelCore::SettingsStore& defaults,
                                   OrvelSystem::MainLoop& loop)
    : system_(std::move(system)), defaults_(defaults), loop_(loop) {}

bool UpdateController::automaticChecks() const {
    return defaults_.boolForKey(automaticKey).value_or(true);
}

void UpdateController::setAutomaticChecks(bool automatic) {
    defaults_.setBool(automaticKey, automatic);
}

OrvelSystem::Task<void> UpdateController::start() {
    const auto last = checkedAt();
    if (!last) {
        noteCheck();
        arm(system_.now());
        co_return;
    }
    if (!automaticChecks()) co_return;
    if (OrvelCore::secondsBetween(*last, system_.now()) >= UpdateSchedule::interval)
        co_await checkNow();
    else
        arm(*last);
}

OrvelSystem::Task<void> UpdateController::checkNow() {
    const auto alive = lifetime_.weak();
    if (!std::holds_alternative<Checking>(state_)) stateBeforeCheck_ = state_;
    set(Checking{});
    UpdateResult result = co_await system_.check(
        lifetime_.guard([this](const DownloadProgress& progress) { showProgress(progress); }));
    if (alive.expired()) co_return;
    // Do this after a failure too, so that a server with problems gets no request for a day.
    noteCheck();
    take(result);
    if (automaticChecks()) arm(system_.now());
}

void UpdateController::cancel() {
    system_.cancel();
}

bool UpdateController::install(bool macLocked, int appLocks) {
    const auto* const ready = std::get_if<Ready>(&state_);
    if (ready == nullptr || !readyItem_) return false;
    if (!UpdateInstall::isAllowed(macLocked, appLocks)) return false;
    // Other programs may have written to the package's location since it was verified.
    const auto archive = system_.verify(ready->package, *readyItem_);
    if (!archive) {
        readyItem_.reset();
        set(Failed{fmt::format("The update changed after {0} checked it, so {0} did not open it.",
                               Brand::name)});
        return false;
    }
    if (system_.open(ready->package, *archive)) return true;
    readyItem_.reset();
    set(Failed{fmt::format("{} could not open the update. Try again later.", Brand::name)});
    return false;
}

std::string UpdateController::statusText(const State& state) {
    return OrvelCore::match(
        state,
        [](const Idle&) { return fmt::format("{} checks for updates once a day.", Brand::name); },
        [](const Checking& checking) {
            return checking.download ? textOf(*checking.download)
                                     : std::string("Checking for updates");
        },
        [](const UpToDate&) { return fmt::format("{} is up to date.", Brand::name); },
        [](const Ready& ready) {
            return fmt::format("Version {} is ready to install.", ready.version);
        },
        [](const Failed& failed) { return failed.text; });
}

std::optional<OrvelCore::Date> UpdateController::checkedAt() const {
    return defaults_.doubleForKey(checkedAtKey).transform(OrvelCore::dateFromSecondsSince1970);
}

void UpdateController::noteCheck() {
    defaults_.setDouble(checkedAtKey, OrvelCore::secondsSince1970(system_.now()));
}

void UpdateController::arm(OrvelCore::Date from) {
    if (armed_) return;
    armed_ = true;
    system_.schedule(from + OrvelCore::Seconds(UpdateSchedule::interval), lifetime_.guard([this] {
        armed_ = false;
        OrvelSystem::spawn(loop_, start());
    }));
}

void UpdateController::showProgress(const DownloadProgress& progress) {
    // If two checks overlap, the other one may already have its result.
    if (std::holds_alternative<Checking>(state_)) set(Checking{progress});
}

void UpdateController::take(const UpdateResult& result) {
    OrvelCore::match(
        result,
        [this](const UpdateReady& ready) {
            readyItem_ = ready.item;
            set(Ready{ready.item.shortVersion, ready.package});
        },
        [this](const UpdateFailed& failed) {
            readyItem_.reset();
            set(Failed{failed.text});
        },
        [this](const OrvelUpdates::UpToDate&) {
            readyItem_.reset();
            set(UpToDate{});
        },
        [this](const UpdateCancelled&) {
            if (std::holds_alternative<Checking>(state_)) set(stateBeforeCheck_);
        });
}

void UpdateController::set(State state) {
    state_ = std::move(state);
    onChange(state_);
}

}  // namespace OrvelUpdates
