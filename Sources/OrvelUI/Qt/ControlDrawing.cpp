#include "OrvelUI/Qt/ControlDrawing.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

#include "OrvelUI/Linux/Wording.h"

namespace OrvelUI::Drawing {

namespace {

QFont capFont(const Keycaps& keycaps) {
    return font(keycaps.textSize(), LabelContent::Weight::medium);
}

QString capText(const std::string& cap) {
    return QString::fromStdString(Wording::keycap(cap));
}

double capWidth(const Keycaps& keycaps, const QFontMetricsF& metrics, const QString& text) {
    return std::max(keycaps.height(), metrics.horizontalAdvance(text) + 2 * keycaps.padding());
}

}  // namespace

double keycapsWidth(const Keycaps& keycaps) {
    const QFontMetricsF metrics(capFont(keycaps));
    double width = keycaps.caps.empty() ? 0 : -Keycaps::gap;
    for (const auto& cap : keycaps.caps)
        width += capWidth(keycaps, metrics, capText(cap)) + Keycaps::gap;
    return width;
}

void keycaps(QPainter& painter, const Keycaps& keycaps, const Keycaps::Inks& inks,
             QPointF leftCentre) {
    const QFont face = capFont(keycaps);
    const QFontMetricsF metrics(face);
    const double height = keycaps.height();
    const double radius = keycaps.cornerRadius();
    double x = leftCentre.x();
    for (const auto& cap : keycaps.caps) {
        const QString text = capText(cap);
        const double width = capWidth(keycaps, metrics, text);
        const QRectF rect = snapped(painter, {x, leftCentre.y() - height / 2, width, height});
        painter.setPen(Qt::NoPen);
        painter.setBrush(color(inks.fill));
        painter.drawRoundedRect(rect, radius, radius);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(color(inks.border), 1));
        painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
        painter.setFont(face);
        painter.setPen(color(inks.text));
        painter.drawText(rect, Qt::AlignCenter | Qt::TextSingleLine, text);
        x += width + Keycaps::gap;
    }
}

QColor mixed(const Palette::Ink& from, const Palette::Ink& to, double share) {
    const QColor a = color(from);
    const QColor b = color(to);
    const auto channel = [share](float x, float y) {
        return static_cast<float>(x + (y - x) * share);
    };
    return QColor::fromRgbF(channel(a.redF(), b.redF()), channel(a.greenF(), b.greenF()),
                            channel(a.blueF(), b.blueF()), channel(a.alphaF(), b.alphaF()));
}

void spinner(QPainter& painter, QPointF centre, double turn, const Palette::Ink& ring,
             const Palette::Ink& arc) {
    const QRectF circle(centre - QPointF(Spinner::diameter, Spinner::diameter) / 2,
                        QSizeF(Spinner::diameter, Spinner::diameter));
    QPen pen(color(ring), Spinner::stroke);
    pen.setCapStyle(Qt::RoundCap);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(pen);
    painter.drawEllipse(circle);
    pen.setColor(color(arc));
    painter.setPen(pen);
    painter.drawArc(circle, static_cast<int>(std::lround((90 - turn * 360) * 16)), -100 * 16);
}

void islandSwitch(QPainter& painter, double position, const QRectF& rect) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed({Palette::lockInk, 0.22}, {Palette::accentDark}, position));
    painter.drawRoundedRect(rect, rect.height() / 2, rect.height() / 2);
    const double side = rect.height() - 2 * IslandSwitch::knobInset;
    const double travel = rect.width() - 2 * IslandSwitch::knobInset - side;
    const QRectF knob(rect.left() + IslandSwitch::knobInset + position * travel,
                      rect.top() + IslandSwitch::knobInset, side, side);
    painter.setBrush(QColor(0, 0, 0, 60));
    painter.drawEllipse(knob.translated(0, 0.75));
    painter.setBrush(QColor(255, 255, 255));
    painter.drawEllipse(knob);
}

void focusRing(QPainter& painter, const QRectF& rect, double radius, const Palette::Ink& ink) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color(ink), 2));
    painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius - 1, radius - 1);
}

}  // namespace OrvelUI::Drawing
