#include "OrvelSystem/X11/InputIdle.h"

#include <xcb/screensaver.h>

#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

double InputIdle::seconds() {
    const auto& x11 = X11::shared();
    auto* const connection = x11.connection();
    const auto* const extension = xcb_get_extension_data(connection, &xcb_screensaver_id);
    if (extension == nullptr || extension->present == 0) return 0;
    const XReply<xcb_screensaver_query_info_reply_t> info(xcb_screensaver_query_info_reply(
        connection, xcb_screensaver_query_info(connection, x11.root()), nullptr));
    return info ? info->ms_since_user_input / 1000.0 : 0;
}

}  // namespace OrvelSystem
