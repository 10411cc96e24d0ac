#include "OrvelLock/X11/X11Kiosk.h"

#include <QGuiApplication>
#include <QWindow>
#include <ctime>
#include <utility>

#include "OrvelBlur/X11/CompositeOverlay.h"
#include "OrvelBlur/X11/PanelStack.h"
#include "OrvelSystem/X11/LockerWindow.h"
#include "OrvelSystem/X11/OverlayWindow.h"
#include "OrvelSystem/X11/StandIn.h"
#include "OrvelUI/Palette.h"

namespace OrvelLock {

using OrvelBlur::CompositeOverlay;
using OrvelBlur::PanelStack;
using OrvelSystem::InputDevices;
using OrvelSystem::StandIn;
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

double uptime() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

}  // namespace

X11Kiosk& X11Kiosk::shared() {
    // Never destroyed: its window goes with the connection, which closes before statics are
    // destroyed.
    static auto& kiosk = *new X11Kiosk;
    return kiosk;
}

X11Kiosk::X11Kiosk()
    : backstop_([this] {
          hasCore_ = false;
          if (!isYielding_) reassert();
          onDisturbed();
      }),
      devices_(X11::shared().connection(), X11::shared().root()),
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
        devices_.takeStrays(backstop_.window());
        QTimer::singleShot(attachDelay, &attach_, [this] { devices_.forgetAttached(); });
    });
    locker_.setInterval(lockerInterval);
    QObject::connect(&locker_, &QTimer::timeout, [this] { tendYield(); });
}

void X11Kiosk::prepare() {
    backstop_.takeStandIn();
    backstop_.standIn().setKeys(StandIn::wanted);
    devices_.watchHierarchy();
    events_ = X11::shared().onEvent([this](const auto& event) { handle(event); });
}

void X11Kiosk::hideBackstop() {
    backstop_.hide();
    events_.reset();
}

bool X11Kiosk::hasKeys() const {
    if (isYielding_) return false;
    return hasCore_ || (stage_ == Stage::allTaken && devices_.holdKeyboard());
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
    if (stage_ != Stage::allTaken || !devices_.holdKeyboard()) return false;
    tookKeys();
    return true;
}

bool X11Kiosk::takeCore() {
    auto* const connection = X11::shared().connection();
    const xcb_window_t window = backstop_.window();
    // With owner events, the card's own window still receives its keys and clicks; all other input
    // goes to the backstop and to no other program.
    const auto keyboard = xcb_grab_keyboard(connection, 1, window, XCB_CURRENT_TIME,
                                            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const auto pointer = xcb_grab_pointer(
        connection, 1, window,
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
        return false;
    }
    next_.stop();
    stage_ = Stage::none;
    if (devices_.holdAny())
        attach_.start();
    else
        devices_.takeStrays(window);
    return true;
}

/// For core grabs that another client has. Escape is sent before the buttons are released, because
/// a button released over a menu item would choose it.
void X11Kiosk::takeDevices() {
    if (!devices_.areAvailable()) return;
    const double now = uptime();
    switch (stage_) {
        case Stage::none:
            devices_.take(backstop_.window());
            // The program may keep its grabs, raise windows, and outlive this one.
            holdCompositeOverlay();
            onNeedsDevices(true);
            devices_.pressEscape();
            stage_ = Stage::escapePressed;
            stageBegan_ = now;
            tellGuard();
            break;
        case Stage::escapePressed:
            if (now - stageBegan_ < menuPatience) break;
            devices_.releaseButtons();
            stage_ = Stage::buttonsReleased;
            stageBegan_ = now;
            break;
        case Stage::buttonsReleased:
            if (now - stageBegan_ < dragPatience) break;
            stage_ = Stage::allTaken;
            [[fallthrough]];
        case Stage::allTaken:
            // Also takes a device that another client's device grab held until now.
            devices_.takeXTest(backstop_.window());
            break;
    }
    next_.start(stage_ == Stage::allTaken ? stubbornInterval : stepInterval);
}

void X11Kiosk::tookKeys() {
    isYielding_ = false;
    locker_.stop();
    net_.takeDown();
    holdCompositeOverlay();
    onNeedsDevices(!hasCore_);
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
    QTimer::singleShot(renewalDelay, &next_, [this] { onNeedsDevices(!hasCore_ && hasKeys()); });
    releaseCompositeOverlay();
    auto* const connection = X11::shared().connection();
    xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
    xcb_ungrab_pointer(connection, XCB_CURRENT_TIME);
    devices_.release();
    net_.takeDown();
    X11::shared().flush();
}

bool X11Kiosk::reassert() {
    showBackstop();
    if (!take()) return false;
    PanelStack::shared().setYielding(false);
    return true;
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
    if (!backstop_.standIn().hasNet()) net_.putUp();
    hasCore_ = false;
    auto* const connection = X11::shared().connection();
    xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
    xcb_ungrab_pointer(connection, XCB_CURRENT_TIME);
    tellGuard();
    PanelStack::shared().setYielding(true);
    locker_.start();
}

/// Until a locker covers the screen, no window may be seen and no key be received by a program that
/// grabs the keyboard. A locker can have the core grabs nevertheless.
void X11Kiosk::holdForLocker() {
    holdCompositeOverlay();
    if (!devices_.areAvailable()) return;
    if (stage_ != Stage::allTaken) devices_.take(backstop_.window());
    devices_.takeXTest(backstop_.window());
    stage_ = Stage::allTaken;
    onNeedsDevices(true);
}

bool X11Kiosk::lockerCovers() const {
    if (PanelStack::shared().foreignLockerIsOnTop()) return true;
    // A compositing manager that locks the screen draws its prompt itself, without a window.
    return OrvelSystem::isComposited(X11::shared().connection(), X11::shared().screenNumber()) &&
           keyboardIsGrabbedByOther();
}

bool X11Kiosk::keyboardIsGrabbedByOther() const {
    return OrvelSystem::isKeyboardGrabbedByOther(X11::shared().connection(), backstop_.window());
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
        stage_ = Stage::none;
        devices_.release();
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
        if (hasCore_)
            devices_.takeStrays(backstop_.window());
        else if (stage_ != Stage::none)
            devices_.takeAgain(backstop_.window());
        return;
    }
    if (event.response_type == XCB_MAPPING_NOTIFY) {
        // Window managers then grab their keys again, at a time that is not known.
        QTimer::singleShot(renewalDelay, &next_, [this] { net_.renew(); });
        return;
    }
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

/// Qt ignores keys of a single device but accepts key events that are sent to its window.
void X11Kiosk::passOn(const InputDevices::Key& key) {
    const auto* const window = QGuiApplication::focusWindow();
    if (window == nullptr) return;
    xcb_key_press_event_t event{};
    event.response_type = key.isPress ? XCB_KEY_PRESS : XCB_KEY_RELEASE;
    event.detail = key.code;
    event.time = key.time;
    event.root = X11::shared().root();
    event.event = static_cast<xcb_window_t>(window->winId());
    event.state = key.state;
    event.same_screen = 1;
    xcb_send_event(X11::shared().connection(), 0, event.event, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&event));
    X11::shared().flush();
}

}  // namespace OrvelLock
