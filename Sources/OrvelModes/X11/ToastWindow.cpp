#include "OrvelModes/X11/ToastWindow.h"

#include <cmath>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelBlur/X11/PanelStack.h"
#include "OrvelModes/X11/Compositing.h"
#include "OrvelSystem/PointerState.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelSystem/Qt/QtScreens.h"
#include "OrvelSystem/X11/Displays.h"
#include "OrvelSystem/X11/WindowServerMirror.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelModes {

using OrvelBlur::PanelStack;
using OrvelSystem::Appearance;
using OrvelSystem::X11;
using OrvelUI::NoticePillWidget;
namespace QtScreens = OrvelSystem::QtScreens;

ToastWindow::ToastWindow() {
    window_.setWindowFlags(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                           Qt::WindowTransparentForInput);
    window_.setAttribute(Qt::WA_TranslucentBackground);
    window_.setAttribute(Qt::WA_ShowWithoutActivating);
    window_.setAttribute(Qt::WA_X11NetWmWindowTypeNotification);
    window_.setWindowTitle(QStringLiteral("Karvo"));
    id_ = static_cast<xcb_window_t>(window_.winId());
    auto& x11 = X11::shared();
    const auto state = [&](std::string_view property, std::uint32_t value) {
        xcb_change_property(x11.connection(), XCB_PROP_MODE_REPLACE, id_, x11.atom(property),
                            XCB_ATOM_CARDINAL, 32, 1, &value);
    };
    // Otherwise compositing managers draw shadows around notifications.
    state("_COMPTON_SHADOW", 0);
    state(OrvelSystem::WindowServerMirror::levelProperty, OrvelBlur::WindowLevel::toast);
    PanelStack::shared().add(id_, OrvelBlur::WindowLevel::toast);
}

ToastWindow::~ToastWindow() {
    PanelStack::shared().remove(id_);
}

void ToastWindow::show(const OrvelUI::NoticePillContent& notice, const OrvelCore::Rect& display) {
    const OrvelCore::Point corner{display.x, display.y};
    const double scale = QtScreens::scaleAt(corner);
    const QSize area(static_cast<int>(std::floor(display.width / scale)),
                     static_cast<int>(std::floor(display.height / scale)));
    isComposited_ = Compositing::isOn();
    pill_ = std::make_unique<NoticePillWidget>(notice, std::nullopt, area.width(), isComposited_);
    pill_->setParent(&window_);
    pill_->show();
    window_.setGeometry(pill_->placement(area).translated(QtScreens::logical(corner)));
    setAlpha(1);
    window_.show();
    PanelStack::shared().orderFront(id_);
    X11::shared().flush();
}

void ToastWindow::setAlpha(double alpha) {
    if (isComposited_) {
        window_.clearMask();
        return pill_->setShown(alpha);
    }
    const int up = static_cast<int>(std::lround((1 - alpha) * pill_->height()));
    pill_->move(0, -up);
    window_.setMask(Compositing::mask(pill_->outline().translated(0, -up), pill_->size()));
}

void ToastWindow::orderOut() {
    window_.hide();
    PanelStack::shared().orderOut(id_);
    pill_.reset();
}

ToastSystem ToastSystem::live() {
    return {.makePanel = [] { return std::make_unique<ToastWindow>(); },
            .screens = OrvelSystem::Displays::frames,
            .pointer = OrvelSystem::PointerState::location,
            .reduceMotion = [] { return Appearance::shared().reducesMotion(); },
            .increasedContrast = [] { return Appearance::shared().increasesContrast(); }};
}

}  // namespace OrvelModes
