#include "OrvelUI/Qt/IslandSwitchWidget.h"

#include <algorithm>
#include <utility>

#include "OrvelUI/Linux/Wording.h"
#include "OrvelUI/Qt/ControlDrawing.h"

namespace OrvelUI {

namespace {

// The space around the track for the focus ring, in points.
constexpr double ringRoom = 4;

}  // namespace

IslandSwitchWidget::IslandSwitchWidget(bool reduceMotion, QWidget* parent)
    : PressableButton(parent), reduceMotion_(reduceMotion) {
    setCheckable(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, [this] {
        // A copy, because the handler may set new content or destroy this widget.
        const auto toggle = toggle_;
        if (toggle) toggle();
    });
}

void IslandSwitchWidget::setContent(IslandSwitch content) {
    toggle_ = std::move(content.toggle);
    setAccessibleName(QString::fromStdString(Wording::shown(content.label)));
    setAccessibleDescription(QString::fromStdString(Wording::shown(content.hint)));
    setChecked(content.on);
    slideTo(content.on ? 1 : 0);
}

void IslandSwitchWidget::slideTo(double end) {
    const double start = position_;
    if (reduceMotion_ || !isVisible() || start == end) {
        if (!sliding_.isRunning()) position_ = end;
        return update();
    }
    sliding_.start([this, start, end](double seconds) {
        const double t = std::min(1.0, seconds / IslandSwitch::slideSeconds);
        position_ = start + (end - start) * t * (2 - t);
        update();
        return t < 1;
    });
}

QSize IslandSwitchWidget::sizeHint() const {
    return Drawing::scaled(
               {0, 0, IslandSwitch::width + 2 * ringRoom, IslandSwitch::height + 2 * ringRoom})
        .size();
}

void IslandSwitchWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(Drawing::uiScale(), Drawing::uiScale());
    const QRectF track(ringRoom, ringRoom, IslandSwitch::width, IslandSwitch::height);
    painter.setOpacity(isEnabled() ? 1 : 0.4);
    Drawing::islandSwitch(painter, position_, track);
    if (hasFocus()) {
        const QRectF ring = track.adjusted(-ringRoom, -ringRoom, ringRoom, ringRoom);
        Drawing::focusRing(painter, ring, ring.height() / 2);
    }
}

}  // namespace OrvelUI
