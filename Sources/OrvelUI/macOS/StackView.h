#pragma once

#include <optional>

#import <AppKit/AppKit.h>

#include "OrvelUI/Palette.h"

/// A row or a column of views. Unlike NSStackView, it gives a text the height of its lines at the
/// width that the text gets. Texts and stacks are measured; other views keep the size that they
/// have when they are added. Sizes are in points, and the origin is at the top left.
@interface OrvelStackView : NSView
@property(nonatomic) NSEdgeInsets insets;
/// In a column, views are in the middle instead of at its start.
@property(nonatomic) BOOL centred;
/// The stack measures itself for at most this width; 0 for no limit.
@property(nonatomic) double maximumWidth;
/// A rounded surface behind the views; `nullopt` for none.
@property(nonatomic) std::optional<OrvelUI::Palette::Ink> fill;
@property(nonatomic) OrvelUI::Palette::Ink border;
- (instancetype)initVertical:(BOOL)vertical spacing:(double)spacing;
- (void)add:(NSView*)view;
/// Like `add:`, for the view of a row that gets the width that the others leave.
- (void)addGrowing:(NSView*)view;
/// The size that the stack needs if it is `width` wide. The result is narrower if that suffices.
- (NSSize)sizeForWidth:(double)width;
/// Places all views in the current size. Called after views have been added.
- (void)place;
@end
