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

/// How values of the portable half are drawn with Qt. All lengths are points; a view's painter is
/// scaled by `uiScale` once.
namespace OrvelUI::Drawing {

/// Qt's units per point: above 1 where the user asked for larger text and Qt does not scale by
/// itself.
double uiScale();
QRect scaled(const QRectF& points);

QColor color(const Palette::Ink& ink);
QPainterPath path(const Path& path);
/// The same rectangle with its edges on whole pixels of the device, for sharp lines.
QRectF snapped(const QPainter& painter, const QRectF& rect);

QFont font(double size, LabelContent::Weight weight);
/// The label's text as the user sees it.
QString text(const LabelContent& label);

/// Draws one line, cut with an ellipsis where it is too long, to the left or as `alignment` says.
void label(QPainter& painter, const LabelContent& label, const QRectF& rect,
           Qt::Alignment alignment = Qt::AlignLeft);
/// The label's text in one line or, where it needs more room, in two, the second being cut.
std::vector<LabelContent> lines(const LabelContent& label, double width);
/// Width of a clock's text, whose digits all take the same room.
double clockWidth(const LabelContent& label);
void clock(QPainter& painter, const LabelContent& label, QPointF leftCentre);
void symbol(QPainter& painter, const SymbolContent& symbol, QPointF centre);
void avatar(QPainter& painter, const AvatarContent& avatar, const QRectF& rect);

/// The shadow of an outline, blurred in a small picture that is kept while nothing changes.
class Shadow {
  public:
    /// `radius` is how far it reaches beyond the outline, `drop` how far it falls.
    Shadow(double opacity, double radius, double drop)
        : opacity_(opacity), radius_(radius), drop_(drop) {}

    double reach() const { return radius_ + drop_; }
    void draw(QPainter& painter, const QPainterPath& outline);

  private:
    double opacity_;
    double radius_;
    double drop_;
    QPainterPath outline_;
    QImage image_;
    QRectF target_;
};

}  // namespace OrvelUI::Drawing
