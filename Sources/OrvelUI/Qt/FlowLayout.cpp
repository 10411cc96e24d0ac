#include "OrvelUI/Qt/FlowLayout.h"

#include <algorithm>

namespace OrvelUI {

QSize FlowLayout::natural(const std::vector<QWidget*>& widgets) const {
    QSize size(widgets.empty() ? 0 : -gap, 0);
    for (const auto* widget : widgets) {
        const QSize hint = widget->sizeHint();
        size = {size.width() + hint.width() + gap, std::max(size.height(), hint.height())};
    }
    return size;
}

int FlowLayout::arrange(const std::vector<QWidget*>& widgets, int width, bool place) const {
    const int column = columns > 0 ? (width - (columns - 1) * gap) / columns : 0;
    int y = 0;
    for (std::size_t first = 0; first < widgets.size();) {
        // One line: as many widgets as fit, but at least one.
        std::size_t end = first;
        int taken = -gap;
        int lineHeight = 0;
        const auto widthOf = [&](const QWidget* widget) {
            return column > 0 ? column : std::min(widget->sizeHint().width(), width);
        };
        while (end < widgets.size()) {
            const int wanted = widthOf(widgets[end]);
            if (end > first && taken + gap + wanted > width) break;
            taken += gap + wanted;
            lineHeight = std::max(lineHeight, widgets[end]->sizeHint().height());
            ++end;
        }
        int x = centred ? (width - taken) / 2 : 0;
        for (; first < end; ++first) {
            const int own = widthOf(widgets[first]);
            const int high = columns > 0 ? lineHeight : widgets[first]->sizeHint().height();
            if (place) widgets[first]->setGeometry(x, y + (lineHeight - high) / 2, own, high);
            x += own + gap;
        }
        y += lineHeight + (end < widgets.size() ? gap : 0);
    }
    return y;
}

}  // namespace OrvelUI
