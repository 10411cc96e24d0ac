#include <QGuiApplication>
#include <algorithm>
#include <span>

#include "OrvelBlur/Qt/QtPanelContent.h"
#include "OrvelCovers/AppKitBadgePresenter.h"
#include "OrvelCovers/CoverLook.h"
#include "OrvelSystem/PointerState.h"
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

/// The display with the pointer, which is the one in use.
OrvelCore::Rect frameWithoutBars() {
    const auto displays = OrvelSystem::WindowServer::displayBounds();
    if (displays.empty()) return {};
    const auto pointer = OrvelSystem::PointerState::location();
    const auto found = std::ranges::find_if(
        displays, [&](const OrvelCore::Rect& display) { return display.contains(pointer); });
    const auto display = found == displays.end() ? displays.front() : *found;
    // For each desktop one rectangle around all displays, without the bars. The properties are
    // missing without a window manager.
    auto& x11 = X11::shared();
    const auto current = x11.property32(x11.root(), "_NET_CURRENT_DESKTOP", 1);
    constexpr std::uint32_t mostDesktops = 64;
    const auto areas = x11.property32(x11.root(), "_NET_WORKAREA", 4 * mostDesktops);
    const std::size_t at = current.empty() ? 0 : std::size_t{4} * current.front();
    if (areas.size() < at + 4) return display;
    const OrvelCore::Rect work{double(areas[at]), double(areas[at + 1]), double(areas[at + 2]),
                               double(areas[at + 3])};
    return display.intersection(work).value_or(display);
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
                // The corners around the rounded card must look like the cover beside them, which
                // is already blurred and tinted.
                if (Appearance::shared().reducesTransparency())
                    panel->setBackdrop(OverlayPanel::Fill{CoverLook::opaqueFill});
                else
                    panel->setBackdrop(OverlayPanel::ServerBlur{});
                panel->setTint(CoverLook::tint);
                panel->setRadius(0);
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
