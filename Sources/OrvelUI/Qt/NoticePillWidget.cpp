#include "OrvelUI/Qt/NoticePillWidget.h"

#include <QFontMetricsF>
#include <QMouseEvent>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <utility>

#include "OrvelCore/Match.h"
#include "OrvelUI/IslandLayout.h"
#include "OrvelUI/Linux/Wording.h"
#include "OrvelUI/Qt/ControlDrawing.h"

namespace OrvelUI {

namespace {

using Content = NoticePillContent;

double partWidth(const Content::Part& part) {
    return OrvelCore::match(
        part,
        [](const LabelContent& label) {
            const QFontMetricsF metrics(Drawing::font(label.size, label.weight));
            return std::ceil(metrics.horizontalAdvance(Drawing::text(label)));
        },
        [](const Keycaps& keycaps) { return Drawing::keycapsWidth(keycaps); });
}

double rowWidth(const Content& content) {
    double width = content.symbol.size;
    for (const auto& part : content.parts) width += Content::gap + partWidth(part);
    return width;
}

}  // namespace

NoticePillWidget::NoticePillWidget(NoticePillContent content, std::optional<NotchMetrics> notch,
                                   int maximumWidth, bool hasShadow, std::function<void()> onTap)
    : content_(std::move(content)),
      notch_(notch),
      hasShadow_(hasShadow),
      onTap_(std::move(onTap)),
      // An even number of points, so that the pill's centre can match the display's.
      width_(2 *
             std::ceil(std::max(rowWidth(content_) + 2 * Content::padding, content_.minimumWidth) /
                       2)) {
    width_ = std::min(width_, maximumWidth / Drawing::uiScale());
    setAccessibleName(QString::fromStdString(Wording::shown(content_.accessibleName)));
    if (onTap_)
        setCursor(Qt::PointingHandCursor);
    else
        setAttribute(Qt::WA_TransparentForMouseEvents);
    resize(sizeHint());
}

QMargins NoticePillWidget::overhang() const {
    if (!hasShadow_) return {};
    const int reach = static_cast<int>(std::ceil(shadow_.reach() * Drawing::uiScale()));
    return {reach, 0, reach, reach};
}

QSize NoticePillWidget::sizeHint() const {
    return Drawing::scaled({0, 0, width_, content_.top + Content::rowHeight})
        .marginsAdded(overhang())
        .size();
}

QRect NoticePillWidget::placement(const QSize& area) const {
    return hanging(notch_, area);
}

QRectF NoticePillWidget::pill() const {
    const double middle = width() / Drawing::uiScale() / 2;
    return {middle - width_ / 2, 0, width_, content_.top + Content::rowHeight};
}

QPainterPath NoticePillWidget::shape() const {
    const QRectF rect = pill();
    return Drawing::path(IslandShape{.bottomRadius = Content::rowHeight / 2}.path(
        {.x = rect.x(), .y = rect.y(), .width = rect.width(), .height = rect.height()}));
}

QPainterPath NoticePillWidget::outline() const {
    return QTransform::fromScale(Drawing::uiScale(), Drawing::uiScale()).map(shape());
}

void NoticePillWidget::tap() {
    if (!onTap_ || shown_ == 0) return;
    QMetaObject::invokeMethod(
        this, [this] { onTap_(); }, Qt::QueuedConnection);
}

void NoticePillWidget::fadeOutAfter(double after, double seconds) {
    QTimer::singleShot(static_cast<int>(std::lround(after * 1000)), this, [this, seconds] {
        fading_.start([this, seconds](double elapsed) {
            const double rest = seconds > 0 ? std::max(0.0, 1 - elapsed / seconds) : 0;
            setShown(rest * rest * rest);
            return shown_ > 0;
        });
    });
}

void NoticePillWidget::setShown(double shown) {
    shown_ = shown;
    if (shown_ == 0) setCursor(Qt::ArrowCursor);
    update();
}

void NoticePillWidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && outline().contains(event->position())) tap();
}

void NoticePillWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(shown_);
    painter.scale(Drawing::uiScale(), Drawing::uiScale());
    const QPainterPath outline = shape();
    if (hasShadow_) shadow_.draw(painter, outline);
    painter.fillPath(outline, Drawing::color({Palette::island}));

    const QRectF rect = pill();
    const double middle = rect.bottom() - Content::rowHeight / 2;
    const double end = rect.right() - Content::padding;
    double x = std::max(rect.left() + Content::padding, rect.center().x() - rowWidth(content_) / 2);
    Drawing::symbol(painter, content_.symbol, {x + content_.symbol.size / 2, middle});
    x += content_.symbol.size;
    for (const auto& part : content_.parts) {
        x += Content::gap;
        const double width = std::max(0.0, std::min(partWidth(part), end - x));
        OrvelCore::match(
            part,
            [&](const LabelContent& label) {
                Drawing::label(painter, label,
                               {x, middle - Content::rowHeight / 2, width, Content::rowHeight});
            },
            [&](const Keycaps& keycaps) {
                Drawing::keycaps(painter, keycaps, keycaps.inks(), {x, middle});
            });
        x += width;
    }
}

}  // namespace OrvelUI
