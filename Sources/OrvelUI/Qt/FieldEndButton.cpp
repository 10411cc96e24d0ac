#include "OrvelUI/Qt/FieldEndButton.h"

#include <cmath>

#include "OrvelUI/Qt/Drawing.h"

namespace OrvelUI {

using End = PasswordFieldContent::End;

FieldEndButton::FieldEndButton(QWidget* parent) : QAbstractButton(parent) {
    // The field keeps the focus; Return does the same as this button.
    setFocusPolicy(Qt::NoFocus);
    setEnabled(false);
}

void FieldEndButton::setContent(const PasswordFieldContent& field) {
    const bool unlocks = field.end == End::unlock && field.bullets > 0;
    setEnabled(unlocks);
    setCursor(unlocks ? Qt::PointingHandCursor : Qt::ArrowCursor);
    setAccessibleName(field.end == End::unlock ? QStringLiteral("Unlock") : QString());
    if (field.end == end_ && field.ringFraction == ringFraction_) return;
    end_ = field.end;
    ringFraction_ = field.ringFraction;
    update();
}

void FieldEndButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(Drawing::uiScale(), Drawing::uiScale());
    const QRectF rect(0, 0, PasswordFieldContent::endSide, PasswordFieldContent::endSide);
    const QPointF centre = rect.center();
    switch (end_) {
        case End::unlock: {
            const double opacity = !isEnabled() ? 0.1 : isDown() ? 0.75 : 0.95;
            painter.setPen(Qt::NoPen);
            painter.setBrush(Drawing::color({Palette::lockInk, opacity}));
            painter.drawEllipse(rect);
            const Palette::Ink arrow =
                isEnabled() ? Palette::Ink{Palette::island}
                            : Palette::Ink{Palette::lockInk, Palette::lockTertiaryOpacity};
            Drawing::symbol(painter, {.name = "arrow.right", .size = 14, .ink = arrow}, centre);
            break;
        }
        case End::ring: {
            const QRectF ring(centre - QPointF(8, 8), QSizeF(16, 16));
            QPen pen(Drawing::color({Palette::lockInk, 0.16}), 2.5);
            pen.setCapStyle(Qt::RoundCap);
            painter.setPen(pen);
            painter.drawEllipse(ring);
            pen.setColor(Drawing::color({Palette::lockDanger}));
            painter.setPen(pen);
            // In sixteenths of a degree, clockwise from the top.
            painter.drawArc(ring, 90 * 16,
                            -static_cast<int>(std::lround(ringFraction_ * 360 * 16)));
            break;
        }
        case End::lock:
            Drawing::symbol(painter,
                            {.name = "lock.fill",
                             .size = 13,
                             .ink = {Palette::lockInk, Palette::lockTertiaryOpacity}},
                            centre);
            break;
    }
}

}  // namespace OrvelUI
