#include "OrvelModes/Linux/Compositing.h"

#include <QPainter>
#include <string>

#include "OrvelSystem/Linux/X11.h"

namespace OrvelModes {

using OrvelSystem::X11;
using OrvelSystem::XReply;

bool Compositing::isOn() {
    auto& x11 = X11::shared();
    const auto selection = "_NET_WM_CM_S" + std::to_string(x11.screenNumber());
    const XReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        x11.connection(), xcb_get_selection_owner(x11.connection(), x11.atom(selection)), nullptr));
    return owner && owner->owner != XCB_NONE;
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
