#pragma once

#include <QSize>
#include <QWidget>
#include <vector>

namespace OrvelUI {

/// Lays widgets out like words: side by side, and on further lines where one is full. All lengths
/// are Qt's units.
struct FlowLayout {
    int gap = 6;
    /// Equal widths, as many to a line as this; 0 for each widget's own width.
    int columns = 0;
    bool centred = false;

    /// In one line.
    QSize natural(const std::vector<QWidget*>& widgets) const;
    /// Places the widgets where `place` is true; gives the height that they take.
    int arrange(const std::vector<QWidget*>& widgets, int width, bool place) const;
};

}  // namespace OrvelUI
