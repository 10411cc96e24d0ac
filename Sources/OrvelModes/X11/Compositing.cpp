#include "OrvelModes/X11/Compositing.h"

#include <QPainter>

#include "OrvelSystem/X11/OverlayWindow.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelModes {

bool Compositing::isOn() {
    const auto& x11 = OrvelSystem::X11::shared();
    return OrvelSystem::isComposited(x11.connection(), x11.screenNumber());
}

QBitmap Compositing::mask(const QPainterPath& outline, const QSize& size) {
    QImage cover(size, QImage::Format_Alpha8);
    cover.fill(0);
    QPainter painter(&cover);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline, Qt::black);
    painter.end();
    QImage mask(cover.size(), QImage::Format_MonoLSB);
    for (int y = 0; y < cover.height(); ++y) {
        for (int x = 0; x < cover.width(); ++x)
            mask.setPixel(x, y, cover.constScanLine(y)[x] >= 128 ? 0 : 1);
    }
    mask.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    return QBitmap::fromImage(mask);
}

}  // namespace OrvelModes
