#pragma once

#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>

#import <AppKit/AppKit.h>
#include <gmock/gmock.h>

#include "OrvelCore/Color.h"
#include "OrvelUI/Palette.h"

#include "Support/Scripted.h"

/// What a view draws in a window. Each is saved in the folder KARVO_PICTURES, if that is set.
class Snapshot {
  public:
    /// `name` is that of the file.
    Snapshot(NSView* view, NSSize size, const std::string& name) {
        const NSRect rect = NSMakeRect(0, 0, size.width, size.height);
        window_ = [[NSWindow alloc] initWithContentRect:rect
                                              styleMask:NSWindowStyleMaskBorderless
                                                backing:NSBackingStoreBuffered
                                                  defer:NO];
        window_.backgroundColor = NSColor.whiteColor;
        view.frame = rect;
        window_.contentView = view;
        [window_ orderFrontRegardless];
        int turns = 0;
        Scripted::runUntil([&] { return ++turns > 2; });
        [view layoutSubtreeIfNeeded];
        [window_ display];
        [view lockFocus];
        bitmap_ = [[NSBitmapImageRep alloc] initWithFocusedViewRect:rect];
        [view unlockFocus];
        const char* const folder = std::getenv("KARVO_PICTURES");
        if (!folder) return;
        const auto file = std::string(folder) + "/" + name + ".png";
        [[bitmap_ representationUsingType:NSBitmapImageFileTypePNG
                               properties:@{}] writeToFile:@(file.c_str()) atomically:YES];
    }
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;
    ~Snapshot() { [window_ orderOut:nil]; }

    /// From the top left.
    OrvelCore::Color at(double x, double y) const {
        NSColor* const color = [[bitmap_ colorAtX:static_cast<NSInteger>(x)
                                                y:static_cast<NSInteger>(y)]
            colorUsingColorSpaceName:NSDeviceRGBColorSpace];
        return {color.redComponent, color.greenComponent, color.blueComponent, 1};
    }
    /// The number of pixels in a rectangle that nearly have this colour.
    int count(NSRect rect, OrvelUI::Palette::Value value) const {
        const auto wanted = OrvelUI::Palette::color(value);
        int found = 0;
        for (double y = rect.origin.y; y < NSMaxY(rect); ++y)
            for (double x = rect.origin.x; x < NSMaxX(rect); ++x) {
                const auto color = at(x, y);
                found += std::abs(color.red - wanted.red) + std::abs(color.green - wanted.green) +
                             std::abs(color.blue - wanted.blue) <
                         0.1;
            }
        return found;
    }
    bool operator==(const Snapshot& other) const {
        return [[bitmap_ TIFFRepresentation] isEqual:[other.bitmap_ TIFFRepresentation]];
    }

  private:
    NSWindow* window_;
    NSBitmapImageRep* bitmap_;
};
