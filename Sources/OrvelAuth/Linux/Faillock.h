#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What pam_faillock is set up to do, read the way that it reads it.
namespace OrvelAuth::Faillock {

struct Settings {
    std::filesystem::path folder = "/var/run/faillock";
    /// Failures that lock the account; 0 never locks.
    int deny = 3;
    /// Seconds. Failures further apart are forgotten.
    std::int64_t failInterval = 900;
    /// Seconds after which a locked account opens again; 0 never opens it.
    std::int64_t unlockTime = 600;
    bool evenDenyRoot = false;
    /// Seconds, for the superuser; nothing means `unlockTime`.
    std::optional<std::int64_t> rootUnlockTime;
    /// Whose members are treated like the superuser; empty for none.
    std::string adminGroup;

    /// The superuser and the members of `adminGroup` are spared unless told otherwise.
    std::optional<int> limit(bool isAdmin) const {
        if (deny <= 0 || (isAdmin && !evenDenyRoot)) return {};
        return deny;
    }
    bool operator==(const Settings&) const = default;
};

/// Takes one option over; an unknown one or a value that is no number changes nothing.
void apply(std::string_view name, std::string_view value, Settings& settings);
/// Takes every option of a configuration file over.
void applyFile(std::string_view text, Settings& settings);

/// Where the system keeps what this reads.
struct Places {
    std::vector<std::filesystem::path> pamFolders;
    std::filesystem::path configuration;

    static Places system();
};

/// The settings of every use of the module in the stack that checks passwords, in the order of
/// the stack. Empty when the stack does not use it.
std::vector<Settings> uses(const Places& places);

struct Tally {
    /// Those that are close enough to the present, or those that keep the account locked.
    int failures = 0;
    /// Whether the module refuses every password at present.
    bool isLocked = false;

    bool operator==(const Tally&) const = default;
};
/// What a tally file says at `now`, in seconds since 1970.
Tally tally(std::span<const std::byte> file, const Settings& settings, bool isAdmin,
            std::int64_t now);

/// The limit to report to a lock, which stops taking passwords two failures before it, for an
/// account that `deny` failures lock. With the module's own default of three, the lock would stop
/// at the first wrong password. The limit reported for three or less leaves room for one, and the
/// lock then stops one failure before the account is locked, or at it where `deny` is one.
int sparedLimit(int deny);

/// As in `AccountLockoutPolicy`. `isMember` tells whether the user belongs to a group.
struct Account {
    std::string userName;
    bool isRoot = false;
    std::function<bool(const std::string& group)> isMember = [](const std::string&) {
        return false;
    };
};
std::optional<int> limit(const Account& account, const Places& places);
/// The strictest of all uses of the module; nothing when no tally is kept or can be read.
std::optional<Tally> tally(const Account& account, const Places& places, std::int64_t now);

}  // namespace OrvelAuth::Faillock
