#include "OrvelUI/Qt/Drawing.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QScreen>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <vector>

#include "OrvelCore/Match.h"
#include "OrvelUI/Linux/Wording.h"
#include "OrvelUI/Symbols.h"

namespace OrvelUI::Drawing {

namespace {

QPointF point(OrvelCore::Point p) {
    return {p.x, p.y};
}

// Three passes of a moving average approximate a Gaussian.
void boxBlur(QImage& alpha, int radius) {
    if (radius < 1) return;
    const auto pass = [radius](uchar* first, qsizetype step, int count, std::vector<int>& line) {
        for (int i = 0; i < count; ++i) line[static_cast<std::size_t>(i)] = first[i * step];
        const int window = 2 * radius + 1;
        int sum = 0;
        const auto at = [&](int i) {
            return i < 0 || i >= count ? 0 : line[static_cast<std::size_t>(i)];
        };
        for (int i = -radius; i <= radius; ++i) sum += at(i);
        for (int i = 0; i < count; ++i) {
            first[i * step] = static_cast<uchar>(sum / window);
            sum += at(i + radius + 1) - at(i - radius);
        }
    };
    std::vector<int> line(static_cast<std::size_t>(std::max(alpha.width(), alpha.height())));
    for (int i = 0; i < 3; ++i) {
        for (int y = 0; y < alpha.height(); ++y) pass(alpha.scanLine(y), 1, alpha.width(), line);
        for (int x = 0; x < alpha.width(); ++x)
            pass(alpha.bits() + x, alpha.bytesPerLine(), alpha.height(), line);
    }
}

bool isDrawable(const OrvelSystem::Picture& picture) {
    return picture.width > 0 && picture.height > 0 &&
           picture.pixels.size() >=
               static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
}

QImage image(const OrvelSystem::Picture& picture) {
    return QImage(reinterpret_cast<const uchar*>(picture.pixels.data()), picture.width,
                  picture.height, QImage::Format_ARGB32);
}

// The largest square in the middle of the picture.
QImage squareImage(const OrvelSystem::Picture& picture, int side) {
    const int crop = std::min(picture.width, picture.height);
    return image(picture)
        .copy((picture.width - crop) / 2, (picture.height - crop) / 2, crop, crop)
        .scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

double deviceScale(const QPainter& painter) {
    const QTransform device = painter.deviceTransform();
    return std::hypot(device.m11(), device.m12());
}

}  // namespace

double uiScale() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen == nullptr ? 1 : std::clamp(screen->logicalDotsPerInchY() / 96, 1.0, 2.5);
}

QRect scaled(const QRectF& points) {
    const double s = uiScale();
    return QRectF(points.x() * s, points.y() * s, points.width() * s, points.height() * s).toRect();
}

int units(double points) {
    return static_cast<int>(std::lround(points * uiScale()));
}

QColor color(const Palette::Ink& ink) {
    const auto c = ink.color();
    return QColor::fromRgbF(static_cast<float>(c.red), static_cast<float>(c.green),
                            static_cast<float>(c.blue), static_cast<float>(c.alpha));
}

QPainterPath path(const Path& path) {
    QPainterPath result;
    for (const auto& command : path.commands())
        OrvelCore::match(
            command, [&](const Path::Move& move) { result.moveTo(point(move.to)); },
            [&](const Path::Line& line) { result.lineTo(point(line.to)); },
            [&](const Path::Curve& curve) {
                result.cubicTo(point(curve.control1), point(curve.control2), point(curve.to));
            },
            [&](const Path::Close&) { result.closeSubpath(); });
    return result;
}

QRectF snapped(const QPainter& painter, const QRectF& rect) {
    const QTransform device = painter.deviceTransform();
    const QRectF onDevice = device.mapRect(rect);
    const QPointF topLeft(std::round(onDevice.left()), std::round(onDevice.top()));
    const QPointF bottomRight(std::round(onDevice.right()), std::round(onDevice.bottom()));
    return device.inverted().mapRect(QRectF(topLeft, bottomRight));
}

QFont font(double size, LabelContent::Weight weight) {
    static const QString systemFamily =
        QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    QFont font;
    font.setFamilies({QStringLiteral("Inter"), systemFamily});
    font.setPixelSize(static_cast<int>(std::lround(size)));
    font.setWeight(weight == LabelContent::Weight::semibold ? QFont::DemiBold
                   : weight == LabelContent::Weight::medium ? QFont::Medium
                                                            : QFont::Normal);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::PreferAntialias);
    return font;
}

QString text(const LabelContent& label) {
    return QString::fromStdString(label.verbatim ? label.text : Wording::shown(label.text))
        .simplified();
}

