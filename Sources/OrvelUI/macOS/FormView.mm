#import "OrvelUI/macOS/FormView.h"

#include <map>
#include <string>
#include <utility>

#include "OrvelSystem/macOS/Appearance.h"
#include "OrvelSystem/macOS/Cocoa.h"
#import "OrvelUI/macOS/Controls.h"

namespace Cocoa = OrvelSystem::Cocoa;
namespace Controls = OrvelUI::CocoaControls;
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
constexpr double iconSide = 24;

struct KnownRow {
    FormRow content;
    NSView* view = nil;
};

NSView* noteView(const SettingsNote& note, const FormColors& colors, NSTextAlignment alignment) {
    return Controls::label({.text = note.warning ? "⚠︎ " + note.text : note.text,
                            .role = note.warning ? TextRole::warning : TextRole::note},
                           colors, alignment);
}

NSView* rowView(const FormRow& row, const FormColors& colors, NSTextAlignment alignment) {
    OrvelActionView* const view = Controls::stack(false, 12);
    if (row.icon) {
        NSImage* const image = *row.icon ? Cocoa::image(**row.icon)
                                         : [NSImage imageWithSystemSymbolName:@"app.fill"
                                                     accessibilityDescription:nil];
        image.size = NSMakeSize(iconSide, iconSide);
        NSImageView* const icon =
            [[NSImageView alloc] initWithFrame:NSMakeRect(0, 0, iconSide, iconSide)];
        icon.image = image;
        [view add:icon];
    }
    OrvelActionView* const texts = Controls::stack(true, 2);
    if (!row.label.text.empty()) [texts add:Controls::label(row.label, colors, alignment)];
    if (row.note) [texts add:noteView(*row.note, colors, alignment)];
    if (texts.subviews.count > 0) [view addGrowing:texts];
    if (NSView* const control = Controls::control(row.control, row.label.text, colors, view))
        [view add:control];
    return view;
}

}  // namespace

@implementation OrvelFormView {
    OrvelStackView* _column;
    FormContent _content;
    FormColors _colors;
    std::map<std::string, KnownRow> _rows;
}

- (instancetype)initWithFrame:(NSRect)frame {
    if ((self = [super initWithFrame:frame])) {
        self.drawsBackground = NO;
        self.hasVerticalScroller = YES;
        self.autohidesScrollers = YES;
        _column = [[OrvelStackView alloc] initVertical:YES spacing:16];
        _column.insets = NSEdgeInsets{margin, margin, margin, margin};
        self.documentView = _column;
    }
    return self;
}

/// Gives the form the whole width, and the height that it then needs.
- (void)fit {
    const double width = self.contentSize.width;
    _column.frame = NSMakeRect(0, 0, width, [_column sizeForWidth:width].height);
    [_column place];
}

- (void)resizeSubviewsWithOldSize:(NSSize)size {
    [super resizeSubviewsWithOldSize:size];
    [self fit];
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
    for (NSView* old in _column.subviews.copy) [old removeFromSuperview];
    for (NSView* view in views) [_column add:view];
    [self fit];
}

- (BOOL)isEditing:(NSView*)view {
    NSResponder* const first = self.window.firstResponder;
    return
        [first isKindOfClass:[NSView class]] && [static_cast<NSView*>(first) isDescendantOf:view];
}

- (NSView*)sectionView:(const FormSection&)section
                 known:(const std::map<std::string, KnownRow>&)before {
    OrvelActionView* const column = Controls::stack(true, 10);
    const bool isCard = section.style == FormSection::Style::card;
    const auto alignment = isCard ? NSTextAlignmentLeft : NSTextAlignmentCenter;
    if (!section.title.empty())
        [column
            add:Controls::label({.text = section.title, .role = TextRole::sectionTitle}, _colors)];
    if (!section.intro.empty())
        [column add:Controls::label({.text = section.intro, .role = TextRole::note}, _colors,
                                    alignment)];
    for (const auto& row : section.rows) {
        const auto known = before.find(row.id);
        const bool keeps =
            known != before.end() && (known->second.content == row ||
                                      (std::holds_alternative<OrvelUI::TextField>(row.control) &&
                                       [self isEditing:known->second.view]));
        NSView* const view = keeps ? known->second.view : rowView(row, _colors, alignment);
        _rows[row.id] = {row, view};
        [column add:view];
    }
    for (const auto& note : section.notes) [column add:noteView(note, _colors, alignment)];
    if (isCard) {
        column.insets = NSEdgeInsets{12, cardPadding, 12, cardPadding};
        column.fill = OrvelUI::Palette::Ink{_colors.surface()};
        column.border = _colors.hairline();
    } else {
        column.centred = YES;
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
