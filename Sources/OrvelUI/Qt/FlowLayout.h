#pragma once

#include <QSize>
#include <QWidget>
#include <vector>

namespace OrvelUI {

/// Lays widgets out like words: side by side, with line breaks. All lengths are in Qt units.
struct FlowLayout {
    int gap = 6;
    /// The number of columns of equal width; 0 gives each widget its own width.
    int columns = 0;
    bool centred = false;

    /// The size of all widgets in one line.
    QSize natural(const std::vector<QWidget*>& widgets) const;
    /// Returns the height for `width`; also places the widgets if `place` is true.
    int arrange(const std::vector<QWidget*>& widgets, int width, bool place) const;
};

}  // namespace OrvelUI