void label(QPainter& painter, const LabelContent& label, const QRectF& rect,
           Qt::Alignment alignment) {
    const QFont face = font(label.size, label.weight);
    const QFontMetricsF metrics(face);
    const QString tail = QString::fromStdString(label.tail);
    const double room = rect.width() - metrics.horizontalAdvance(tail);
    const QString shown = metrics.elidedText(text(label), Qt::ElideRight, room) + tail;
    painter.setFont(face);
    painter.setPen(color(label.ink));
    // A right-to-left name is laid out in that direction, but still starts beside its avatar.
    painter.setLayoutDirection(shown.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(rect,
                     static_cast<int>(alignment | Qt::AlignVCenter | Qt::AlignAbsolute) |
                         Qt::TextSingleLine | Qt::TextDontClip,
                     shown);
}

std::vector<LabelContent> lines(const LabelContent& label, double width) {
    const QString whole = text(label);
    QTextLayout layout(whole, font(label.size, label.weight));
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(width);
    layout.endLayout();
    LabelContent first = label;
    // The text has already been reworded and must not be reworded again.
    first.verbatim = true;
    first.text = whole.left(line.textLength()).toStdString();
    if (line.textLength() >= whole.size()) return {first};
    LabelContent second = first;
    second.text = whole.mid(line.textLength()).toStdString();
    return {first, second};
}

namespace {

/// A part of a clock's text with its width. All digits get the width of the widest one, so that the
/// text does not move when the time changes; other characters keep their own.
struct Cell {
    QString text;
    double own;
    double width;
};

std::vector<Cell> cells(const LabelContent& label, const QFontMetricsF& metrics) {
    double digit = 0;
    for (char c = '0'; c <= '9'; ++c)
        digit = std::max(digit, metrics.horizontalAdvance(QLatin1Char(c)));
    std::vector<Cell> result;
    bool afterDigit = true;
    for (const QChar character : text(label)) {
        const bool isDigit = character.isDigit();
        if (isDigit || afterDigit) result.push_back({});
        result.back().text += character;
        afterDigit = isDigit;
    }
    for (auto& cell : result) {
        cell.own = metrics.horizontalAdvance(cell.text);
        cell.width = cell.text.front().isDigit() ? std::max(cell.own, digit) : cell.own;
    }
    return result;
}

}  // namespace

double clockWidth(const LabelContent& label) {
    double width = 0;
    for (const auto& cell : cells(label, QFontMetricsF(font(label.size, label.weight))))
        width += cell.width;
    return width;
}

void clock(QPainter& painter, const LabelContent& label, QPointF leftCentre) {
    const QFont face = font(label.size, label.weight);
    const QFontMetricsF metrics(face);
    painter.setFont(face);
    painter.setPen(color(label.ink));
    const double baseline = leftCentre.y() + metrics.capHeight() / 2;
    double x = leftCentre.x();
    for (const auto& cell : cells(label, metrics)) {
        painter.drawText(QPointF(x + (cell.width - cell.own) / 2, baseline), cell.text);
        x += cell.width;
    }
}

void symbol(QPainter& painter, const SymbolContent& symbol, QPointF centre) {
    painter.save();
    painter.translate(centre - QPointF(symbol.size, symbol.size) / 2);
    painter.scale(symbol.size / Symbol::box, symbol.size / Symbol::box);
    const QColor ink = color(symbol.ink);
    for (const auto& layer : Symbol::named(symbol.name).layers) {
        if (layer.stroke > 0)
            painter.strokePath(path(layer.path),
                               QPen(ink, layer.stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        else
            painter.fillPath(path(layer.path), ink);
    }
    painter.restore();
}

void avatar(QPainter& painter, const AvatarContent& avatar, const QRectF& rect) {
    const bool hasPicture = avatar.picture && isDrawable(*avatar.picture);
    if (!hasPicture && !avatar.symbol.empty()) {
        symbol(painter,
               {.name = avatar.symbol,
                .size = rect.width(),
                .ink = {Palette::lockInk, Palette::lockSecondaryOpacity(false)}},
               rect.center());
        return;
    }
    if (hasPicture && !avatar.round) {
        const int side = static_cast<int>(std::lround(rect.width() * deviceScale(painter)));
        painter.drawImage(rect, squareImage(*avatar.picture, side));
        return;
    }
    QPainterPath circle;
    circle.addEllipse(rect);
    if (hasPicture) {
        const int side = static_cast<int>(std::lround(rect.width() * deviceScale(painter)));
        QBrush brush(squareImage(*avatar.picture, side));
        QTransform onto;
        onto.translate(rect.x(), rect.y()).scale(rect.width() / side, rect.height() / side);
        brush.setTransform(onto);
        painter.fillPath(circle, brush);
    } else {
        QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
        gradient.setColorAt(0, color({Palette::ink3Light}));
        gradient.setColorAt(1, color({Palette::ink2Light}));
        painter.fillPath(circle, gradient);
        label(painter,
              {.text = avatar.initials,
               .tail = {},
               .size = 13,
               .weight = LabelContent::Weight::semibold,
               .ink = {},
               .verbatim = true},
              rect, Qt::AlignHCenter);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color({Palette::lockInk, 0.14}), 1));
    painter.drawEllipse(rect.adjusted(0.5, 0.5, -0.5, -0.5));
}

void Shadow::draw(QPainter& painter, const QPainterPath& outline) {
    // A shadow has no sharp details, so a quarter of the pixels is enough.
    constexpr double scale = 0.5;
    if (image_.isNull() || outline != outline_) {
        outline_ = outline;
        target_ = outline.boundingRect().adjusted(-reach(), -reach(), reach(), reach());
        QImage alpha((target_.size() * scale).toSize().expandedTo({1, 1}), QImage::Format_Alpha8);
        alpha.fill(0);
        QPainter shape(&alpha);
        shape.setRenderHint(QPainter::Antialiasing);
        shape.scale(scale, scale);
        shape.translate(-target_.topLeft() + QPointF(0, style_.drop));
        shape.fillPath(outline, Qt::black);
        shape.end();
        // Three passes extend three times as far as one.
        boxBlur(alpha, static_cast<int>(std::lround(style_.radius * scale / 3)));
        image_ = QImage(alpha.size(), QImage::Format_ARGB32_Premultiplied);
        for (int y = 0; y < alpha.height(); ++y) {
            const uchar* from = alpha.constScanLine(y);
            auto* to = reinterpret_cast<QRgb*>(image_.scanLine(y));
            for (int x = 0; x < alpha.width(); ++x)
                to[x] = qRgba(0, 0, 0, static_cast<int>(std::lround(from[x] * style_.opacity)));
        }
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target_, image_);
}

}  // namespace OrvelUI::Drawing
