#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "OrvelSystem/PropertyValue.h"

namespace OrvelAuth {

/// Reads a property list, in XML or binary form. Nothing when it is malformed.
std::optional<OrvelSystem::PropertyValue> parsePropertyList(std::span<const std::byte> data);

}  // namespace OrvelAuth
