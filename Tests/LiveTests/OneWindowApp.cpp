#include "OneWindowApp.h"

#include <xcb/xcb.h>

using namespace DesktopTest;

namespace {

xcb_window_t open(xcb_connection_t* connection, const std::string& windowClass) {
    const auto* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_window_t window = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 50, 50, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const std::string both = windowClass + '\0' + windowClass + '\0';
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS,
                        XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(both.size()), both.data());
    xcb_map_window(connection, window);
    xcb_flush(connection);
    return window;
}

}  // namespace

int OneWindowApp::run(const std::string& windowClass) {
    sigset_t told;
    sigemptyset(&told);
    sigaddset(&told, SIGUSR1);
    sigprocmask(SIG_BLOCK, &told, nullptr);
    auto* const connection = xcb_connect(nullptr, nullptr);
    xcb_window_t window = 0;
    for (int number = 0;; sigwait(&told, &number)) {
        if (window == 0) {
            window = open(connection, windowClass);
        } else {
            xcb_destroy_window(connection, std::exchange(window, 0));
            xcb_flush(connection);
        }
    }
}

OneWindowApp::OneWindowApp(const std::string& windowClass)
    : process_(std::make_unique<Process>(
          Arguments{std::filesystem::read_symlink("/proc/self/exe").string(), argument,
                    windowClass},
          Environment{{"DISPLAY", std::getenv("DISPLAY")}, {"PATH", std::getenv("PATH")}})) {}

void OneWindowApp::openOrClose() const {
    process_->signal(SIGUSR1);
}
