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

/// The configuration and the tallies of pam_faillock, read in the same way as the module reads
/// them.
namespace OrvelAuth::Faillock {

struct Settings {
    std::filesystem::path folder = "/var/run/faillock";
    /// The number of failures that locks the account; 0 means never.
    int deny = 3;
    /// In seconds. Failures that are further apart are not counted together.
    std::int64_t failInterval = 900;
    /// In seconds. A locked account unlocks itself after this time; 0 means never.
    std::int64_t unlockTime = 600;
    bool evenDenyRoot = false;
    /// In seconds, for the superuser; `nullopt` means `unlockTime`.
    std::optional<std::int64_t> rootUnlockTime;
    /// The members of this group are treated like the superuser; empty for no group.
    std::string adminGroup;

    /// The number of failures that locks the account; `nullopt` if it is never locked. The
    /// superuser and the members of `adminGroup` are exempt unless `evenDenyRoot` is set.
    std::optional<int> limit(bool isAdmin) const {
        if (deny <= 0 || (isAdmin && !evenDenyRoot)) return {};
        return deny;
    }
    bool operator==(const Settings&) const = default;
};

/// Applies one option. Ignores an unknown option and an invalid value.
void apply(std::string_view name, std::string_view value, Settings& settings);
/// Applies all options of a configuration file.
void applyFile(std::string_view text, Settings& settings);

/// The locations of the files to read.
struct Places {
    std::vector<std::filesystem::path> pamFolders;
    std::filesystem::path configuration;

    static Places system();
};

/// The settings of each use of the module in the stack that checks passwords, in order. Empty if
/// the stack does not use the module.
std::vector<Settings> uses(const Places& places);

struct Tally {
    /// The failures within `failInterval` before the present; if they have locked the account,
    /// those that locked it.
    int failures = 0;
    /// Whether the module currently refuses every password.
    bool isLocked = false;

    bool operator==(const Tally&) const = default;
};
/// Evaluates a tally file at the time `now`, in seconds since 1970.
Tally tally(std::span<const std::byte> file, const Settings& settings, bool isAdmin,
            std::int64_t now);

/// The limit to report to a lock for an account that `deny` failures lock. The lock stops accepting
/// passwords two failures before the reported limit. With the module's default of three, it would
/// stop at the first wrong password. For three or less, the reported limit therefore allows one
/// wrong password: the lock then stops one failure before the account is locked, or at that failure
/// if `deny` is one.
int sparedLimit(int deny);

/// The account to examine. `isMember` tells whether the user belongs to a group.
struct Account {
    std::string userName;
    bool isRoot = false;
    std::function<bool(const std::string& group)> isMember = [](const std::string&) {
        return false;
    };
};
/// The smallest limit of all uses of the module; `nullopt` if no use locks the account.
std::optional<int> limit(const Account& account, const Places& places);
/// The maximum over all uses of the module; `nullopt` if there is no readable tally.
std::optional<Tally> tally(const Account& account, const Places& places, std::int64_t now);

}  // namespace OrvelAuth::Faillock
