#include "OrvelSystem/macOS/Displays.h"

#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelSystem {

std::vector<Display> Display::all() {
    std::vector<Display> displays;
    for (NSScreen* screen in NSScreen.screens) {
        NSNumber* const number = screen.deviceDescription[@"NSScreenNumber"];
        const bool isNumber = [number isKindOfClass:[NSNumber class]];
        displays.push_back({.id = isNumber ? number.unsignedIntValue : 0U,
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
