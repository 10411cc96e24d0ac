#include "OrvelSystem/X11/WindowIcon.h"

#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

namespace {

constexpr std::uint32_t iconSize = 64;  // pixels
/// Words of an icon that a program hangs on its window: a few sizes up to 256.
constexpr std::uint32_t mostIconWords = 1 << 18;

}  // namespace

std::shared_ptr<const Picture> windowIcon(xcb_window_t window) {
    const auto words = X11::shared().property32(window, "_NET_WM_ICON", mostIconWords);
    // Each is width, height and pixels. The smallest that is enough, or the largest.
    std::size_t best = words.size();
    for (std::size_t at = 0; at + 2 < words.size();) {
        const std::size_t pixels = std::size_t{words[at]} * words[at + 1];
        if (words[at] == 0 || pixels == 0 || pixels > words.size() - at - 2) break;
        const bool isBetter =
            best == words.size() ||
            (words[best] < iconSize ? words[at] > words[best]
                                    : words[at] >= iconSize && words[at] < words[best]);
        if (isBetter) best = at;
        at += pixels + 2;
    }
    if (best == words.size()) return nullptr;
    auto picture = std::make_shared<Picture>();
    picture->width = static_cast<int>(words[best]);
    picture->height = static_cast<int>(words[best + 1]);
    const auto* const first = words.data() + best + 2;
    picture->pixels.assign(first, first + std::size_t{words[best]} * words[best + 1]);
    return picture;
}

}  // namespace OrvelSystem
