#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace OrvelApp {

/// Draws the stand-in's text with a font of the server, since the guard uses no toolkit.
class StandInText {
  public:
    // The covers' tint and the card's text colour, as 0xRRGGBB.
    static constexpr std::uint32_t background = 0x0B0D12;
    static constexpr std::uint32_t foreground = 0xC8CCD4;

    /// `root` is the root window of the screen. The connection must outlive the object.
    StandInText(xcb_connection_t* connection, xcb_window_t root);
    StandInText(const StandInText&) = delete;
    StandInText& operator=(const StandInText&) = delete;

    /// Draws `text` (ASCII, at most 255 characters) in the middle of each display, and `dots`
    /// asterisks below it. All windows have the coordinates of the screen; `XCB_NONE` is skipped.
    void draw(const std::vector<xcb_window_t>& windows, const std::string& text,
              std::size_t dots) const;

  private:
    xcb_connection_t* connection_;
    xcb_window_t root_;
    xcb_gcontext_t pen_;
};

}  // namespace OrvelApp
