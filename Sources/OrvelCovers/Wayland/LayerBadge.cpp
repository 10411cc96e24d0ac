#include "OrvelCovers/Wayland/LayerBadge.h"

#include <QKeyEvent>
#include <QTimer>
#include <algorithm>

#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelUI/Qt/Drawing.h"
#include "OrvelUI/Qt/LockViews.h"

namespace OrvelCovers {

using OrvelBlur::FilledWindow;
using OrvelBlur::QtPanelContent;
using OrvelSystem::Appearance;

void LayerBadge::setContent(std::shared_ptr<OrvelBlur::PanelContent> content) {
    content_ = std::dynamic_pointer_cast<const QtPanelContent>(content);
    if (!content_)
        close();
    else if (window_)
        window_->setContent(content_);
}

void LayerBadge::makeKeyAndOrderFront() {
    if (!content_ || surface_) return;
    const auto outputs = outputs_.list();
    if (outputs.empty()) return;
    auto output = std::ranges::find_if(
        outputs, [this](const auto& candidate) { return candidate.frame.intersects(frame_); });
    if (output == outputs.end()) output = outputs.begin();
    // The content draws the card with its round corners.
    window_ = std::make_unique<FilledWindow>(std::nullopt);
    window_->setContent(content_);
    window_->onKey = [this](const QKeyEvent& event) {
        if (event.key() != Qt::Key_Escape) return;
        // Called in a later turn of the loop, because it destroys the window that receives the key.
        QTimer::singleShot(0, window_.get(), [this] {
            const auto cancelled = onCancel;
            if (cancelled) cancelled();
        });
    };
    surface_.emplace(
        compositor_, *window_, *output->screen,
        OrvelBlur::LayerSurface::Place{
            .size = QSizeF(frame_.width, frame_.height).toSize(),
            .position = QPointF(frame_.x - output->frame.x, frame_.y - output->frame.y).toPoint(),
            .takesKeyboard = true},
        [this](const QSize& size) { window_->fill(size); });
    surface_->onClosed = [this] {
        const auto cancelled = onCancel;
        if (cancelled) cancelled();
    };
    if (onKeyChanged) onKeyChanged();
}

void LayerBadge::close() {
    surface_.reset();
    // The content may be the caller.
    if (window_) window_.release()->deleteLater();
}

AppKitBadgePresenter::System layerBadges(const OrvelSystem::Compositor& compositor,
                                         OrvelSystem::Outputs& outputs) {
    return {
        .makePanel = [&](const OrvelCore::Rect&,
                         int) { return std::make_unique<LayerBadge>(compositor, outputs); },
        .makeContent = [](std::shared_ptr<OrvelUI::LockCardModel> model, bool unlocking,
                          std::function<void()> onTap, std::function<void()> onCancel)
            -> std::shared_ptr<OrvelBlur::PanelContent> {
            if (!unlocking) return nullptr;
            const auto make = [=]() -> std::unique_ptr<QWidget> {
                return OrvelUI::makeAppLockBadge(*model, true, Appearance::shared().reducesMotion(),
                                                 onTap, onCancel);
            };
            const auto place = [](const QWidget& widget, const QSize& panel) {
                return static_cast<const OrvelUI::OverlayView&>(widget).placement(panel);
            };
            return std::make_shared<QtPanelContent>(make, place);
        },
        .visibleFrame =
            [&outputs] {
                const auto frames = outputs.frames();
                return frames.empty() ? OrvelCore::Rect{} : frames.front();
            },
        .scale = OrvelUI::Drawing::uiScale,
        .isAbove = [](OrvelCore::WindowID, OrvelCore::WindowID) { return true; },
    };
}

}  // namespace OrvelCovers
