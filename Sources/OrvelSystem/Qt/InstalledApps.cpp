#include "OrvelSystem/Qt/InstalledApps.h"

#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <algorithm>
#include <set>
#include <utility>

#include "OrvelCore/Brand.h"
#include "OrvelCore/Text.h"
#include "OrvelSystem/Linux/WellKnownApps.h"

namespace OrvelSystem {

namespace {

constexpr int iconSize = 64;  // pixels

std::shared_ptr<const Picture> pictureOf(const QIcon& icon) {
    const QImage image = icon.pixmap(QSize(iconSize, iconSize), 1).toImage();
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

/// `name` is a name in the icon theme or a path.
std::shared_ptr<const Picture> iconNamed(const std::string& name) {
    if (name.empty()) return nullptr;
    const auto text = QString::fromStdString(name);
    // A session without a desktop sets no icon theme. Adwaita is installed together with most apps.
    if (QIcon::fallbackThemeName().isEmpty()) QIcon::setFallbackThemeName("Adwaita");
    const QIcon icon = name.front() == '/' ? QIcon(text) : QIcon::fromTheme(text);
    return pictureOf(icon);
}

}  // namespace

InstalledApps::InstalledApps() {
    entries_.onChange = [this] { icons_.clear(); };
}

const DesktopEntry* InstalledApps::entryOf(std::string_view bundleID) {
    for (const auto& id : entriesForBundleID(bundleID)) {
        if (const auto* const entry = entries_.find(id)) return entry;
    }
    return nullptr;
}

std::shared_ptr<const Picture> InstalledApps::icon(std::string_view bundleID) {
    if (const auto known = icons_.find(bundleID); known != icons_.end()) return known->second;
    const auto* const entry = entryOf(bundleID);
    auto picture = entry ? iconNamed(entry->icon) : nullptr;
    if (!picture && bundleID == OrvelCore::Brand::bundleIdentifier)
        picture = pictureOf(QGuiApplication::windowIcon());
    icons_.emplace(bundleID, picture);
    return picture;
}

std::vector<InstalledApplication> InstalledApps::all() {
    std::vector<InstalledApplication> installed;
    std::set<std::string> seen;
    for (const auto& entry : entries_.all()) {
        auto bundleID = bundleIDForEntry(entry.id);
        if (entry.isShown && seen.insert(bundleID).second)
            installed.push_back({std::move(bundleID), entry.name});
    }
    std::ranges::stable_sort(installed, OrvelCore::NaturalOrder(), &InstalledApplication::name);
    return installed;
}

std::optional<std::string> InstalledApps::name(std::string_view bundleID) {
    const auto* const entry = entryOf(bundleID);
    return entry ? std::optional(entry->name) : std::nullopt;
}

}  // namespace OrvelSystem
