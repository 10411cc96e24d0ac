#include "OrvelUI/Qt/SceneDrawing.h"

#include <QLinearGradient>
#include <algorithm>
#include <cmath>

namespace OrvelUI::Drawing {

namespace {

QColor tint(const OrvelCore::Color& c) {
    return QColor::fromRgbF(static_cast<float>(c.red), static_cast<float>(c.green),
                            static_cast<float>(c.blue), static_cast<float>(c.alpha));
}

// The desktop without a cover; `width` is in pixels.
QImage desktop(int width) {
    const auto& scene = DesktopScene::standard();
    const double scale = width / DesktopScene::size.width;
    QImage image(width, static_cast<int>(std::lround(DesktopScene::size.height * scale)),
                 QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    QLinearGradient background(0, 0, 0, DesktopScene::size.height);
    background.setColorAt(0, color({.value = scene.top}));
    background.setColorAt(1, color({.value = scene.bottom}));
    painter.fillRect(QRectF(0, 0, DesktopScene::size.width, DesktopScene::size.height), background);
    for (const auto& shape : scene.shapes) painter.fillPath(path(shape.path), color(shape.ink));
    return image;
}

/// Repeatedly halves the size, then doubles it back: each halving doubles the radius.
QImage blurred(const QImage& sharp, double radius) {
    if (radius < 0.5) return sharp;
    const double steps = std::log2(radius) + 0.6;
    const auto shrunk = [&](double times) {
        return QSize(std::max(2, static_cast<int>(sharp.width() / times)),
                     std::max(2, static_cast<int>(sharp.height() / times)));
    };
    QImage image = sharp;
    for (double done = 1; done < steps; ++done)
        image =
            image.scaled(shrunk(std::exp2(done)), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    image = image.scaled(shrunk(std::exp2(steps)), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    for (double left = std::floor(steps); left > 0; --left)
        image =
            image.scaled(shrunk(std::exp2(left)), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image.scaled(sharp.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

void lockCard(QPainter& painter, const QRectF& rect, const SceneCover& cover) {
    painter.save();
    painter.setOpacity(painter.opacity() * cover.card);
    // An island at the top edge, in the proportions of the picture.
    const double unit = rect.width() / DesktopScene::size.width;
    const double width = (cover.speaks ? 74 : 48) * unit;
    const double height = (cover.speaks ? 30 : 26) * unit;
    const QRectF island(rect.center().x() - width / 2, rect.top() - 6 * unit, width,
                        height + 6 * unit);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color({.value = Palette::island}));
    painter.drawRoundedRect(island, 6 * unit, 6 * unit);
    const auto ink = [](double opacity) {
        return color({.value = Palette::lockInk, .opacity = opacity});
    };
    if (cover.speaks) {
        symbol(painter, {.name = "lock.fill", .size = 9 * unit, .ink = {}},
               {island.left() + 11 * unit, rect.top() + 9 * unit});
        label(painter,
              {.text = "Locked",
               .tail = {},
               .size = 7 * unit,
               .weight = LabelContent::Weight::semibold,
               .ink = {}},
              {island.left() + 19 * unit, rect.top() + 3 * unit, 40 * unit, 12 * unit});
        symbol(painter, {.name = "touchid", .size = 10 * unit, .ink = {Palette::accentDark}},
               {island.right() - 9 * unit, rect.top() + 9 * unit});
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink(0.16));
        painter.drawRoundedRect(
            QRectF(island.left() + 6 * unit, rect.top() + 18 * unit, width - 12 * unit, 7 * unit),
            3 * unit, 3 * unit);
    } else {
        if (cover.showsClock) {
            painter.setBrush(ink(0.8));
            painter.drawRoundedRect(
                QRectF(island.left() + 5 * unit, rect.top() + 3 * unit, 9 * unit, 2.4 * unit), unit,
                unit);
        }
        symbol(painter, {.name = "lock.fill", .size = 5 * unit, .ink = {}},
               {island.right() - 6.5 * unit, rect.top() + 4.2 * unit});
        painter.setBrush(ink(0.5));
        painter.drawEllipse(QPointF(island.left() + 8 * unit, rect.top() + 12 * unit), 3 * unit,
                            3 * unit);
        painter.drawRoundedRect(
            QRectF(island.left() + 14 * unit, rect.top() + 11 * unit, 22 * unit, 2.2 * unit), unit,
            unit);
        painter.setBrush(ink(0.2));
        painter.drawRoundedRect(QRectF(island.left() + 5 * unit, rect.top() + 17.5 * unit,
                                       width - 10 * unit, 5.5 * unit),
                                2.4 * unit, 2.4 * unit);
    }
    painter.restore();
}

}  // namespace

void lockedScene(QPainter& painter, const QRectF& rect, double radius, const SceneCover& cover) {
    const QTransform device = painter.deviceTransform();
    const double deviceScale = std::hypot(device.m11(), device.m12());
    const int width = std::max(2, static_cast<int>(std::lround(rect.width() * deviceScale)));
    QImage image = desktop(width);
    if (!cover.look.solid) {
        const double pixelsPerPoint =
            width / (DesktopScene::size.width * DesktopScene::pointsPerUnit);
        image = blurred(image, cover.look.radius * cover.progress * pixelsPerPoint);
    }
    painter.save();
    QPainterPath outline;
    outline.addRoundedRect(rect, radius, radius);
    QBrush brush(image);
    QTransform onto;
    onto.translate(rect.x(), rect.y())
        .scale(rect.width() / image.width(), rect.height() / image.height());
    brush.setTransform(onto);
    painter.fillPath(outline, brush);
    const double opacity = painter.opacity();
    painter.setOpacity(opacity * cover.progress);
    painter.fillPath(outline, tint(cover.look.solid ? Palette::solidColor(cover.look)
                                                    : Palette::tintColor(cover.look)));
    painter.setOpacity(opacity);
    if (cover.card > 0) {
        painter.setClipPath(outline);
        lockCard(painter, rect, cover);
    }
    painter.restore();
}

void appIcon(QPainter& painter, const std::shared_ptr<const OrvelSystem::Picture>& icon,
             const QRectF& rect, const FormColors& colors) {
    if (icon != nullptr && icon->width > 0 && icon->height > 0)
        avatar(painter, {.picture = icon, .size = rect.width(), .round = false}, rect);
    else
        symbol(painter, {.name = "app.fill", .size = rect.width(), .ink = colors.track(false).fill},
               rect.center());
}

}  // namespace OrvelUI::Drawing
