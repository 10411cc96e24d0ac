#include "Input.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <xcb/xtest.h>

#include "Eventually.h"
#include "Screen.h"

namespace DesktopTest {

namespace {

class XTestInput final : public Input {
  public:
    XTestInput(xcb_connection_t* connection, xcb_window_t root)
        : connection_(connection), root_(root) {}

    void key(xcb_keycode_t code, bool down) override {
        fake(down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code);
    }
    void button(int number, bool down) override {
        fake(down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, number);
    }
    void move(int x, int y) override { fake(XCB_MOTION_NOTIFY, 0, x, y); }

  private:
    void fake(int type, int detail, int x = 0, int y = 0) {
        xcb_test_fake_input(connection_, static_cast<std::uint8_t>(type),
                            static_cast<std::uint8_t>(detail), XCB_CURRENT_TIME, root_,
                            static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
        const auto done = replyOf(connection_, xcb_get_input_focus, xcb_get_input_focus_reply);
        if (!done) throw std::runtime_error("the X server is gone");
    }

    xcb_connection_t* connection_;
    xcb_window_t root_;
};

// Messages of the server's `inputtest` driver, which replies only to `version` and `synchronise`.
struct Header {
    std::uint32_t length;
    std::uint32_t type;
};
struct Version : Header {
    std::uint16_t major;
    std::uint16_t minor;
};
struct Valuators {
    std::uint32_t hasUnaccelerated = 0;
    std::uint8_t mask[8] = {};
    std::uint32_t padding = 0;
    double values[64] = {};
    double unaccelerated[64] = {};
};
struct Motion : Header {
    std::uint32_t isAbsolute = 0;
    std::uint32_t padding = 0;
    Valuators valuators;
};
struct Button : Header {
    std::int32_t isAbsolute = 0;
    std::int32_t number = 0;
    std::uint32_t isDown = 0;
    std::uint32_t padding = 0;
    Valuators valuators;
};
struct Key : Header {
    std::int32_t code;
    std::uint32_t isDown;
};
enum Type : std::uint32_t { version, synchronise, motion, button = 4, key };

template <class Message>
void send(int socket, const Message& message) {
    if (::send(socket, &message, sizeof message, MSG_NOSIGNAL) != sizeof message)
        throw std::runtime_error("an input device does not listen");
}

void receive(int socket, std::size_t size) {
    char answer[64];
    if (recv(socket, answer, size, MSG_WAITALL) != static_cast<ssize_t>(size))
        throw std::runtime_error("an input device does not answer");
}

template <class Message>
void deliver(int socket, const Message& message) {
    send(socket, message);
    send(socket, Header{sizeof(Header), synchronise});
    receive(socket, sizeof(Header));
}

std::string nameOfSocket(int device) {
    return device < DeviceInput::keyboards ? DeviceInput::nameOf(device) : "mouse";
}

}  // namespace

std::unique_ptr<Input> xtestInput(xcb_connection_t* connection, xcb_window_t root) {
    return std::make_unique<XTestInput>(connection, root);
}

std::string DeviceInput::configuration(const std::filesystem::path& folder, int width, int height) {
    const auto text = [](int number) { return std::to_string(number); };
    const std::string mode = "\"" + text(width) + "x" + text(height) + "\"";
    // Use no device and no terminal of the machine, so that the server does not disturb it.
    std::string result = R"(Section "ServerFlags"
 Option "AutoAddDevices" "false"
 Option "AutoEnableDevices" "false"
 Option "AutoAddGPU" "false"
 Option "DontVTSwitch" "true"
EndSection
Section "Device"
 Identifier "card"
 Driver "dummy"
 VideoRam 128000
EndSection
Section "Monitor"
 Identifier "monitor"
 HorizSync 1-2000
 VertRefresh 1-1000
 Modeline )" + mode + " 250";
    for (const int size : {width, height}) {
        for (const int blank : {0, 8, 16, 24}) result += " " + text(size + blank);
    }
    result += R"(
EndSection
Section "Screen"
 Identifier "screen"
 Device "card"
 Monitor "monitor"
 DefaultDepth 24
 SubSection "Display"
  Depth 24
  Modes )" + mode +
              R"(
 EndSubSection
EndSection
)";
    std::string layout = "Section \"ServerLayout\"\n Identifier \"layout\"\n Screen \"screen\"\n";
    for (int device = 0; device <= keyboards; ++device) {
        const bool isMouse = device == keyboards;
        const auto name = nameOfSocket(device);
        result += "Section \"InputDevice\"\n Identifier \"" + name +
                  "\"\n Driver \"inputtest\"\n Option \"SocketPath\" \"" +
                  (folder / name).string() + "\"\n Option \"DeviceType\" \"" +
                  (isMouse ? "Pointer" : "Keyboard") + "\"\nEndSection\n";
        layout += " InputDevice \"" + name + "\" " +
                  (isMouse       ? "\"CorePointer\"\n"
                   : device == 0 ? "\"CoreKeyboard\"\n"
                                 : "\"SendCoreEvents\"\n");
    }
    return result + layout + "EndSection\n";
}

DeviceInput::DeviceInput(const std::filesystem::path& folder) : folder_(folder) {
    sockets_.fill(-1);
    for (int device = 0; device <= keyboards; ++device) connectAgain(device);
}

void DeviceInput::connectAgain(int device) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto path = (folder_ / nameOfSocket(device)).string();
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    int& socket = sockets_[static_cast<std::size_t>(device)];
    down_[static_cast<std::size_t>(device)].reset();
    // The server makes the socket some time after it has enabled the device.
    const auto isConnected = [&] {
        if (socket >= 0) close(socket);
        socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        return connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    };
    if (!eventually(isConnected))
        throw std::system_error(errno, std::generic_category(), "no input device " + path);
    constexpr timeval answerTime{30, 0};
    setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &answerTime, sizeof answerTime);
    send(socket, Version{{sizeof(Version), version}, 1, 1});
    receive(socket, sizeof(Version));
}

DeviceInput::~DeviceInput() {
    for (const int socket : sockets_) close(socket);
}

void DeviceInput::key(xcb_keycode_t code, bool down) {
    const auto keyboard = static_cast<std::size_t>(keyboard_);
    if (down_[keyboard][code] == down) return;
    down_[keyboard][code] = down;
    deliver(sockets_[keyboard], Key{{sizeof(Key), Type::key}, code, down});
}

void DeviceInput::button(int number, bool down) {
    deliver(sockets_.back(), Button{{sizeof(Button), Type::button}, 0, number, down, 0, {}});
}

void DeviceInput::move(int x, int y) {
    Motion message{{sizeof(Motion), motion}, 1, 0, {}};
    message.valuators.mask[0] = 3;  // both axes
    message.valuators.values[0] = x;
    message.valuators.values[1] = y;
    deliver(sockets_.back(), message);
}

}  // namespace DesktopTest
