#pragma once

#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelBlur/X11/RenderServer.h"
#include "OrvelCore/WeakList.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelBlur {

/// A window whose picture is used for a backdrop. While this object exists, the server keeps the
/// window's complete picture, including parts that other windows obscure.
struct SourceWindow {
    xcb_window_t window = 0;
    PixelRect frame;  ///< With its border, in root coordinates.
    bool hasAlpha = false;
    bool isSharp = false;  ///< Whether a panel draws it without a blur.
    ServerPixmap pixmap;
    ServerPicture picture;
    ServerDamage damage;

    SourceWindow(xcb_window_t window, xcb_render_pictformat_t format);
    ~SourceWindow() { giveBack(); }
    SourceWindow(const SourceWindow&) = delete;
    SourceWindow& operator=(const SourceWindow&) = delete;

    /// Switches to the window's current pixmap; the server allocates a new one whenever the window
    /// is mapped or resized. `frame` is in root coordinates.
    void renew(const PixelRect& frame);
    /// The server stops keeping the picture, which stays as it last was.
    void giveBack();

  private:
    xcb_render_pictformat_t format_;
    bool isKept_ = true;
};

/// The windows of the screen as pictures on the server, shared by all panels with live backdrops.
/// Only windows that a panel draws are redirected and watched. Without subscribers, no events are
/// selected and no pictures kept. Main thread only.
class SceneSources {
  public:
    static SceneSources& shared();
    using Sources = std::vector<std::shared_ptr<const SourceWindow>>;
    using Changed =
        std::function<void(const std::vector<PixelRect>& areas, const Sources& redrawn)>;
    /// `changed` runs when windows inside `areas` (root coordinates) appeared, disappeared or
    /// moved, or when the windows in `redrawn` look different: at most about 15 times a second, and
    /// for the first time soon after subscribing.
    [[nodiscard]] OrvelCore::Subscription subscribe(Changed changed);

    /// While paused, all windows are released and backdrops do not change. The server counts a
    /// window whose picture is kept as unobscured, so a locker that raises itself when it is
    /// obscured would not come to the top.
    void setPaused(bool paused);

    /// Reads the windows now instead of at the next update. Does nothing without subscribers.
    void refresh();
    /// Reports `area` (root coordinates) as changed with the next update. Does nothing without
    /// subscribers.
    void invalidate(const PixelRect& area);

    /// Viewable windows below `panel` that intersect `area` (root coordinates), bottom first,
    /// without those that a single opaque window above hides. Panels of a lower level, and panels
    /// among the windows, are included: what one of them hides must not be visible through another
    /// panel with a weaker blur, or while that panel fades. The caller must keep the sources that
    /// it draws.
    Sources below(xcb_window_t panel, const PixelRect& area);

    /// Those of `windows` that are viewable and intersect `area` (root coordinates), bottom first,
    /// without panels of this program. The caller must keep the sources that it draws. They are
    /// drawn sharp, so their changes are reported at once.
    Sources find(const std::vector<xcb_window_t>& windows, const PixelRect& area);

    /// The desktop's picture, as set by a wallpaper program; empty when there is none.
    ServerPicture wallpaper() const;

  private:
    struct Entry {
        xcb_window_t window = 0;
        PixelRect frame;
        std::optional<xcb_render_pictformat_t> format;  // `nullopt` if it cannot be drawn
        std::weak_ptr<SourceWindow> source;             // set while a panel draws it
    };

    SceneSources();
    void start();
    void stop();
    void handle(const xcb_generic_event_t& event);
    void schedule(int milliseconds);
    static std::shared_ptr<SourceWindow> sourceOf(Entry& entry);
    void update();
    std::vector<Entry> readWindows() const;
    static std::vector<PixelRect> changes(const std::vector<Entry>& before,
                                          const std::vector<Entry>& after);

    OrvelCore::WeakList<Changed> listeners_;
    OrvelCore::Subscription events_;
    std::vector<Entry> stack_;  // bottom first
    std::vector<std::weak_ptr<SourceWindow>> damaged_;
    std::vector<PixelRect> changed_;
    bool structureChanged_ = false;
    bool isPaused_ = false;
    QTimer timer_;
};

}  // namespace OrvelBlur
