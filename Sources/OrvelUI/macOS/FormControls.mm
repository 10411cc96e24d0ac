#include <algorithm>
#include <cmath>
#include <utility>

#include "OrvelCore/Match.h"
#include "OrvelSystem/macOS/Cocoa.h"
#import "OrvelUI/macOS/Controls.h"
#import "OrvelUI/macOS/FormPictures.h"
#import "OrvelUI/macOS/FormViews.h"

namespace Cocoa = OrvelSystem::Cocoa;

namespace OrvelUI::CocoaControls {

namespace {

// In points.
constexpr double sliderWidth = 200;
constexpr double sliderHeight = 22;
constexpr double tileIcon = 20;
constexpr double lineWidth = 200;

NSView* actions(const RowActions& content, const FormColors& colors) {
    OrvelActionView* const row = stack(false, 8);
    if (content.keycaps) [row add:pulsingKeycaps(*content.keycaps, colors)];
    if (!content.text.empty())
        [row add:label({.text = content.text, .role = TextRole::note}, colors)];
    if (!content.symbol.empty()) {
        NSImage* const image =
            [NSImage imageWithSystemSymbolName:Cocoa::string(content.symbol)
                      accessibilityDescription:Cocoa::string(content.symbolName)];
        NSImageView* const view = [[NSImageView alloc]
            initWithFrame:NSMakeRect(0, 0, image.size.width, image.size.height)];
        view.image = image;
        [row add:view];
    }
    if (content.spins) {
        NSProgressIndicator* const spinner =
            [[NSProgressIndicator alloc] initWithFrame:NSMakeRect(0, 0, 16, 16)];
        spinner.style = NSProgressIndicatorStyleSpinning;
        spinner.controlSize = NSControlSizeSmall;
        [spinner startAnimation:nil];
        [row add:spinner];
    }
    for (const auto& each : content.buttons) [row add:button(each, row)];
    return row;
}

NSView* slider(const IntensitySlider& content, const FormColors& colors, OrvelActionView* keeper) {
    OrvelActionView* const row = stack(false, 8);
    NSSlider* const view =
        [[NSSlider alloc] initWithFrame:NSMakeRect(0, 0, sliderWidth, sliderHeight)];
    view.minValue = content.lowest;
    view.maxValue = content.highest;
    view.doubleValue = content.value;
    view.continuous = YES;
    view.accessibilityValueDescription =
        Cocoa::string(IntensitySlider::spokenValue(content.value, content.tick));
    [keeper connect:view
                 to:[set = content.set](id sender) {
                     set(static_cast<int>(std::lround(static_cast<NSSlider*>(sender).doubleValue)));
                 }];
    [row add:label({.text = IntensitySlider::softer, .role = TextRole::note}, colors)];
    [row add:view];
    [row add:label({.text = IntensitySlider::stronger, .role = TextRole::note}, colors)];
    return row;
}

/// One of several options.
struct Choice {
    std::string title;
    std::string hint;
    bool chosen = false;
    Handler<> choose;
    /// Null for none.
    std::shared_ptr<const OrvelSystem::Picture> picture = nullptr;
};

NSView* choices(const std::vector<Choice>& list, bool vertical, OrvelActionView* keeper) {
    OrvelActionView* const view = stack(vertical, 8);
    for (const auto& choice : list) {
        NSButton* const each = pushButton(choice.title);
        [each setButtonType:NSButtonTypePushOnPushOff];
        if (choice.picture) {
            each.image = Cocoa::image(*choice.picture);
            each.image.size = NSMakeSize(tileIcon, tileIcon);
            each.imagePosition = NSImageLeading;
        }
        each.state = choice.chosen ? NSControlStateValueOn : NSControlStateValueOff;
        each.accessibilityHelp = Cocoa::string(choice.hint);
        [keeper connect:each to:[choose = choice.choose](id) { choose(); }];
        [each sizeToFit];
        [view add:each];
    }
    return view;
}

}  // namespace

NSView* control(const FormControl& control, const std::string& name, const FormColors& colors,
                OrvelActionView* keeper) {
    NSView* const view = OrvelCore::match(
        control, [](const NoControl&) -> NSView* { return nil; },
        [&](const RowActions& content) -> NSView* { return actions(content, colors); },
        [&](const SettingsSwitch& content) -> NSView* {
            NSSwitch* const toggle = [[NSSwitch alloc] initWithFrame:NSZeroRect];
            toggle.state = content.on ? NSControlStateValueOn : NSControlStateValueOff;
            toggle.accessibilityHelp = Cocoa::string(content.hint);
            [keeper connect:toggle
                         to:[set = content.set](id sender) {
                             set(static_cast<NSSwitch*>(sender).state == NSControlStateValueOn);
                         }];
            [toggle sizeToFit];
            // A switch has no cell to measure.
            const NSSize own = toggle.intrinsicContentSize;
            if (own.width > 0) [toggle setFrameSize:own];
            return toggle;
        },
        [&](const IntensitySlider& content) -> NSView* { return slider(content, colors, keeper); },
        [&](const ChoiceStrip& content) -> NSView* {
            std::vector<Choice> list;
            for (const auto& chip : content.chips)
                list.push_back({chip.title, {}, chip.chosen, chip.choose});
            return choices(list, false, keeper);
        },
        [&](const StyleThumbnails& content) -> NSView* {
            return styleThumbnails(content, colors, keeper);
        },
        [&](const CornerPicker& content) -> NSView* {
            return cornerPicker(content, colors, keeper);
        },
        [](const TextField& content) -> NSView* {
            OrvelTextLine* const line = [[OrvelTextLine alloc] initWithContent:content];
            [line sizeToFit];
            line.frame = NSMakeRect(0, 0, lineWidth, line.frame.size.height);
            return line;
        },
        [&](const AppChoiceTiles& content) -> NSView* {
            std::vector<Choice> list;
            for (const auto& tile : content.tiles)
                list.push_back({tile.app.name, tile.hint, tile.chosen, tile.toggle, tile.app.icon});
            return choices(list, true, keeper);
        },
        [](const MiniDesktop& content) -> NSView* { return miniDesktop(content); },
        [](const MenuBarDrawing& content) -> NSView* { return menuBarDrawing(content); });
    if (view && !name.empty() && !view.accessibilityLabel)
        view.accessibilityLabel = Cocoa::string(name);
    return view;
}

}  // namespace OrvelUI::CocoaControls
