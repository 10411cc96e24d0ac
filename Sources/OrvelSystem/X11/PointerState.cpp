#include "OrvelSystem/PointerState.h"

#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

namespace {

XReply<xcb_query_pointer_reply_t> query() {
    const X11& x = X11::shared();
    return XReply<xcb_query_pointer_reply_t>(xcb_query_pointer_reply(
        x.connection(), xcb_query_pointer(x.connection(), x.root()), nullptr));
}

}  // namespace

OrvelCore::Point PointerState::location() {
    const auto pointer = query();
    if (!pointer) return {};
    return {static_cast<double>(pointer->root_x), static_cast<double>(pointer->root_y)};
}

bool PointerState::buttonDown() {
    const auto pointer = query();
    return pointer && (pointer->mask & XCB_BUTTON_MASK_1) != 0;
}

}  // namespace OrvelSystem
