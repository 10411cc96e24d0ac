#include "OrvelAuth/AccountLockoutPolicy.h"

#include <algorithm>
#include <ctime>
#include <vector>

#include <grp.h>
#include <pwd.h>

#include "OrvelAuth/Linux/Faillock.h"

namespace OrvelAuth {

namespace {

bool isMember(const std::string& userName, gid_t primary, const std::string& group) {
    std::vector<char> buffer(65536);
    struct group entry {};
    struct group* found = nullptr;
    getgrnam_r(group.c_str(), &entry, buffer.data(), buffer.size(), &found);
    if (!found) return false;
    const gid_t wanted = found->gr_gid;
    int count = 256;
    std::vector<gid_t> groups(static_cast<std::size_t>(count));
    if (getgrouplist(userName.c_str(), primary, groups.data(), &count) < 0) {
        groups.resize(static_cast<std::size_t>(count));
        if (getgrouplist(userName.c_str(), primary, groups.data(), &count) < 0) return false;
    }
    groups.resize(static_cast<std::size_t>(count));
    return std::ranges::find(groups, wanted) != groups.end();
}

Faillock::Account account(const std::string& userName) {
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    getpwnam_r(userName.c_str(), &entry, buffer.data(), buffer.size(), &found);
    if (!found) return {.userName = userName};
    return {.userName = userName,
            .isRoot = found->pw_uid == 0,
            .isMember = [userName, primary = found->pw_gid](const std::string& group) {
                return isMember(userName, primary, group);
            }};
}

std::optional<Faillock::Tally> tally(const std::string& userName) {
    return Faillock::tally(account(userName), Faillock::Places::system(), std::time(nullptr));
}

}  // namespace

std::optional<int> AccountLockoutPolicy::currentLimit(const std::string& userName) {
    return Faillock::limit(account(userName), Faillock::Places::system())
        .transform(Faillock::sparedLimit);
}

std::optional<int> AccountLockoutPolicy::currentFailures(const std::string& userName) {
    const auto found = tally(userName);
    return found ? std::optional(found->failures) : std::nullopt;
}

bool AccountLockoutPolicy::isLocked(const std::string& userName) {
    const auto found = tally(userName);
    return found && found->isLocked;
}

}  // namespace OrvelAuth
