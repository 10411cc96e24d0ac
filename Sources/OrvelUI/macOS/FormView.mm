#import "OrvelUI/macOS/FormView.h"

#include <map>
#include <string>
#include <utility>

#include "OrvelSystem/macOS/Appearance.h"
#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/macOS/CocoaDrawing.h"
#import "OrvelUI/macOS/Controls.h"

namespace Cocoa = OrvelSystem::Cocoa;
namespace Controls = OrvelUI::CocoaControls;
namespace Drawing = OrvelUI::CocoaDrawing;
using OrvelUI::FormColors;
using OrvelUI::FormContent;
using OrvelUI::FormRow;
using OrvelUI::FormSection;
using OrvelUI::SettingsNote;
using OrvelUI::TextRole;

namespace {

// In points.
constexpr double margin = 24;
constexpr double cardPadding = 14;

struct KnownRow {
    FormRow content;
    NSView* view = nil;
};

NSView* noteView(const SettingsNote& note, const FormColors& colors) {
    return Controls::label({.text = note.warning ? "⚠︎ " + note.text : note.text,
                            .role = note.warning ? TextRole::warning : TextRole::note},
                           colors);
}

NSView* rowView(const FormRow& row, const FormColors& colors) {
    OrvelActionView* const view = Controls::stack(false, 12);
    if (row.icon) {
        NSImage* const image = *row.icon ? Cocoa::image(**row.icon)
                                         : [NSImage imageWithSystemSymbolName:@"app.fill"
                                                     accessibilityDescription:nil];
        image.size = NSMakeSize(24, 24);
        [view addArrangedSubview:[NSImageView imageViewWithImage:image]];
    }
    OrvelActionView* const texts = Controls::stack(true, 2);
    // The texts fill the space that the control leaves, so that controls are at the end of their
    // rows.
    [texts setContentHuggingPriority:1 forOrientation:NSLayoutConstraintOrientationHorizontal];
    if (!row.label.text.empty()) [texts addArrangedSubview:Controls::label(row.label, colors)];
    if (row.note) [texts addArrangedSubview:noteView(*row.note, colors)];
    [view addArrangedSubview:texts];
    if (NSView* const control = Controls::control(row.control, row.label.text, colors, view))
        [view addArrangedSubview:control];
    return view;
}

}  // namespace

@interface OrvelFlippedStack : NSStackView
@end

@implementation OrvelFlippedStack
- (BOOL)isFlipped {
    return YES;
}
@end

@implementation OrvelFormView {
    OrvelFlippedStack* _column;
    FormContent _content;
    FormColors _colors;
    std::map<std::string, KnownRow> _rows;
}

- (instancetype)initWithFrame:(NSRect)frame {
    if ((self = [super initWithFrame:frame])) {
        self.drawsBackground = NO;
        self.hasVerticalScroller = YES;
        self.autohidesScrollers = YES;
        _column = [[OrvelFlippedStack alloc] initWithFrame:NSZeroRect];
        _column.orientation = NSUserInterfaceLayoutOrientationVertical;
        _column.alignment = NSLayoutAttributeLeading;
        _column.spacing = 16;
        _column.edgeInsets = NSEdgeInsets{margin, margin, margin, margin};
        _column.translatesAutoresizingMaskIntoConstraints = NO;
        self.documentView = _column;
        NSView* const visible = self.contentView;
        [_column.leadingAnchor constraintEqualToAnchor:visible.leadingAnchor].active = YES;
        [_column.topAnchor constraintEqualToAnchor:visible.topAnchor].active = YES;
        [_column.widthAnchor constraintEqualToAnchor:visible.widthAnchor].active = YES;
    }
    return self;
}

- (void)setContent:(const FormContent&)content colors:(const FormColors&)colors {
    if (content == _content && colors == _colors) return;
    if (colors != _colors) _rows.clear();
    _content = content;
    _colors = colors;
    const auto before = std::exchange(_rows, {});
    NSMutableArray* const views = [NSMutableArray array];
    if (!content.title.empty())
        [views addObject:Controls::label({.text = content.title, .role = TextRole::paneTitle},
                                         colors)];
    for (const auto& section : content.sections)
        [views addObject:[self sectionView:section known:before]];
    for (NSView* old in _column.arrangedSubviews.copy) [old removeFromSuperview];
    for (NSView* view in views) {
        [_column addArrangedSubview:view];
        [view.widthAnchor constraintEqualToAnchor:_column.widthAnchor constant:-2 * margin].active =
            YES;
    }
}

- (BOOL)isEditing:(NSView*)view {
    NSResponder* const first = self.window.firstResponder;
    return
        [first isKindOfClass:[NSView class]] && [static_cast<NSView*>(first) isDescendantOf:view];
}

- (NSView*)sectionView:(const FormSection&)section
                 known:(const std::map<std::string, KnownRow>&)before {
    OrvelActionView* const column = Controls::stack(true, 10);
    if (!section.title.empty())
        [column addArrangedSubview:Controls::label(
                                       {.text = section.title, .role = TextRole::sectionTitle},
                                       _colors)];
    if (!section.intro.empty())
        [column addArrangedSubview:Controls::label({.text = section.intro, .role = TextRole::note},
                                                   _colors)];
    for (const auto& row : section.rows) {
        const auto known = before.find(row.id);
        const bool keeps =
            known != before.end() && (known->second.content == row ||
                                      (std::holds_alternative<OrvelUI::TextField>(row.control) &&
                                       [self isEditing:known->second.view]));
        NSView* const view = keeps ? known->second.view : rowView(row, _colors);
        _rows[row.id] = {row, view};
        [column addArrangedSubview:view];
        if (section.style == FormSection::Style::card)
            [view.widthAnchor constraintEqualToAnchor:column.widthAnchor constant:-2 * cardPadding]
                .active = YES;
    }
    for (const auto& note : section.notes) [column addArrangedSubview:noteView(note, _colors)];
    if (section.style == FormSection::Style::card) {
        column.edgeInsets = NSEdgeInsets{12, cardPadding, 12, cardPadding};
        column.wantsLayer = YES;
        column.layer.backgroundColor = Drawing::color({_colors.surface()}).CGColor;
        column.layer.borderColor = Drawing::color(_colors.hairline()).CGColor;
        column.layer.borderWidth = 1;
        column.layer.cornerRadius = 10;
    } else {
        column.alignment = NSLayoutAttributeCenterX;
    }
    return column;
}

@end

namespace OrvelUI {

SettingsTheme currentTheme() {
    namespace Appearance = OrvelSystem::Appearance;
    return {
        .scheme = Appearance::isDark() ? SettingsTheme::Scheme::dark : SettingsTheme::Scheme::light,
        .contrast = Appearance::increasesContrast() ? SettingsTheme::Contrast::increased
                                                    : SettingsTheme::Contrast::standard};
}

}  // namespace OrvelUI
