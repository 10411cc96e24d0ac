#include "OrvelUI/Qt/SecondaryDisplayPillWidget.h"

#include <cmath>
#include <utility>

#include "OrvelUI/CardObservation.h"
#include "OrvelUI/IslandLayout.h"
#include "OrvelUI/Linux/Wording.h"
#include "OrvelUI/NoticePill.h"

namespace OrvelUI {

SecondaryDisplayPillWidget::SecondaryDisplayPillWidget(LockCardModel& model,
                                                       std::optional<NotchMetrics> notch)
    : model_(model), notch_(notch), shadow_(NoticePillContent::shadow) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    observations_ = observeCard(model, [this] { refresh(); });
    refresh();
    resize(sizeHint());
}

QMargins SecondaryDisplayPillWidget::overhang() const {
    const int reach = static_cast<int>(std::ceil(shadow_.reach() * Drawing::uiScale()));
    return {reach, 0, reach, reach};
}

QSize SecondaryDisplayPillWidget::sizeHint() const {
    return Drawing::scaled({0, 0, content_.size.width, content_.size.height})
        .marginsAdded(overhang())
        .size();
}

QRect SecondaryDisplayPillWidget::placement(const QSize& area) const {
    return hanging(notch_, area);
}

void SecondaryDisplayPillWidget::refresh() {
    const auto before = std::exchange(content_, SecondaryDisplayPillContent::of(model_, notch_));
    setAccessibleName(QString::fromStdString(Wording::shown(content_.accessibleName)));
    if (content_ != before) update();
}

void SecondaryDisplayPillWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(Drawing::uiScale(), Drawing::uiScale());
    const double middle = width() / Drawing::uiScale() / 2;
    const QRectF pill(middle - content_.size.width / 2, 0, content_.size.width,
                      content_.size.height);
    const QPainterPath outline = Drawing::path(IslandShape{.bottomRadius = pill.height() / 2}.path(
        {.x = pill.x(), .y = 0, .width = pill.width(), .height = pill.height()}));
    shadow_.draw(painter, outline);
    painter.fillPath(outline, Drawing::color({Palette::island}));

    const double centreY = pill.center().y();
    const double text = Drawing::clockWidth(content_.label);
    if (content_.gap > 0) {
        Drawing::clock(painter, content_.label, {pill.left() + IslandLayout::bandPadding, centreY});
        if (content_.symbol)
            Drawing::symbol(
                painter, *content_.symbol,
                {pill.right() - IslandLayout::bandPadding - content_.symbol->size / 2, centreY});
        return;
    }
    const double symbol =
        content_.symbol ? content_.symbol->size + SecondaryDisplayPillContent::symbolGap : 0;
    const double left = middle - (text + symbol) / 2;
    if (content_.symbol)
        Drawing::symbol(painter, *content_.symbol, {left + content_.symbol->size / 2, centreY});
    Drawing::clock(painter, content_.label, {left + symbol, centreY});
}

}  // namespace OrvelUI
