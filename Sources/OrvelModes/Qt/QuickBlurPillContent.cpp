#include "OrvelModes/Qt/QuickBlurPillContent.h"

#include <utility>

#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelUI/Qt/NoticePillWidget.h"

namespace OrvelModes {

using OrvelUI::NoticePillWidget;
using OrvelUI::QuickBlurPill;

std::shared_ptr<OrvelBlur::PanelContent> makeQuickBlurPill(int width,
                                                           std::function<void()> onReveal) {
    const auto make = [width, onReveal = std::move(onReveal)]() -> std::unique_ptr<QWidget> {
        auto pill = std::make_unique<NoticePillWidget>(QuickBlurPill::content(std::nullopt),
                                                       std::nullopt, width, true, onReveal);
        const bool isStill = OrvelSystem::Appearance::shared().reducesMotion();
        pill->fadeOutAfter(QuickBlurPill::visibleFor, isStill ? 0 : QuickBlurPill::fadeSeconds);
        return pill;
    };
    const auto place = [](const QWidget& pill, const QSize& panel) {
        return static_cast<const OrvelUI::OverlayView&>(pill).placement(panel);
    };
    return std::make_shared<OrvelBlur::QtPanelContent>(make, place);
}

}  // namespace OrvelModes
