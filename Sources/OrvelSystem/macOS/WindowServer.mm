#include "OrvelSystem/WindowServer.h"

#import <AppKit/AppKit.h>
#import <CoreGraphics/CoreGraphics.h>
#include <dlfcn.h>

#include "OrvelSystem/StatusItemVisibility.h"
#include "OrvelSystem/WindowDescription.h"
#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelSystem {

namespace {

constexpr CGWindowListOption listed =
    kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements;

/// Empty if `taken` is not an array. Entries that are not dictionaries become empty dictionaries.
std::vector<PropertyValue::Dictionary> descriptions(CFArrayRef taken) {
    id list = (__bridge_transfer id)taken;
    std::vector<PropertyValue::Dictionary> found;
    if (![list isKindOfClass:[NSArray class]]) return found;
    for (id entry in static_cast<NSArray*>(list)) found.push_back(Cocoa::dictionary(entry));
    return found;
}

// This function is not in the public headers. It avoids the creation of a dictionary for each
// window.
using CreateList = CFArrayRef (*)(CGWindowListOption, CGWindowID);
CreateList createList() {
    static const auto found =
        reinterpret_cast<CreateList>(dlsym(RTLD_DEFAULT, "CGWindowListCreate"));
    return found;
}

}  // namespace

std::vector<OrvelCore::WindowInfo> WindowServer::onScreenWindows() {
    @autoreleasepool {
        std::vector<OrvelCore::WindowInfo> windows;
        for (const auto& entry : descriptions(CGWindowListCopyWindowInfo(listed, kCGNullWindowID)))
            if (const auto info = WindowDescription::windowInfo(entry)) windows.push_back(*info);
        return windows;
    }
}

std::vector<OrvelCore::WindowID> WindowServer::onScreenWindowNumbers() {
    std::vector<OrvelCore::WindowID> numbers;
    const auto create = createList();
    if (const CFArrayRef list = create ? create(listed, kCGNullWindowID) : nullptr) {
        for (CFIndex i = 0; i < CFArrayGetCount(list); ++i)
            numbers.push_back(reinterpret_cast<std::intptr_t>(CFArrayGetValueAtIndex(list, i)));
        CFRelease(list);
        return numbers;
    }
    for (const auto& window : onScreenWindows()) numbers.push_back(window.number);
    return numbers;
}

std::map<OrvelCore::WindowID, OrvelCore::Rect> WindowServer::bounds(
    const std::vector<OrvelCore::WindowID>& numbers) {
    std::map<OrvelCore::WindowID, OrvelCore::Rect> found;
    if (numbers.empty()) return found;
    // The array stores the window numbers directly instead of pointers.
    std::vector<const void*> values;
    for (const auto window : numbers)
        values.push_back(reinterpret_cast<const void*>(static_cast<std::intptr_t>(window)));
    const CFArrayRef asked = CFArrayCreate(kCFAllocatorDefault, values.data(),
                                           static_cast<CFIndex>(values.size()), nullptr);
    if (!asked) return found;
    @autoreleasepool {
        for (const auto& entry : descriptions(CGWindowListCreateDescriptionFromArray(asked))) {
            if (!WindowDescription::isOnScreen(entry).value_or(false)) continue;
            if (const auto info = WindowDescription::windowInfo(entry))
                found[info->number] = info->bounds;
        }
    }
    CFRelease(asked);
    return found;
}

std::vector<OrvelCore::Rect> WindowServer::displayBounds() {
    std::uint32_t count = 0;
    if (CGGetOnlineDisplayList(0, nullptr, &count) != kCGErrorSuccess || count == 0) return {};
    std::vector<CGDirectDisplayID> displays(count);
    if (CGGetOnlineDisplayList(count, displays.data(), &count) != kCGErrorSuccess) return {};
    displays.resize(count);
    std::vector<OrvelCore::Rect> bounds;
    for (const CGDirectDisplayID display : displays) {
        const CGRect rect = CGDisplayBounds(display);
        bounds.push_back({rect.origin.x, rect.origin.y, rect.size.width, rect.size.height});
    }
    return bounds;
}

std::optional<bool> StatusItemVisibility::isShown(OrvelCore::WindowID windowNumber) {
    @autoreleasepool {
        const auto found = descriptions(CGWindowListCopyWindowInfo(
            kCGWindowListOptionIncludingWindow, static_cast<CGWindowID>(windowNumber)));
        if (found.empty() || found.front().empty()) return isShown(std::nullopt);
        return isShown(std::optional(found.front()));
    }
}

}  // namespace OrvelSystem
