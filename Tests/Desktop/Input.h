#pragma once

#include <bitset>

#include <xcb/xcb.h>

#include "Support/Prelude.h"

namespace DesktopTest {

/// What a test's keys and clicks come from. Each call returns when the X server has taken the
/// event. Throws when the server does not take it.
class Input {
  public:
    virtual ~Input() = default;
    virtual void key(xcb_keycode_t code, bool down) = 0;
    virtual void button(int number, bool down) = 0;
    /// To a place in pixels of the screen.
    virtual void move(int x, int y) = 0;
};

/// The server's XTEST devices. `connection` must outlive the result.
std::unique_ptr<Input> xtestInput(xcb_connection_t* connection, xcb_window_t root);

/// Two keyboards and a mouse of an Xorg server, which are slave devices like real ones: they can be
/// grabbed, disabled and moved to another master. Keys come from the first keyboard unless told.
class DeviceInput final : public Input {
  public:
    static constexpr int keyboards = 2;
    /// The X server's name of a keyboard.
    static std::string nameOf(int keyboard) { return "keyboard" + std::to_string(keyboard); }
    /// An xorg.conf with the devices, whose sockets lie in `folder`, and one screen of this size.
    static std::string configuration(const std::filesystem::path& folder, int width, int height);

    /// The server must run with that configuration.
    explicit DeviceInput(const std::filesystem::path& folder);
    ~DeviceInput() override;
    DeviceInput(const DeviceInput&) = delete;
    DeviceInput& operator=(const DeviceInput&) = delete;

    void useKeyboard(int keyboard) { keyboard_ = keyboard; }
    /// After the device was disabled, which ends the connection. By its number; the mouse is last.
    void connectAgain(int device);
    /// Nothing for a key that is down, or up, already: no keyboard tells of it, and the server's
    /// driver would never answer.
    void key(xcb_keycode_t code, bool down) override;
    void button(int number, bool down) override;
    void move(int x, int y) override;

  private:
    std::filesystem::path folder_;
    std::array<int, keyboards + 1> sockets_;            // the mouse's is the last
    std::array<std::bitset<256>, keyboards + 1> down_;  // keys, by the device
    int keyboard_ = 0;
};

}  // namespace DesktopTest
