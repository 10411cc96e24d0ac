#pragma once

#include <bitset>

#include <xcb/xcb.h>

namespace DesktopTest {

/// The source of a test's keys and clicks. Each call returns after the X server has accepted the
/// event, and throws if it does not.
class Input {
  public:
    virtual ~Input() = default;
    virtual void key(xcb_keycode_t code, bool down) = 0;
    virtual void button(int number, bool down) = 0;
    /// Position in pixels of the screen.
    virtual void move(int x, int y) = 0;
};

/// The server's XTEST devices. `connection` must outlive the result.
std::unique_ptr<Input> xtestInput(xcb_connection_t* connection, xcb_window_t root);

/// Two keyboards and a mouse of an Xorg server. They are slave devices like real ones, so they can
/// be grabbed, disabled and moved to another master. Keys come from the first keyboard unless
/// `useKeyboard` selects another.
class DeviceInput final : public Input {
  public:
    static constexpr int keyboards = 2;
    /// The X server's name of the keyboard.
    static std::string nameOf(int keyboard) { return "keyboard" + std::to_string(keyboard); }
    /// An xorg.conf with these devices, whose sockets are in `folder`, and one screen of this size
    /// in pixels.
    static std::string configuration(const std::filesystem::path& folder, int width, int height);

    /// The server must already run with that configuration.
    explicit DeviceInput(const std::filesystem::path& folder);
    ~DeviceInput() override;
    DeviceInput(const DeviceInput&) = delete;
    DeviceInput& operator=(const DeviceInput&) = delete;

    void useKeyboard(int keyboard) { keyboard_ = keyboard; }
    /// Reconnects to a device that was disabled, since disabling it closes the connection. `device`
    /// is the keyboard's number; the mouse has the last one.
    void connectAgain(int device);
    /// Does nothing if the key already is in that state: a real keyboard sends no such event, and
    /// the server's driver would never confirm it.
    void key(xcb_keycode_t code, bool down) override;
    void button(int number, bool down) override;
    void move(int x, int y) override;

  private:
    std::filesystem::path folder_;
    std::array<int, keyboards + 1> sockets_;            // one per device; the mouse's is the last
    std::array<std::bitset<256>, keyboards + 1> down_;  // pressed keys, one set per device
    int keyboard_ = 0;
};

}  // namespace DesktopTest
