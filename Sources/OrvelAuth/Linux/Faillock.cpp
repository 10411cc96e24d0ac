#include "OrvelAuth/Linux/Faillock.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <utility>

#include "OrvelAuth/Linux/PAMStack.h"
#include "OrvelCore/AtomicFile.h"

namespace OrvelAuth::Faillock {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view module = "pam_faillock.so";
// In seconds: one week, to which the module itself limits every duration.
constexpr std::int64_t maxInterval = 604800;

template <class T>
std::optional<T> leadingNumber(std::string_view text) {
    T value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && value >= 0 ? std::optional(value) : std::nullopt;
}

std::optional<std::int64_t> interval(std::string_view text) {
    const auto seconds = leadingNumber<std::int64_t>(text);
    return seconds ? std::optional(std::min(*seconds, maxInterval)) : std::nullopt;
}

std::optional<std::int64_t> unlockInterval(std::string_view text) {
    return text == "never" ? std::optional<std::int64_t>(0) : interval(text);
}

template <class T, class Target>
void assign(const std::optional<T>& value, Target& target) {
    if (value) target = *value;
}

std::string contents(const fs::path& file) {
    return OrvelCore::readFile(file).value_or(std::string());
}

Settings settingsOf(const PAMUse& use, const Places& places) {
    constexpr std::string_view conf = "conf=";
    Settings result;
    const auto named = std::ranges::find_if(
        use.arguments, [&](const std::string& argument) { return argument.starts_with(conf); });
    applyFile(contents(named == use.arguments.end() ? places.configuration
                                                    : fs::path(named->substr(conf.size()))),
              result);
    // Arguments override the file.
    for (const std::string_view argument : use.arguments) {
        const auto equals = std::min(argument.find('='), argument.size());
        apply(argument.substr(0, equals), argument.substr(std::min(argument.size(), equals + 1)),
              result);
    }
    return result;
}

// The module's file format, in the machine's byte order.
struct Record {
    char source[52];
    std::uint16_t reserved;
    std::uint16_t status;
    std::uint64_t time;
};
static_assert(sizeof(Record) == 64);
constexpr std::uint16_t valid = 0x1;

bool isAdmin(const Account& account, const Settings& settings) {
    return account.isRoot ||
           (!settings.adminGroup.empty() && account.isMember(settings.adminGroup));
}

}  // namespace

void apply(std::string_view name, std::string_view value, Settings& settings) {
    if (name == "dir") {
        if (value.starts_with('/')) settings.folder = value;
    } else if (name == "deny") {
        assign(leadingNumber<std::uint16_t>(value), settings.deny);
    } else if (name == "fail_interval") {
        assign(interval(value), settings.failInterval);
    } else if (name == "unlock_time") {
        assign(unlockInterval(value), settings.unlockTime);
    } else if (name == "root_unlock_time") {
        const auto seconds = unlockInterval(value);
        assign(seconds, settings.rootUnlockTime);
        if (seconds) settings.evenDenyRoot = true;
    } else if (name == "even_deny_root") {
        settings.evenDenyRoot = true;
    } else if (name == "admin_group") {
        settings.adminGroup = value;
    }
}

void applyFile(std::string_view text, Settings& settings) {
    PAMText::forEachLine(text, [&](std::string_view line) {
        const auto nameEnd = std::min(line.find_first_of(" \t="), line.size());
        auto value = PAMText::trimmed(line.substr(nameEnd));
        if (value.starts_with('=')) value.remove_prefix(1);
        apply(line.substr(0, nameEnd), PAMText::trimmed(value), settings);
    });
}

Places Places::system() {
    return {OrvelAuth::pamFolders, "/etc/security/faillock.conf"};
}

std::vector<Settings> uses(const Places& places) {
    std::vector<Settings> result;
    for (const auto& use : PAMStack::read(places.pamFolders).authentication) {
        if (use.module == module) result.push_back(settingsOf(use, places));
    }
    return result;
}

Tally tally(std::span<const std::byte> file, const Settings& settings, bool admin,
            std::int64_t now) {
    std::vector<std::int64_t> times;
    for (; file.size() >= sizeof(Record); file = file.subspan(sizeof(Record))) {
        Record record{};
        std::memcpy(&record, file.data(), sizeof(record));
        // A damaged file may contain a time that no clock has shown.
        if ((record.status & valid) != 0 && std::in_range<std::int64_t>(record.time))
            times.push_back(static_cast<std::int64_t>(record.time));
    }
    if (times.empty()) return {};
    const auto within = [&](std::int64_t end) {
        return static_cast<int>(std::ranges::count_if(
            times, [&](std::int64_t time) { return end - time < settings.failInterval; }));
    };
    const auto latest = std::ranges::max(times);
    const auto unlock =
        admin ? settings.rootUnlockTime.value_or(settings.unlockTime) : settings.unlockTime;
    const int atLatest = within(latest);
    const bool locked =
        settings.deny > 0 && atLatest >= settings.deny && (unlock == 0 || now - latest <= unlock);
    return {.failures = locked ? atLatest : within(now),
            .isLocked = locked && settings.limit(admin).has_value()};
}

int sparedLimit(int deny) {
    // One password that may always be tried, and the two failures that a lock leaves unused.
    constexpr int least = 3;
    return std::max(least, deny <= least ? deny + 1 : deny);
}

std::optional<int> limit(const Account& account, const Places& places) {
    std::optional<int> strictest;
    for (const auto& settings : uses(places)) {
        const auto found = settings.limit(isAdmin(account, settings));
        if (found) strictest = std::min(*found, strictest.value_or(*found));
    }
    return strictest;
}

std::optional<Tally> tally(const Account& account, const Places& places, std::int64_t now) {
    // The module does not create a file for such a name either.
    if (account.userName.empty() || account.userName.starts_with('.') ||
        account.userName.contains('/')) {
        return {};
    }
    std::optional<Tally> worst;
    for (const auto& settings : uses(places)) {
        const auto file = OrvelCore::readFile(settings.folder / account.userName);
        if (!file) continue;
        const auto found =
            tally(std::as_bytes(std::span(*file)), settings, isAdmin(account, settings), now);
        if (!worst) worst = Tally();
        worst->failures = std::max(found.failures, worst->failures);
        worst->isLocked = found.isLocked || worst->isLocked;
    }
    return worst;
}

}  // namespace OrvelAuth::Faillock
