#include <QGuiApplication>
#include <algorithm>
#include <span>

#include "OrvelBlur/Qt/QtPanelContent.h"
#include "OrvelCovers/AppKitBadgePresenter.h"
#include "OrvelCovers/CoverLook.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelSystem/WindowServer.h"
#include "OrvelSystem/X11/X11.h"
#include "OrvelUI/Qt/Drawing.h"
#include "OrvelUI/Qt/LockViews.h"

namespace OrvelCovers {

using OrvelBlur::OverlayPanel;
using OrvelBlur::QtPanelContent;
using OrvelSystem::Appearance;
using OrvelSystem::X11;

namespace {

OrvelCore::Rect frameWithoutBars() {
    const auto displays = OrvelSystem::WindowServer::displayBounds();
    if (displays.empty()) return {};
    // One rectangle around all displays, without the bars. The property is missing without a window
    // manager.
    auto& x11 = X11::shared();
    const auto area = x11.property32(x11.root(), "_NET_WORKAREA", 4);
    if (area.size() < 4) return displays.front();
    const OrvelCore::Rect work{double(area[0]), double(area[1]), double(area[2]), double(area[3])};
    return displays.front().intersection(work).value_or(displays.front());
}

/// Queries the server, because the mirror of its windows may lag behind this program's requests.
bool standsAbove(OrvelCore::WindowID window, OrvelCore::WindowID other) {
    const auto& x11 = X11::shared();
    const OrvelSystem::XReply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(
        x11.connection(), xcb_query_tree(x11.connection(), x11.root()), nullptr));
    if (!tree) return true;
    const std::span windows(xcb_query_tree_children(tree.get()),
                            static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    const auto found = std::ranges::find(windows, window);
    return std::find(found, windows.end(), other) == windows.end();
}

}  // namespace

AppKitBadgePresenter::System AppKitBadgePresenter::System::live() {
    return {
        .makePanel =
            [](const OrvelCore::Rect& frame, int level) {
                auto panel = OverlayPanel::make(frame, level);
                // The corners around the rounded card must look like the cover beside them. The
                // tint layer stays transparent, because the cover below is already tinted.
                if (Appearance::shared().reducesTransparency())
                    panel->setBackdrop(OverlayPanel::Fill{CoverLook::opaqueFill});
                else
                    panel->setBackdrop(OverlayPanel::ServerBlur{});
                panel->setTint(CoverLook::tint);
                panel->setRadius(CoverLook::radius);
                for (const auto layer : {OverlayPanel::Layer::grain, OverlayPanel::Layer::content})
                    panel->setOpacity(layer, 1);
                return panel;
            },
        .makeContent =
            [](std::shared_ptr<OrvelUI::LockCardModel> model, bool unlocking,
               std::function<void()> onTap, std::function<void()> onCancel) {
                const auto make = [=]() -> std::unique_ptr<QWidget> {
                    return OrvelUI::makeAppLockBadge(
                        *model, unlocking, Appearance::shared().reducesMotion(), onTap, onCancel);
                };
                const auto place = [](const QWidget& widget, const QSize& panel) {
                    return static_cast<const OrvelUI::OverlayView&>(widget).placement(panel);
                };
                return std::make_shared<QtPanelContent>(make, place);
            },
        .visibleFrame = frameWithoutBars,
        .scale = [] { return OrvelUI::Drawing::uiScale() * qGuiApp->devicePixelRatio(); },
        .isAbove = standsAbove,
    };
}

}  // namespace OrvelCovers
