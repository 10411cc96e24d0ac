#include "OrvelApp/Guard/X11/StandInText.h"

#include <algorithm>

#include <xcb/randr.h>

#include "OrvelSystem/X11/XReply.h"

namespace OrvelApp {

StandInText::StandInText(xcb_connection_t* connection, xcb_window_t root)
    : connection_(connection), root_(root), pen_(xcb_generate_id(connection)) {
    const auto font = xcb_generate_id(connection);
    xcb_open_font(connection, font, 5, "fixed");
    const std::uint32_t look[] = {foreground, background, font};
    xcb_create_gc(connection, pen_, root, XCB_GC_FOREGROUND | XCB_GC_BACKGROUND | XCB_GC_FONT,
                  look);
    xcb_close_font(connection, font);
}

void StandInText::draw(const std::vector<xcb_window_t>& windows, const std::string& text,
                       std::size_t dots) const {
    const OrvelSystem::XReply<xcb_randr_get_monitors_reply_t> monitors(xcb_randr_get_monitors_reply(
        connection_, xcb_randr_get_monitors(connection_, root_, 1), nullptr));
    if (!monitors) return;
    // Each letter of this font is six pixels wide.
    constexpr int letter = 6;
    constexpr int line = 24;
    const std::string asterisks(std::min<std::size_t>(dots, 64), '*');
    for (auto at = xcb_randr_get_monitors_monitors_iterator(monitors.get()); at.rem;
         xcb_randr_monitor_info_next(&at)) {
        const auto& display = *at.data;
        int y = display.y + display.height / 2;
        for (const auto* const shown : {&text, &asterisks}) {
            const auto count = static_cast<std::uint8_t>(std::min<std::size_t>(shown->size(), 255));
            const int x = display.x + display.width / 2 - count * letter / 2;
            for (const auto window : windows)
                if (window != XCB_NONE && count > 0)
                    xcb_image_text_8(connection_, count, window, pen_, static_cast<std::int16_t>(x),
                                     static_cast<std::int16_t>(y), shown->data());
            y += line;
        }
    }
    xcb_flush(connection_);
}

}  // namespace OrvelApp
