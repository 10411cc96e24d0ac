#include "OrvelSystem/macOS/Displays.h"

#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelSystem {

std::vector<Display> Display::all() {
    std::vector<Display> displays;
    for (NSScreen* screen in NSScreen.screens) {
        NSNumber* const number = screen.deviceDescription[@"NSScreenNumber"];
        const bool isNumber = [number isKindOfClass:[NSNumber class]];
        // The place in the list stands for a missing number, because displays with the same number
        // would share one cover.
        const auto place = static_cast<std::uint32_t>(displays.size());
        displays.push_back({.id = isNumber ? number.unsignedIntValue : UINT32_MAX - place,
                            .frame = Cocoa::rect(screen.frame),
                            .screen = screen});
    }
    return displays;
}

std::vector<OrvelCore::Rect> Display::frames() {
    std::vector<OrvelCore::Rect> frames;
    for (const auto& display : all()) frames.push_back(display.frame);
    return frames;
}

NSScreen* Display::screenAt(OrvelCore::Point point) {
    for (const auto& display : all())
        if (display.frame.contains(point)) return display.screen;
    return nil;
}

}  // namespace OrvelSystem
