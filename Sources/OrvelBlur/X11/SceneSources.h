#pragma once

#include <QSocketNotifier>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelBlur/X11/RenderServer.h"
#include "OrvelCore/WeakList.h"
#include "OrvelSystem/X11/MirrorState.h"
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
    /// The same window with the same pixmap is in another place.
    void move(const PixelRect& to) { frame = to; }
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
    /// A window that looks different in an area, in root coordinates.
    struct Redrawn {
        std::shared_ptr<const SourceWindow> source;
        PixelRect area;
    };
    /// What has changed since the last report, in root coordinates.
    struct Change {
        std::vector<PixelRect> stacked;  ///< Here, windows appeared, disappeared or moved.
        std::vector<PixelRect> drawn;    ///< Here, the picture is another one.
        std::vector<Redrawn> redrawn;
    };
    using Changed = std::function<void(const Change& change)>;
    /// `changed` runs at most about 15 times a second, and for the first time soon after
    /// subscribing.
    [[nodiscard]] OrvelCore::Subscription subscribe(Changed changed);

    /// While paused, all windows are released and backdrops do not change. The server counts a
    /// window whose picture is kept as unobscured, so a locker that raises itself when it is
    /// obscured would not come to the top.
    void setPaused(bool paused);

    /// Reads now what the server has reported about the windows, instead of at the next update.
    /// Does nothing without subscribers.
    void refresh();
    /// Reports at once what the server knows now about the windows. Call it when an event shows
    /// that their order has changed.
    void catchUp();
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

    /// The desktop's picture, as set by a wallpaper program, repeated endlessly; 0 when there is
    /// none.
    xcb_render_picture_t wallpaper();

  private:
    /// What the server does not report by events.
    struct Details {
        std::optional<xcb_render_pictformat_t> format;  // `nullopt` if it cannot be drawn
        std::weak_ptr<SourceWindow> source;             // set while a panel draws it
        bool hasNewPixmap = false;
    };

    SceneSources();
    bool isWanted() const;
    void start();
    void ensureRunning();
    void stop();
    void readTree();
    void resolve();
    void readEvents();
    void handle(const xcb_generic_event_t& event);
    void handleDamage(const xcb_generic_event_t& event);
    void schedule(int milliseconds);
    void update();
    void renewSources();
    void report(const Change& change);
    bool isDrawn(xcb_window_t window);
    std::shared_ptr<SourceWindow> sourceOf(xcb_window_t window, const PixelRect& frame);

    OrvelCore::WeakList<Changed> listeners_;
    // Qt passes on only the last of several ConfigureNotify events in a row, so the windows are
    // followed on a connection of their own.
    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection_;
    std::unique_ptr<QSocketNotifier> notifier_;
    bool isRunning_ = false;
    OrvelCore::Subscription damage_;
    OrvelSystem::MirrorState windows_;
    std::unordered_map<xcb_window_t, Details> details_;
    std::vector<std::weak_ptr<SourceWindow>> sources_;
    std::vector<std::pair<std::weak_ptr<SourceWindow>, PixelRect>> damaged_;
    std::vector<PixelRect> stacked_;
    std::vector<PixelRect> drawn_;
    std::optional<ServerPicture> wallpaper_;  // empty until it is read
    bool isPaused_ = false;
    QTimer timer_;
};

}  // namespace OrvelBlur
