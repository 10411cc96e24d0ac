#include "OrvelSystem/Qt/QtScreens.h"

#include <QGuiApplication>
#include <QScreen>

namespace OrvelSystem::QtScreens {

namespace {

const QScreen* screenAt(OrvelCore::Point pixels) {
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QRectF area(screen->geometry().topLeft(),
                          QSizeF(screen->size()) * screen->devicePixelRatio());
        if (area.contains(pixels.x, pixels.y)) return screen;
    }
    return QGuiApplication::primaryScreen();
}

}  // namespace

QPoint logical(OrvelCore::Point pixels) {
    const QScreen* const screen = screenAt(pixels);
    const QPointF point(pixels.x, pixels.y);
    if (screen == nullptr) return point.toPoint();
    const QPointF origin = screen->geometry().topLeft();
    return ((point - origin) / screen->devicePixelRatio() + origin).toPoint();
}

double scaleAt(OrvelCore::Point pixels) {
    const QScreen* const screen = screenAt(pixels);
    return screen == nullptr ? 1 : screen->devicePixelRatio();
}

}  // namespace OrvelSystem::QtScreens
