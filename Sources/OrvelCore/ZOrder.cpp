#include "OrvelCore/ZOrder.h"

#include <algorithm>
#include <iterator>

namespace OrvelCore::ZOrder {

namespace {

// The next window on the same layer as `window`, in the direction of the iterators; `nullopt` if
// there is none.
template <class Iterator>
std::optional<WindowID> nextOnLayer(Iterator window, Iterator end) {
    const auto next = std::find_if(std::next(window), end, [&](const WindowInfo& other) {
        return other.layer == window->layer;
    });
    if (next == end) return std::nullopt;
    return next->number;
}

}  // namespace

std::vector<WindowInfo> normalWindows(const std::vector<WindowInfo>& windows, std::int64_t pid) {
    std::vector<WindowInfo> normal;
    std::copy_if(
        windows.begin(), windows.end(), std::back_inserter(normal),
        [&](const WindowInfo& window) { return window.layer == 0 && window.ownerPID != pid; });
    return normal;
}

std::optional<WindowID> windowDirectlyBehind(WindowID number,
                                             const std::vector<WindowInfo>& windows) {
    const auto found = std::ranges::find(windows, number, &WindowInfo::number);
    if (found == windows.end()) return std::nullopt;
    return nextOnLayer(found, windows.end());
}

std::optional<WindowID> windowDirectlyInFront(WindowID number,
                                              const std::vector<WindowInfo>& windows) {
    const auto found = std::ranges::find(windows, number, &WindowInfo::number);
    if (found == windows.end()) return std::nullopt;
    return nextOnLayer(std::make_reverse_iterator(std::next(found)), windows.rend());
}

}  // namespace OrvelCore::ZOrder
