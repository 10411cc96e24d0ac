#include "OrvelLock/X11/X11Kiosk.h"

#include <utility>

#include "OrvelBlur/X11/CompositeOverlay.h"
#include "OrvelBlur/X11/PanelStack.h"
#include "OrvelSystem/Uptime.h"
#include "OrvelSystem/X11/LockerWindow.h"
#include "OrvelSystem/X11/OverlayWindow.h"
#include "OrvelSystem/X11/StandIn.h"
#include "OrvelUI/Palette.h"

namespace OrvelLock {

using OrvelBlur::CompositeOverlay;
using OrvelBlur::PanelStack;
using OrvelSystem::InputDevices;
using OrvelSystem::StandIn;
using OrvelSystem::uptime;
using OrvelSystem::X11;
using OrvelSystem::XReply;

namespace {

// Seconds that a program has to close its menu, and to end a drag.
constexpr double menuPatience = 0.1;
constexpr double dragPatience = 0.03;
// Seconds, less than the session waits for the system's lock before it shows the card again.
constexpr double lockerPatience = 3;
// Milliseconds between two looks for a locker. The server does not report grabs.
constexpr int lockerInterval = 50;
// Milliseconds from the core grabs until the devices are attached again.
constexpr int attachDelay = 50;
// All in milliseconds. `stepInterval` is between two tries, `stubbornInterval` between tries
// against a client that keeps its grabs.
constexpr int stepInterval = 5;
constexpr int stubbornInterval = 100;
constexpr int disturbancePause = 20;
constexpr int renewalDelay = 250;

}  // namespace

X11Kiosk& X11Kiosk::shared() {
    // Never destroyed: its window goes with the connection, which closes before statics are
    // destroyed.
    static auto& kiosk = *new X11Kiosk;
    return kiosk;
}

X11Kiosk::X11Kiosk()
    : devices_(X11::shared().connection(), X11::shared().root()),
      net_(X11::shared().connection(), X11::shared().root()) {
    next_.setSingleShot(true);
    QObject::connect(&next_, &QTimer::timeout, [this] { take(); });
    disturbed_.setSingleShot(true);
    disturbed_.setInterval(disturbancePause);
    QObject::connect(&disturbed_, &QTimer::timeout, [this] {
        tendYield();
        onDisturbed();
    });
    // Until the guard has ended its own grabs of the devices, their keys would go to the guard.
    attach_.setSingleShot(true);
    attach_.setInterval(attachDelay);
    QObject::connect(&attach_, &QTimer::timeout, [this] {
        if (!hasCore_) return;
        devices_.attach();
        devices_.takeStrays();
        QTimer::singleShot(attachDelay, &attach_, [this] { devices_.forgetAttached(); });
    });
    locker_.setInterval(lockerInterval);
    QObject::connect(&locker_, &QTimer::timeout, [this] { tendYield(); });
}

void X11Kiosk::prepare() {
    // In this order: a guard that is told that no keys are taken releases those that it holds.
    backstop_.standIn().setKeys(StandIn::wanted);
    backstop_.takeStandIn();
    devices_.watchHierarchy();
    events_ = X11::shared().onEvent([this](const auto& event) { handle(event); });
}

void X11Kiosk::hideBackstop() {
    backstop_.hide();
    events_.reset();
}

bool X11Kiosk::hasKeys() const {
    if (isYielding_) return false;
    // From the first stage on, no other program receives a key of the hardware.
    return hasCore_ || (stage_ != Stage::none && devices_.holdKeyboard());
}

bool X11Kiosk::take() {
    if (hasCore_) return true;
    if (takeCore()) {
        tookKeys();
        return true;
    }
    // A locker that came first keeps the keyboard, because its prompt is what the owner sees.
    if (PanelStack::shared().foreignLockerIsOnTop()) {
        if (!isYielding_) backstop_.standIn().setKeys(StandIn::taken);
        return false;
    }
    takeDevices();
    if (stage_ == Stage::allTaken && devices_.holdKeyboard()) tookKeys();
    return hasKeys();
}

bool X11Kiosk::takeCore() {
    if (!grabCore()) return false;
    next_.stop();
    stage_ = Stage::none;
    if (devices_.holdAny())
        attach_.start();
    else
        devices_.takeStrays();
    return true;
}

bool X11Kiosk::grabCore() {
    auto* const connection = X11::shared().connection();
    // No client can end a grab of the root window by unmapping or destroying it. With owner events,
    // the card's own window still receives its keys and clicks; no other program receives any.
    const xcb_window_t root = X11::shared().root();
    const auto keyboard = xcb_grab_keyboard(connection, 1, root, XCB_CURRENT_TIME,
                                            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const auto pointer = xcb_grab_pointer(
        connection, 1, root,
        XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION,
        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME);
    const XReply<xcb_grab_keyboard_reply_t> keyboardReply(
        xcb_grab_keyboard_reply(connection, keyboard, nullptr));
    const XReply<xcb_grab_pointer_reply_t> pointerReply(
        xcb_grab_pointer_reply(connection, pointer, nullptr));
    const bool hasKeyboard = keyboardReply && keyboardReply->status == XCB_GRAB_STATUS_SUCCESS;
    const bool hasPointer = pointerReply && pointerReply->status == XCB_GRAB_STATUS_SUCCESS;
    hasCore_ = hasKeyboard && hasPointer;
    if (!hasCore_) {
        if (hasKeyboard) xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
        if (hasPointer) xcb_ungrab_pointer(connection, XCB_CURRENT_TIME);
    }
    return hasCore_;
}

/// For core grabs that another client has. Escape is sent before the buttons are released, because
/// a button released over a menu item would choose it.
void X11Kiosk::takeDevices() {
    if (!devices_.areAvailable()) return;
    const double now = uptime();
    switch (stage_) {
        case Stage::none:
            devices_.take();
            // The program may keep its grabs, raise windows, and outlive this one.
            holdCompositeOverlay();
            onNeedsDevices(true);
            devices_.fake().pressEscape();
            stage_ = Stage::escapePressed;
            stageBegan_ = now;
            tellGuard();
            break;
        case Stage::escapePressed:
            if (now - stageBegan_ < menuPatience) break;
            devices_.fake().releaseButtons();
            stage_ = Stage::buttonsReleased;
            stageBegan_ = now;
            break;
        case Stage::buttonsReleased:
            if (now - stageBegan_ < dragPatience) break;
            stage_ = Stage::allTaken;
            [[fallthrough]];
        case Stage::allTaken:
            // Also takes a device that another client's device grab held until now.
            devices_.takeXTest();
            break;
    }
    next_.start(stage_ == Stage::allTaken ? stubbornInterval : stepInterval);
}

void X11Kiosk::tookKeys() {
    // Not before the screen is covered, because it waits for the server. The tick that follows
    // takes the grabs again if they ended before.
    devices_.watchEndOfGrabs(true);
    isYielding_ = false;
    locker_.stop();
    net_.takeDown();
    holdCompositeOverlay();
    onNeedsDevices(true);
    tellGuard();
    backstop_.standIn().takeDown();
}

void X11Kiosk::holdCompositeOverlay() {
    holdsCompositeOverlay_ = CompositeOverlay::shared().hold(OrvelUI::Palette::lockTint);
}

void X11Kiosk::releaseCompositeOverlay() {
    CompositeOverlay::shared().release();
    holdsCompositeOverlay_ = false;
}

void X11Kiosk::tellGuard() {
    const bool needsDevices = !hasCore_ && stage_ != Stage::none;
    backstop_.standIn().setKeys((needsDevices ? StandIn::takenFromDevices : StandIn::taken) |
                                (holdsCompositeOverlay_ ? StandIn::underCompositeOverlay : 0U));
}

void X11Kiosk::giveBack() {
    hasCore_ = isYielding_ = false;
    stage_ = Stage::none;
    next_.stop();
    attach_.stop();
    locker_.stop();
    disturbed_.stop();
    backstop_.standIn().setKeys(StandIn::free);
    // The guard releases its own device grabs asynchronously, so those of this program have to
    // wait.
    QTimer::singleShot(renewalDelay, &next_, [this] { onNeedsDevices(hasKeys() || isYielding_); });
    releaseCompositeOverlay();
    // The core devices miss the release of what was pressed before its device was taken. While the
    // core grabs last, no program receives these releases, nor a key that is still held and
    // repeats.
    devices_.release();
    devices_.fake().releaseKeys();
    devices_.fake().releaseButtons();
    auto* const connection = X11::shared().connection();
    xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
    xcb_ungrab_pointer(connection, XCB_CURRENT_TIME);
    devices_.watchEndOfGrabs(false);
    net_.takeDown();
    X11::shared().flush();
}

bool X11Kiosk::reassert() {
    showBackstop();
    // The server reports the end of a grab only as a change of focus. A key can end it if the
    // keyboard layout has the option `grab:break_actions`.
    if (hasCore_) grabCore();
    if (!take()) return false;
    PanelStack::shared().setYielding(false);
    return true;
}

/// The server reports the end of the core grabs to their window, but not the end of a grab of a
/// device.
bool X11Kiosk::reportsLosses() const {
    return hasCore_ && !isYielding_ && devices_.areAvailable() && !devices_.holdAny();
}

void X11Kiosk::yield() {
    PanelStack::shared().raise();
    next_.stop();
    // The session asks again each time that it has tried in vain to take the desktop back.
    if (!std::exchange(isYielding_, true)) {
        rivalHasKeys_ = !hasCore_ && stage_ != Stage::none;
        lockerCameAt_ = 0;
    }
    if (!PanelStack::shared().foreignLockerIsOnTop()) holdForLocker();
    backstop_.standIn().takeDown();
    // Keeps the keys from the window manager once the devices are let go. The guard's net also
    // survives this program.
    if (!backstop_.standIn().hasNet()) putUpNet();
    hasCore_ = false;
    auto* const connection = X11::shared().connection();
    xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
    xcb_ungrab_pointer(connection, XCB_CURRENT_TIME);
    tellGuard();
    PanelStack::shared().setYielding(true);
    locker_.start();
}

void X11Kiosk::putUpNet() {
    net_.putUp();
    net_.watchGrabs();
    if (grabs_ || net_.descriptor() < 0) return;
    grabs_ = std::make_unique<QSocketNotifier>(net_.descriptor(), QSocketNotifier::Read);
    QObject::connect(grabs_.get(), &QSocketNotifier::activated, [this] {
        net_.handleGrabs();
        grabs_->setEnabled(net_.descriptor() >= 0);
    });
}

/// Until a locker covers the screen, no window may be seen and no key be received by a program that
/// grabs the keyboard. A locker can have the core grabs nevertheless.
void X11Kiosk::holdForLocker() {
    holdCompositeOverlay();
    if (!devices_.areAvailable()) return;
    if (stage_ != Stage::allTaken) devices_.take();
    devices_.takeXTest();
    stage_ = Stage::allTaken;
    onNeedsDevices(true);
}

bool X11Kiosk::lockerCovers() const {
    if (PanelStack::shared().foreignLockerIsOnTop() || CompositeOverlay::shared().hasLocker())
        return true;
    // A compositing manager that locks the screen draws its prompt itself, without a window. A
    // program that had the keyboard before the hand-off is not that.
    return !rivalHasKeys_ &&
           OrvelSystem::isComposited(X11::shared().connection(), X11::shared().screenNumber()) &&
           keyboardIsGrabbedByOther();
}

bool X11Kiosk::keyboardIsGrabbedByOther() const {
    return OrvelSystem::isKeyboardGrabbedByOther(X11::shared().connection(), X11::shared().root());
}

void X11Kiosk::tendYield() {
    if (!isYielding_) return;
    if (!lockerCovers()) {
        lockerCameAt_ = 0;
        rivalHasKeys_ = keyboardIsGrabbedByOther();
        holdForLocker();
        tellGuard();
        if (!locker_.isActive()) locker_.start();
        return;
    }
    const double now = uptime();
    if (lockerCameAt_ == 0) lockerCameAt_ = now;
    releaseCompositeOverlay();
    // The server does not tell which client has the keyboard: the locker, or still the one that had
    // it before. A locker that does not get the keyboard gives up within `lockerPatience`.
    const bool lockerHasKeys =
        keyboardIsGrabbedByOther() && (!rivalHasKeys_ || now - lockerCameAt_ >= lockerPatience);
    if (lockerHasKeys) {
        locker_.stop();
        if (std::exchange(stage_, Stage::none) != Stage::none) devices_.release();
        // A locker has only the core keyboard.
        devices_.takeStrays();
    }
    tellGuard();
}

bool X11Kiosk::isHeldByLocker() {
    tendYield();
    return stage_ == Stage::none && lockerCovers() && keyboardIsGrabbedByOther();
}

void X11Kiosk::handle(const xcb_generic_event_t& event) {
    if (const auto key = devices_.keyOf(event)) {
        if (!isYielding_) passOn(*key);
        return;
    }
    if (devices_.isHierarchyChange(event)) {
        devices_.releaseLate();
        if (stage_ != Stage::none && !hasCore_)
            devices_.takeAgain();
        else if (hasCore_ || isYielding_)
            devices_.takeStrays();
        return;
    }
    if (hasCore_ && devices_.isEndOfGrab(event)) return onDisturbed();
    if (!isYielding_) return;
    switch (event.response_type) {
        case XCB_MAP_NOTIFY:
        case XCB_UNMAP_NOTIFY:
        case XCB_DESTROY_NOTIFY:
        case XCB_FOCUS_IN:
        case XCB_FOCUS_OUT:
            if (!disturbed_.isActive()) disturbed_.start();
            break;
        default:
            break;
    }
}

/// Qt ignores keys of a single device but accepts key events that are sent to its window. The
/// server knows which window has the focus: Qt takes a grab of another client for a loss of the
/// focus.
void X11Kiosk::passOn(const InputDevices::Key& key) {
    auto* const connection = X11::shared().connection();
    const XReply<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    const auto* const setup = xcb_get_setup(connection);
    if (!focus || (focus->focus & ~setup->resource_id_mask) != setup->resource_id_base) return;
    xcb_key_press_event_t event{};
    event.response_type = key.isPress ? XCB_KEY_PRESS : XCB_KEY_RELEASE;
    event.detail = key.code;
    event.time = key.time;
    event.root = X11::shared().root();
    event.event = focus->focus;
    event.state = key.state;
    event.same_screen = 1;
    xcb_send_event(connection, 0, event.event, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&event));
    X11::shared().flush();
}

}  // namespace OrvelLock
