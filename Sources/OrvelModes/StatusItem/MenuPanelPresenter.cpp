#include "OrvelModes/StatusItem/MenuPanelPresenter.h"

#include <utility>

#include "OrvelCore/MenuRules.h"

namespace OrvelModes {

using OrvelCore::Point;
using OrvelCore::Rect;

namespace {

// Seconds in which a press may still turn out to be a click on the status item.
constexpr double clickPatience = 1;

}  // namespace

MenuPanelPresenter::MenuPanelPresenter(OrvelUI::MenuPanelModel& model, OrvelSystem::MainLoop& loop,
                                       MenuPanelSystem system)
    : model_(model), loop_(loop), system_(std::move(system)) {
    model_.onResize = lifetime_.guard([this] {
        if (isOpen_) place();
    });
    model_.onDone = lifetime_.guard([this] { close(true); });
}

MenuPanelPresenter::~MenuPanelPresenter() = default;

void MenuPanelPresenter::toggle(const Rect& anchor, const Rect& screen, bool takesKeyboard) {
    if (isOpen_) return close(hasKeyboard_);
    // The position of a status item that another program draws is not known exactly, so the press
    // has already closed the panel when the item reports the click.
    if (closingPress_.isSet()) return forgetPress();
    open(anchor, screen, takesKeyboard);
}

void MenuPanelPresenter::open(const Rect& anchor, const Rect& screen, bool takesKeyboard) {
    if (isOpen_) return;
    forgetPress();
    anchor_ = anchor;
    screen_ = screen;
    onWillOpen();
    if (!panel_) {
        panel_ = system_.makePanel(model_);
        panel_->onCancel = lifetime_.guard([this] { close(true); });
    }
    panel_->renewView();
    place();
    hasKeyboard_ = takesKeyboard;
    panel_->orderFront(takesKeyboard);
    isOpen_ = true;
    watchForDismissal();
}

void MenuPanelPresenter::place() {
    using namespace OrvelCore;
    const Size size = panel_->fittingSize(MenuPanelPlacement::room(anchor_, screen_));
    frame_ = MenuPanelPlacement::frame(anchor_, size, screen_);
    panel_->setFrame(frame_);
}

void MenuPanelPresenter::watchForDismissal() {
    presses_ = system_.watchPresses([this](Point at) { pressed(at); });
    activations_ = system_.watchActivations([this](std::int64_t pid) {
        if (pid != system_.ownPID) close(false);
    });
}

void MenuPanelPresenter::pressed(Point at) {
    if (!isOpen_) return forgetPress();
    if (frame_.contains(at) || anchor_.contains(at)) return;
    auto presses = presses_;
    close(false);
    presses_ = std::move(presses);
    closingPress_ = loop_.after(clickPatience, [this] { forgetPress(); });
}

void MenuPanelPresenter::forgetPress() {
    presses_.reset();
    closingPress_.cancel();
}

void MenuPanelPresenter::close(bool handBack) {
    if (!isOpen_) return;
    isOpen_ = false;
    const bool hadKeyboard = std::exchange(hasKeyboard_, false);
    presses_.reset();
    activations_.reset();
    panel_->orderOut(handBack);
    model_.showsPrivateChoices.set(false);
    if (handBack && hadKeyboard) onHandBack();
}

}  // namespace OrvelModes
