// The values read from the account's lockout configuration, PAM stacks and tally stay within their
// limits for any input. Zero bytes separate the parts of the input.
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "OrvelAuth/Linux/Faillock.h"

#include "Support/TemporaryFolder.h"

namespace Faillock = OrvelAuth::Faillock;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

std::string_view takePart(std::string_view& input) {
    const auto end = input.find('\0');
    const auto part = input.substr(0, end);
    input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
    return part;
}

void check(const Faillock::Settings& settings) {
    constexpr std::int64_t week = 604800;
    require(settings.folder.is_absolute());
    require(settings.deny >= 0);
    for (const auto seconds :
         {settings.failInterval, settings.unlockTime, settings.rootUnlockTime.value_or(0)})
        require(seconds >= 0 && seconds <= week);
    for (const bool isAdmin : {false, true}) {
        const auto limit = settings.limit(isAdmin);
        require(!limit || *limit > 0);
    }
}

/// Failures expire as time passes, and never come back.
void checkTally(std::string_view tally, const Faillock::Settings& settings) {
    const auto bytes = std::as_bytes(std::span(tally));
    constexpr std::int64_t present = 1'800'000'000;
    for (const bool isAdmin : {false, true}) {
        int before = std::numeric_limits<int>::max();
        for (const auto now : {present, present + 60, present + 601, present + 604801}) {
            const int count = Faillock::tally(bytes, settings, isAdmin, now).failures;
            require(count >= 0 && static_cast<std::size_t>(count) <= tally.size() / 64);
            require(count <= before);
            before = count;
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryFolder folder;
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto configuration = takePart(input);
    writeText(folder / "faillock.conf", std::string(configuration));
    for (const char* const service : {"login", "common-auth"})
        writeText(folder / service, std::string(takePart(input)));

    Faillock::Settings settings;
    Faillock::applyFile(configuration, settings);
    check(settings);
    auto again = settings;
    Faillock::applyFile(configuration, again);
    require(again == settings);
    checkTally(input, settings);

    const Faillock::Places places{{folder.path()}, folder / "faillock.conf"};
    for (const auto& use : Faillock::uses(places)) {
        check(use);
        checkTally(input, use);
    }
    const auto limit = Faillock::limit({.userName = "jo"}, places);
    require(!limit || *limit > 0);
    return 0;
}
