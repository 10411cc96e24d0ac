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
// Seconds since 1970.
constexpr std::string_view checkedAtKey = "updatesCheckedAt";

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
    set(Checking{});
    UpdateResult result = co_await system_.check();
    if (alive.expired()) co_return;
    // After a failure too, so that a server in trouble is left alone for a day.
    noteCheck();
    take(result);
    if (automaticChecks()) arm(system_.now());
}

bool UpdateController::install(bool macLocked, int appLocks) {
    const auto* const ready = std::get_if<Ready>(&state_);
    if (ready == nullptr || !readyItem_) return false;
    if (!UpdateInstall::isAllowed(macLocked, appLocks)) return false;
    // Other programs can write where the package has lain since.
    if (!system_.verify(ready->package, *readyItem_)) {
        readyItem_.reset();
        set(Failed{fmt::format("The update changed after {0} checked it, so {0} did not open it.",
                               Brand::name)});
        return false;
    }
    system_.open(ready->package);
    return true;
}

std::string UpdateController::statusText(const State& state) {
    return OrvelCore::match(
        state,
        [](const Idle&) { return fmt::format("{} checks for updates once a day.", Brand::name); },
        [](const Checking&) { return std::string("Checking for updates"); },
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
        });
}

void UpdateController::set(State state) {
    state_ = std::move(state);
    onChange(state_);
}

}  // namespace OrvelUpdates
