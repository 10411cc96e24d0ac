#include "OrvelCore/LockMarker.h"

#include <cmath>
#include <limits>

#include <nlohmann/json.hpp>

#include "OrvelCore/AppFolders.h"
#include "OrvelCore/AtomicFile.h"

namespace OrvelCore {

using nlohmann::json;

std::string LockMarker::encoded() const {
    json object = {
        {"lockedAt", iso8601(lockedAt)}, {"bootSession", bootSession}, {"failures", failures}};
    if (isHandedOff) object["handedOff"] = true;
    return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::optional<LockMarker> LockMarker::decode(std::string_view text) {
    const json object = json::parse(text, nullptr, false);
    if (!object.is_object()) return std::nullopt;
    const auto lockedAt = object.find("lockedAt");
    const auto bootSession = object.find("bootSession");
    const auto failures = object.find("failures");
    if (lockedAt == object.end() || !lockedAt->is_string() || bootSession == object.end() ||
        !bootSession->is_string() || failures == object.end() || !failures->is_number())
        return std::nullopt;
    const auto date = dateFromISO8601(lockedAt->get_ref<const std::string&>());
    // A double represents every JSON integer accurately enough to tell whether it fits into an int.
    const auto count = failures->get<double>();
    if (!date || count < std::numeric_limits<int>::min() ||
        count > std::numeric_limits<int>::max() || count != std::trunc(count))
        return std::nullopt;
    return LockMarker{*date, *bootSession, static_cast<int>(count),
                      object.value("handedOff", json()) == true};
}

LockMarkerStore LockMarkerStore::standard() {
    return LockMarkerStore(dataFolder() / "state.json");
}

std::expected<void, std::error_code> LockMarkerStore::write(const LockMarker& marker) {
    return writeAtomically(file_, marker.encoded());
}

void LockMarkerStore::clear() {
    std::error_code ignored;
    std::filesystem::remove(file_, ignored);
}

std::optional<LockMarker> LockMarkerStore::activeMarker(std::string_view bootSession) const {
    auto marker = read();
    if (marker && marker->bootSession != bootSession) return std::nullopt;
    return marker;
}

std::optional<LockMarker> LockMarkerStore::read() const {
    const auto bytes = readFile(file_);
    return bytes ? LockMarker::decode(*bytes) : std::nullopt;
}

}  // namespace OrvelCore
