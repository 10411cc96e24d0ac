#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "OrvelSystem/PropertyValue.h"

namespace OrvelAuth {

/// Returns the number, boolean or text under a key in the dictionary of a property list, which may
/// have any format. `nullopt` if the entry is missing or has another type, or if the list is
/// malformed.
std::optional<OrvelSystem::PropertyValue> propertyListEntry(std::span<const std::byte> data,
                                                            const char* key);

}  // namespace OrvelAuth
