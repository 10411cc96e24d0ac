#include "ScreenWatcher.h"

#include <algorithm>
#include <functional>
#include <numeric>

namespace Measuring {

using namespace DesktopTest;

ScreenWatcher::ScreenWatcher(Screen& screen) : screen_(screen), connection_(screen.connection()) {
    const Area all = screen.bounds();
    for (int row = 0; row < 5; ++row) {
        for (int column = 0; column < 8; ++column)
            points_.push_back({column * (all.width - 1) / 7, row * (all.height - 1) / 4});
    }
    unmapped_ = xcb_generate_id(connection_);
    xcb_create_window(connection_, 0, unmapped_, screen.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    open_ = look();
}

bool ScreenWatcher::isCovered() {
    const auto now = look();
    return std::equal(now.begin(), now.end(), open_.begin(), std::not_equal_to<>());
}

bool ScreenWatcher::isOpen() {
    const auto now = look();
    const auto same = std::inner_product(now.begin(), now.end(), open_.begin(), std::size_t{0},
                                         std::plus<>(), std::equal_to<>());
    return 4 * same >= 3 * now.size();
}

bool ScreenWatcher::isGrabbed() {
    const auto keyboard = xcb_grab_keyboard(connection_, 0, unmapped_, XCB_CURRENT_TIME,
                                            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const auto pointer =
        xcb_grab_pointer(connection_, 0, unmapped_, 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
                         XCB_NONE, XCB_NONE, XCB_CURRENT_TIME);
    const XReply<xcb_grab_keyboard_reply_t> keys(
        xcb_grab_keyboard_reply(connection_, keyboard, nullptr));
    const XReply<xcb_grab_pointer_reply_t> clicks(
        xcb_grab_pointer_reply(connection_, pointer, nullptr));
    return keys->status == XCB_GRAB_STATUS_ALREADY_GRABBED &&
           clicks->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

std::vector<std::uint32_t> ScreenWatcher::look() {
    std::vector<xcb_get_image_cookie_t> asked;
    for (const auto& [x, y] : points_)
        asked.push_back(xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, screen_.root(),
                                      static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 1,
                                      1, ~0U));
    std::vector<std::uint32_t> pixels;
    for (const auto cookie : asked) {
        const XReply<xcb_get_image_reply_t> reply(
            xcb_get_image_reply(connection_, cookie, nullptr));
        pixels.push_back(*reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(reply.get())) &
                         0xFFFFFFU);
    }
    return pixels;
}

}  // namespace Measuring
