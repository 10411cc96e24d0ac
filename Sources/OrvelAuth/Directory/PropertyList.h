#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "OrvelSystem/PropertyValue.h"

namespace OrvelAuth {

/// What the dictionary of a property list, in any of its forms, has under a key: a number, a truth
/// value or a text. Nothing for what is of another kind or missing, and when the list is malformed.
std::optional<OrvelSystem::PropertyValue> propertyListEntry(std::span<const std::byte> data,
                                                            const char* key);

}  // namespace OrvelAuth
