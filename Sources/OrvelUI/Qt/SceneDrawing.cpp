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

QImage blurred(QImage image, double radius) {
    for (const auto& size : blurSizes(
             {static_cast<double>(image.width()), static_cast<double>(image.height())}, radius))
        image = image.scaled(static_cast<int>(size.width), static_cast<int>(size.height),
                             Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image;
}

void lockCard(QPainter& painter, const QRectF& rect, const SceneCover& cover) {
    painter.save();
    painter.setOpacity(painter.opacity() * cover.card);
    painter.translate(rect.topLeft());
    const double unit = rect.width() / DesktopScene::size.width;
    auto card = SceneCard::of(cover);
    const QTransform scale = QTransform::fromScale(unit, unit);
    for (const auto& shape : card.shapes)
        painter.fillPath(scale.map(path(shape.path)), color(shape.ink));
    for (auto& [mark, centre] : card.marks) {
        mark.size *= unit;
        symbol(painter, mark, {centre.x * unit, centre.y * unit});
    }
    if (card.text) {
        auto& [text, area] = *card.text;
        text.size *= unit;
        label(painter, text, {area.x * unit, area.y * unit, area.width * unit, area.height * unit});
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
