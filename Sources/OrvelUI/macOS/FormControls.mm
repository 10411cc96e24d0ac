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

NSView* actions(const RowActions& content, const FormColors& colors) {
    OrvelActionView* const row = stack(false, 8);
    if (content.keycaps) [row addArrangedSubview:pulsingKeycaps(*content.keycaps, colors)];
    if (!content.text.empty())
        [row addArrangedSubview:label({.text = content.text, .role = TextRole::note}, colors)];
    if (!content.symbol.empty())
        [row addArrangedSubview:
                 [NSImageView
                     imageViewWithImage:[NSImage
                                            imageWithSystemSymbolName:Cocoa::string(content.symbol)
                                             accessibilityDescription:Cocoa::string(
                                                                          content.symbolName)]]];
    if (content.spins) {
        NSProgressIndicator* const spinner =
            [[NSProgressIndicator alloc] initWithFrame:NSMakeRect(0, 0, 16, 16)];
        spinner.style = NSProgressIndicatorStyleSpinning;
        spinner.controlSize = NSControlSizeSmall;
        [spinner startAnimation:nil];
        [row addArrangedSubview:spinner];
    }
    for (const auto& each : content.buttons) [row addArrangedSubview:button(each, row)];
    return row;
}

NSView* slider(const IntensitySlider& content, const FormColors& colors, OrvelActionView* keeper) {
    OrvelActionView* const row = stack(false, 8);
    NSSlider* const view = [NSSlider sliderWithValue:content.value
                                            minValue:content.lowest
                                            maxValue:content.highest
                                              target:nil
                                              action:nil];
    view.continuous = YES;
    view.accessibilityValueDescription =
        Cocoa::string(IntensitySlider::spokenValue(content.value, content.tick));
    [keeper connect:view
                 to:[set = content.set](id sender) {
                     set(static_cast<int>(std::lround(static_cast<NSSlider*>(sender).doubleValue)));
                 }];
    [row addArrangedSubview:label({.text = IntensitySlider::softer, .role = TextRole::note},
                                  colors)];
    [row addArrangedSubview:view];
    [row addArrangedSubview:label({.text = IntensitySlider::stronger, .role = TextRole::note},
                                  colors)];
    return row;
}

/// One of several options.
struct Choice {
    std::string title;
    std::string hint;
    bool chosen = false;
    Handler<> choose;
};

NSView* choices(const std::vector<Choice>& list, bool vertical, NSButtonType type,
                OrvelActionView* keeper) {
    OrvelActionView* const view = stack(vertical, 8);
    for (const auto& choice : list) {
        NSButton* const each = [NSButton buttonWithTitle:Cocoa::string(choice.title)
                                                  target:nil
                                                  action:nil];
        [each setButtonType:type];
        each.state = choice.chosen ? NSControlStateValueOn : NSControlStateValueOff;
        each.accessibilityHelp = Cocoa::string(choice.hint);
        [keeper connect:each to:[choose = choice.choose](id) { choose(); }];
        [view addArrangedSubview:each];
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
            return toggle;
        },
        [&](const IntensitySlider& content) -> NSView* { return slider(content, colors, keeper); },
        [&](const ChoiceStrip& content) -> NSView* {
            std::vector<Choice> list;
            for (const auto& chip : content.chips)
                list.push_back({chip.title, {}, chip.chosen, chip.choose});
            return choices(list, false, NSButtonTypePushOnPushOff, keeper);
        },
        [&](const StyleThumbnails& content) -> NSView* {
            return styleThumbnails(content, colors, keeper);
        },
        [&](const CornerPicker& content) -> NSView* {
            return cornerPicker(content, colors, keeper);
        },
        [](const TextField& content) -> NSView* {
            return [[OrvelTextLine alloc] initWithContent:content];
        },
        [&](const AppChoiceTiles& content) -> NSView* {
            std::vector<Choice> list;
            for (const auto& tile : content.tiles)
                list.push_back({tile.app.name, tile.hint, tile.chosen, tile.toggle});
            return choices(list, true, NSButtonTypeSwitch, keeper);
        },
        [](const MiniDesktop& content) -> NSView* { return miniDesktop(content); },
        [](const MenuBarDrawing& content) -> NSView* { return menuBarDrawing(content); });
    if (view && !name.empty() && !view.accessibilityLabel)
        view.accessibilityLabel = Cocoa::string(name);
    return view;
}

}  // namespace OrvelUI::CocoaControls
