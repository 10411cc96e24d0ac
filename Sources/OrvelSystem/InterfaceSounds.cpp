#include "OrvelSystem/InterfaceSounds.h"

#include <cstdint>

namespace OrvelSystem {

bool InterfaceSounds::enabled(const std::optional<PropertyValue::Dictionary>& globalDomain) {
    if (!globalDomain) return true;
    const auto entry = globalDomain->find(key);
    if (entry == globalDomain->end()) return true;
    const auto* const number = entry->second.get<std::int64_t>();
    return number == nullptr || *number != 0;
}

}  // namespace OrvelSystem
