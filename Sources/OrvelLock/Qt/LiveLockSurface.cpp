#include "OrvelLock/Qt/LiveLockSurface.h"

#include "OrvelBlur/Qt/QtPanelContent.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelUI/Qt/LockViews.h"

namespace OrvelLock {

using OrvelBlur::QtPanelContent;
using OrvelSystem::Appearance;

std::shared_ptr<QtPanelContent> lockContent(const LockSurfaceContent& content) {
    const auto make = [content]() -> std::unique_ptr<QWidget> {
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
    return std::make_shared<QtPanelContent>(make, place);
}

void LiveLockSurface::setContent(const std::optional<LockSurfaceContent>& content) {
    surface_->setContent(content ? lockContent(*content) : nullptr);
}

}  // namespace OrvelLock
