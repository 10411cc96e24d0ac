#include "MirrorDesktop.h"

MirrorTest::MirrorTest() {
    observation_ = mirror.observe([this] { ++changes; });
}

MirrorTest::~MirrorTest() {
    for (const auto window : windows_) xcb_destroy_window(screen().connection(), window);
    screen().sync();
}

xcb_window_t MirrorTest::make(Area area, bool overridesRedirect) {
    const auto window = createWindow(area, XCB_CW_OVERRIDE_REDIRECT, {overridesRedirect ? 1U : 0U});
    windows_.push_back(window);
    return window;
}

void MirrorTest::map(xcb_window_t window) {
    xcb_map_window(screen().connection(), window);
    screen().sync();
}

void MirrorTest::setProperty(xcb_window_t window, std::string_view name, xcb_atom_t type,
                             const std::vector<std::uint32_t>& values) {
    xcb_change_property(screen().connection(), XCB_PROP_MODE_REPLACE, window, screen().atom(name),
                        type, 32, static_cast<std::uint32_t>(values.size()), values.data());
    screen().sync();
}

std::vector<WindowInfo> MirrorTest::asked() {
    auto* const c = screen().connection();
    std::vector<WindowInfo> result;
    for (const auto window : screen().mappedWindows()) {
        const auto attributes =
            replyOf(c, xcb_get_window_attributes, xcb_get_window_attributes_reply, window);
        const auto geometry = replyOf(c, xcb_get_geometry, xcb_get_geometry_reply, window);
        if (!attributes || !geometry || attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY) continue;
        const double borders = 2.0 * geometry->border_width;
        result.insert(
            result.begin(),
            {.number = window,
             .bounds = {static_cast<double>(geometry->x), static_cast<double>(geometry->y),
                        geometry->width + borders, geometry->height + borders}});
    }
    return result;
}

bool MirrorTest::mirrorAgrees() {
    const auto mirrored = mirror.windows();
    const auto same = [](const WindowInfo& a, const WindowInfo& b) {
        return a.number == b.number && a.bounds == b.bounds;
    };
    return std::ranges::equal(asked(), mirrored, same);
}

std::optional<WindowInfo> MirrorTest::mirrored(xcb_window_t window) {
    const auto windows = mirror.windows();
    const auto found = std::ranges::find(windows, screen().frameOf(window), &WindowInfo::number);
    return found == windows.end() ? std::nullopt : std::optional(*found);
}
