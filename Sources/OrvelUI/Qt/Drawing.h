#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRectF>
#include <QString>
#include <vector>

#include "OrvelSystem/Picture.h"
#include "OrvelUI/CardContent.h"
#include "OrvelUI/Path.h"

/// Draws the values of the portable half with Qt. All lengths are in points; a view scales its
/// painter once by `uiScale`.
namespace OrvelUI::Drawing {

/// Qt units per point: above 1 when the user has requested larger text and Qt does not scale
/// itself.
double uiScale();
/// Converts points to Qt units.
QRect scaled(const QRectF& points);
int units(double points);

QColor color(const Palette::Ink& ink);
QPainterPath path(const Path& path);
/// Returns the rectangle with its edges on whole device pixels, for sharp lines.
QRectF snapped(const QPainter& painter, const QRectF& rect);

QFont font(double size, LabelContent::Weight weight);
/// The label's text as it is shown.
QString text(const LabelContent& label);

/// Draws one line, with an ellipsis if it is too long; left-aligned unless `alignment` says
/// otherwise.
void label(QPainter& painter, const LabelContent& label, const QRectF& rect,
           Qt::Alignment alignment = Qt::AlignLeft);
/// Splits the label's text into two lines if it does not fit into one; the second may be cut when
/// it is drawn.
std::vector<LabelContent> lines(const LabelContent& label, double width);
/// The width of a clock's text, in which all digits have the same width.
double clockWidth(const LabelContent& label);
void clock(QPainter& painter, const LabelContent& label, QPointF leftCentre);
void symbol(QPainter& painter, const SymbolContent& symbol, QPointF centre);
void avatar(QPainter& painter, const AvatarContent& avatar, const QRectF& rect);

/// The blurred shadow of an outline, drawn into a small image that is kept until the outline
/// changes.
class Shadow {
  public:
    explicit Shadow(const Palette::Shadow& style) : style_(style) {}

    /// How far it extends below the outline, in points.
    double reach() const { return style_.radius + style_.drop; }
    void draw(QPainter& painter, const QPainterPath& outline);

  private:
    Palette::Shadow style_;
    QPainterPath outline_;
    QImage image_;
    QRectF target_;
};

}  // namespace OrvelUI::Drawing
