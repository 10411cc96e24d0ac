#include "OrvelBlur/BlurBackend.h"
#include "OrvelBlur/Linux/QtPanelContent.h"
#include "OrvelCovers/AppKitBadgePresenter.h"
#include "OrvelCovers/CoverLook.h"
#include "OrvelSystem/Linux/Appearance.h"
#include "OrvelSystem/WindowServer.h"
#include "OrvelUI/Linux/LockViews.h"

namespace OrvelCovers {

using OrvelBlur::OverlayPanel;
using OrvelBlur::QtPanelContent;
using OrvelSystem::Appearance;

AppKitBadgePresenter::System AppKitBadgePresenter::System::live() {
    return {
        .makePanel =
            [](const OrvelCore::Rect& frame, int level) {
                auto panel = OverlayPanel::make(frame, level);
                // What looks out around the rounded card is the same blur as beside it.
                if (Appearance::shared().reducesTransparency())
                    panel->setBackdrop(OverlayPanel::Fill{CoverLook::opaqueFill});
                else
                    panel->setBackdrop(OverlayPanel::ServerBlur{});
                panel->setTint(CoverLook::tint);
                panel->setRadius(CoverLook::radius);
                for (const auto layer : {OverlayPanel::Layer::tint, OverlayPanel::Layer::grain,
                                         OverlayPanel::Layer::content})
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
        .visibleFrame =
            [] {
                const auto displays = OrvelSystem::WindowServer::displayBounds();
                return displays.empty() ? OrvelCore::Rect() : displays.front();
            },
    };
}

}  // namespace OrvelCovers
