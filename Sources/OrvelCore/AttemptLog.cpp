#include "OrvelCore/AttemptLog.h"

#include <algorithm>
#include <utility>

#include <nlohmann/json.hpp>

#include "OrvelCore/AppFolders.h"
#include "OrvelCore/AtomicFile.h"

namespace OrvelCore {

using nlohmann::json;

AttemptLog::AttemptLog(std::vector<Date> attempts) : attempts_(std::move(attempts)) {
    std::sort(attempts_.begin(), attempts_.end());
}

void AttemptLog::record(Date date) {
    attempts_.insert(std::upper_bound(attempts_.begin(), attempts_.end(), date), date);
}

void AttemptLog::prune(Date now) {
    std::erase_if(attempts_, [now](Date date) { return secondsBetween(date, now) > keepFor; });
}

std::vector<Date> AttemptLog::since(Date date) const {
    return {std::lower_bound(attempts_.begin(), attempts_.end(), date), attempts_.end()};
}

std::filesystem::path AttemptLog::standardFile() {
    return dataFolder() / "attempts.json";
}

AttemptLog AttemptLog::load(const std::filesystem::path& file) {
    const auto bytes = readFile(file);
    if (!bytes) return {};
    const json array = json::parse(*bytes, nullptr, false);
    if (!array.is_array()) return {};
    std::vector<Date> dates;
    for (const json& seconds : array) {
        if (!seconds.is_number()) return {};
        dates.push_back(dateFromSecondsSince1970(seconds.get<double>()));
    }
    return AttemptLog(std::move(dates));
}

std::expected<void, std::error_code> AttemptLog::save(const std::filesystem::path& file) const {
    json array = json::array();
    for (const Date date : attempts_) array.push_back(secondsSince1970(date));
    return writeAtomically(file, array.dump());
}

}  // namespace OrvelCore
