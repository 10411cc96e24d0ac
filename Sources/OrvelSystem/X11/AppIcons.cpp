#include "OrvelSystem/X11/AppIcons.h"

#include <QIcon>
#include <QImage>

#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem::AppIcons {

namespace {

constexpr int iconSize = 64;  // pixels
/// Limits the icons that a program attaches to its window, in 32-bit words: a few sizes up to 256
/// pixels.
constexpr std::uint32_t mostIconWords = 1 << 18;

std::shared_ptr<const Picture> pictureOf(const QImage& image) {
    if (image.isNull()) return nullptr;
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32);
    auto picture = std::make_shared<Picture>();
    picture->width = pixels.width();
    picture->height = pixels.height();
    for (int y = 0; y < pixels.height(); ++y) {
        const auto* const row = reinterpret_cast<const std::uint32_t*>(pixels.constScanLine(y));
        picture->pixels.insert(picture->pixels.end(), row, row + pixels.width());
    }
    return picture;
}

}  // namespace

std::shared_ptr<const Picture> named(const std::string& name) {
    if (name.empty()) return nullptr;
    const auto text = QString::fromStdString(name);
    // A session without a desktop sets no icon theme. Adwaita is installed together with most apps.
    if (QIcon::fallbackThemeName().isEmpty()) QIcon::setFallbackThemeName("Adwaita");
    const QIcon icon = name.front() == '/' ? QIcon(text) : QIcon::fromTheme(text);
    if (icon.isNull()) return nullptr;
    return pictureOf(icon.pixmap(QSize(iconSize, iconSize), 1).toImage());
}

std::shared_ptr<const Picture> ofWindow(xcb_window_t window) {
    const auto words = X11::shared().property32(window, "_NET_WM_ICON", mostIconWords);
    // Each icon consists of its width, its height and its pixels. Choose the smallest icon that is
    // wide enough, or else the largest.
    std::size_t best = words.size();
    for (std::size_t at = 0; at + 2 < words.size();) {
        const std::size_t pixels = std::size_t{words[at]} * words[at + 1];
        if (words[at] == 0 || pixels == 0 || pixels > words.size() - at - 2) break;
        const bool isBetter =
            best == words.size() ||
            (words[best] < iconSize ? words[at] > words[best]
                                    : words[at] >= iconSize && words[at] < words[best]);
        if (isBetter) best = at;
        at += pixels + 2;
    }
    if (best == words.size()) return nullptr;
    auto picture = std::make_shared<Picture>();
    picture->width = static_cast<int>(words[best]);
    picture->height = static_cast<int>(words[best + 1]);
    const auto* const first = words.data() + best + 2;
    picture->pixels.assign(first, first + std::size_t{words[best]} * words[best + 1]);
    return picture;
}

}  // namespace OrvelSystem::AppIcons
