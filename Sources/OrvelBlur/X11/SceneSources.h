#pragma once

#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelBlur/X11/RenderServer.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelBlur {

/// A window of the screen whose picture a backdrop is made of. While it lives the server keeps the
/// window's whole picture, also where other windows obscure it.
struct SourceWindow {
    xcb_window_t window = 0;
    PixelRect frame;  ///< With its border, in root coordinates.
    bool hasAlpha = false;
    ServerPixmap pixmap;
    ServerPicture picture;
    ServerDamage damage;

    SourceWindow(xcb_window_t window, xcb_render_pictformat_t format);
    ~SourceWindow() { giveBack(); }
    SourceWindow(const SourceWindow&) = delete;
    SourceWindow& operator=(const SourceWindow&) = delete;

    /// Follows the window to the pixmap it has now: it gets another one each time that it is mapped
    /// or resized.
    void renew(const PixelRect& frame);
    /// Ends the keeping; the picture stays as it was last.
    void giveBack();

  private:
    xcb_render_pictformat_t format_;
    bool isKept_ = true;
};

/// The windows of the screen as pictures on the server, shared by all panels that show live
/// backdrops. Only windows that some panel draws are redirected and watched, and with no panel
/// listening nothing is selected or kept either. Main thread only.
class SceneSources {
  public:
    static SceneSources& shared();

    using Subscription = std::shared_ptr<void>;
    using Sources = std::vector<std::shared_ptr<const SourceWindow>>;
    using Changed =
        std::function<void(const std::vector<PixelRect>& areas, const Sources& redrawn)>;
    /// `changed` runs when windows inside `areas` (root coordinates) came, went or moved, or when
    /// those of `redrawn` look different, at most about 15 times a second; the first time soon
    /// after subscribing.
    [[nodiscard]] Subscription subscribe(Changed changed);

    /// Paused, it gives all windows back and backdrops stay as they are. A window whose picture is
    /// kept counts as never obscured, so a locker that raises itself when it is obscured would not
    /// come to the top.
    void setPaused(bool paused);

    /// Takes in the windows as they are at this moment, ahead of the next update. Nothing while
    /// nobody listens.
    void refresh();
    /// Has whoever shows `area` told of it with the next update. Nothing while nobody listens.
    void invalidate(const PixelRect& area);

    /// Viewable windows that stand below `panel` and meet `area`, bottom first, without those that
    /// one opaque window above them hides. Panels of a lower level, and those that stand among the
    /// windows, are windows too, since what one of them hides must not show through another with a
    /// weaker blur, or while that one fades. Whoever draws them holds on to them.
    Sources below(xcb_window_t panel, const PixelRect& area);

    /// The desktop's own picture, set by whoever draws wallpapers; nothing when there is none.
    ServerPicture wallpaper() const;

  private:
    struct Entry {
        xcb_window_t window = 0;
        PixelRect frame;
        std::optional<xcb_render_pictformat_t> format;  // nothing for what can't be drawn
        std::weak_ptr<SourceWindow> source;             // while somebody draws it
    };

    SceneSources();
    bool hasListeners() const;
    void start();
    void stop();
    void handle(const xcb_generic_event_t& event);
    void schedule();
    void update();
    std::vector<Entry> readWindows() const;
    static std::vector<PixelRect> changes(const std::vector<Entry>& before,
                                          const std::vector<Entry>& after);

    std::vector<std::weak_ptr<Changed>> listeners_;
    OrvelSystem::X11::Subscription events_;
    std::vector<Entry> stack_;  // bottom first
    std::vector<std::weak_ptr<SourceWindow>> damaged_;
    std::vector<PixelRect> changed_;
    bool structureChanged_ = false;
    bool isPaused_ = false;
    QTimer timer_;
};

}  // namespace OrvelBlur
