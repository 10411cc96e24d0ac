#include "OrvelLock/Qt/LiveLockSurface.h"

#include "OrvelBlur/Qt/QtPanelContent.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelUI/Qt/LockViews.h"

namespace OrvelLock {

using OrvelBlur::QtPanelContent;
using OrvelSystem::Appearance;

void LiveLockSurface::setContent(const std::optional<LockSurfaceContent>& content) {
    if (!content) {
        surface_->setContent(nullptr);
        return;
    }
    const auto make = [content = *content]() -> std::unique_ptr<QWidget> {
        if (content.kind == LockContent::pill)
            return OrvelUI::makeSecondaryDisplayPill(*content.model, content.notch);
        const auto& appearance = Appearance::shared();
        return OrvelUI::makeLockScreenContent(*content.model, content.notch,
                                              appearance.reducesMotion(),
                                              appearance.increasesContrast());
    };
    const auto place = [](const QWidget& widget, const QSize& panel) {
        return static_cast<const OrvelUI::OverlayView&>(widget).placement(panel);
    };
    surface_->setContent(std::make_shared<QtPanelContent>(make, place));
}

}  // namespace OrvelLock
