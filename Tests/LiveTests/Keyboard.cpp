#include "Keyboard.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

Keyboard::Keyboard(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
}

Keyboard::~Keyboard() {
    xcb_disconnect(connection_);
}

void Keyboard::down(xcb_keycode_t key) {
    fake(XCB_KEY_PRESS, key);
}
void Keyboard::up(xcb_keycode_t key) {
    fake(XCB_KEY_RELEASE, key);
}

void Keyboard::press(std::initializer_list<xcb_keycode_t> keys) {
    // A real key is never pressed in the same millisecond in which it was released.
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    for (const xcb_keycode_t key : keys) down(key);
    for (auto key = std::rbegin(keys); key != std::rend(keys); ++key) up(*key);
}

void Keyboard::fake(std::uint8_t type, xcb_keycode_t key) {
    xcb_test_fake_input(connection_, type, key, XCB_CURRENT_TIME, root_, 0, 0, 0);
    state();
}

std::uint16_t Keyboard::state() {
    const auto reply = replyOf(connection_, xcb_query_pointer, xcb_query_pointer_reply, root_);
    return reply ? reply->mask : 0;
}

bool Keyboard::grabKey(xcb_keycode_t key, std::uint16_t modifiers) {
    const XReply<xcb_generic_error_t> error(xcb_request_check(
        connection_, xcb_grab_key_checked(connection_, 0, root_, modifiers, key,
                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    return !error;
}

bool Keyboard::couldGrabKey(xcb_keycode_t key, std::uint16_t modifiers) {
    if (!grabKey(key, modifiers)) return false;
    ungrabKey(key, modifiers);
    return true;
}

void Keyboard::ungrabKey(xcb_keycode_t key, std::uint16_t modifiers) {
    xcb_ungrab_key(connection_, key, root_, modifiers);
    state();
}

int Keyboard::heard() {
    state();
    while (const auto event = XReply<xcb_generic_event_t>(xcb_poll_for_event(connection_)))
        heard_ += event->response_type == XCB_KEY_PRESS;
    return heard_;
}

void Keyboard::focus(xcb_window_t window) {
    xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    state();
}

void Keyboard::setModifiers(const xcb_keycode_t (&keys)[5]) {
    const xcb_keycode_t map[8] = {Key::leftShift, Key::capsLock, Key::leftControl, keys[0],
                                  keys[1],        keys[2],       keys[3],          keys[4]};
    const auto reply =
        replyOf(connection_, xcb_set_modifier_mapping, xcb_set_modifier_mapping_reply, 1, map);
    if (!reply || reply->status != XCB_MAPPING_STATUS_SUCCESS)
        throw std::runtime_error("modifiers not set");
}

HotkeyDesktopTest::HotkeyDesktopTest() {
    center.registerHotkey(shortcut(111, 0), [this] { ++settled_; });
}

HotkeyDesktopTest::~HotkeyDesktopTest() {
    setLayout({"-layout", "us", "-option", ""});
    if (keyboard.state() & XCB_MOD_MASK_LOCK) keyboard.press({Key::capsLock});
    if (keyboard.state() & XCB_MOD_MASK_2) keyboard.press({Key::numLock});
    EXPECT_EQ(keyboard.state() & 0xFF, 0) << "a key was left down";
}

std::string HotkeyDesktopTest::runTool(const std::vector<std::string>& arguments) {
    const auto finished = run(arguments, environment());
    EXPECT_EQ(finished.status, 0) << finished.output;
    return finished.output;
}

void HotkeyDesktopTest::setLayout(std::initializer_list<std::string> arguments) {
    std::vector<std::string> all{"setxkbmap", "-rules", "evdev", "-model", "pc105"};
    all.insert(all.end(), arguments);
    runTool(all);
}

void HotkeyDesktopTest::settle() {
    const int before = settled_;
    keyboard.press({Key::f12});
    ASSERT_TRUE(eventually([&] { return settled_ > before; }));
}

int HotkeyDesktopTest::firedBy(std::initializer_list<xcb_keycode_t> keys) {
    const int before = fired;
    keyboard.press(keys);
    settle();
    return fired - before;
}

bool HotkeyDesktopTest::staysFired(int times) {
    return stays([&] { return fired == times; }, std::chrono::milliseconds(1200));
}

KeyPresses::KeyPresses(xcb_keycode_t key)
    : events_(X11::shared().onEvent([this, key](const xcb_generic_event_t& event) {
          const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(event);
          if (event.response_type == XCB_KEY_PRESS && press.detail == key) ++count_;
          // The press may also come from the grab of a device.
          const auto& device = reinterpret_cast<const xcb_input_key_press_event_t&>(event);
          if (event.response_type == XCB_GE_GENERIC && device.event_type == XCB_INPUT_KEY_PRESS &&
              device.detail == key)
              ++count_;
      })) {}
