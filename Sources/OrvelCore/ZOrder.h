#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "OrvelCore/WindowInfo.h"

/// Queries on a list of windows, frontmost first.
namespace OrvelCore::ZOrder {

/// The windows of layer 0 that do not belong to process `pid`.
std::vector<WindowInfo> normalWindows(const std::vector<WindowInfo>& windows, std::int64_t pid);
/// The next window on the same layer; windows on other layers are skipped. `nullopt` if there is
/// none, or if `number` is not in the list.
std::optional<WindowID> windowDirectlyBehind(WindowID number,
                                             const std::vector<WindowInfo>& windows);
std::optional<WindowID> windowDirectlyInFront(WindowID number,
                                              const std::vector<WindowInfo>& windows);

}  // namespace OrvelCore::ZOrder
