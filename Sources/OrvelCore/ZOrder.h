#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "OrvelCore/WindowInfo.h"

/// Questions to a list of windows, front-most first.
namespace OrvelCore::ZOrder {

/// The windows of layer 0 that are not of process `pid`.
std::vector<WindowInfo> normalWindows(const std::vector<WindowInfo>& windows, std::int64_t pid);
/// The next window of the same layer; other layers in between are passed over. Nothing when there
/// is none or `number` is not in the list.
std::optional<std::int64_t> windowDirectlyBehind(std::int64_t number,
                                                 const std::vector<WindowInfo>& windows);
std::optional<std::int64_t> windowDirectlyInFront(std::int64_t number,
                                                  const std::vector<WindowInfo>& windows);

}  // namespace OrvelCore::ZOrder
