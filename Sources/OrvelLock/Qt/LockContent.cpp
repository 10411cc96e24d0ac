#include "OrvelBlur/Qt/QtPanelContent.h"
#include "OrvelLock/LiveLockSurface.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelUI/Qt/LockViews.h"

namespace OrvelLock {

using OrvelSystem::Appearance;

std::shared_ptr<OrvelBlur::PanelContent> makeLockContent(const LockSurfaceContent& content) {
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
    return std::make_shared<OrvelBlur::QtPanelContent>(make, place);
}

}  // namespace OrvelLock
