#pragma once

#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelBlur/Linux/RenderServer.h"
#include "OrvelSystem/Linux/X11.h"

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
    ~SourceWindow();

    /// Follows the window to the pixmap it has now: it gets another one each time that it is mapped
    /// or resized.
    void renew(const PixelRect& frame);

  private:
    xcb_render_pictformat_t format_;
};

/// The windows of the screen as pictures on the server, shared by all panels that show live
/// backdrops. With no panel listening nothing is redirected, selected or kept. Main thread only.
class SceneSources {
  public:
    static SceneSources& shared();

    using Subscription = std::shared_ptr<void>;
    using Changed = std::function<void(const std::vector<PixelRect>& areas)>;
    /// `changed` runs when what is on the screen inside `areas` (root coordinates) may look
    /// different, at most about 15 times a second; the first time soon after subscribing.
    [[nodiscard]] Subscription subscribe(Changed changed);

    /// Paused, it gives all windows back and backdrops stay as they are. A window whose picture is
    /// kept counts as never obscured, so a locker that raises itself when it is obscured would not
    /// come to the top.
    void setPaused(bool paused);

    /// Viewable windows that stand below `panel` and meet `area`, bottom first, without those that
    /// one opaque window above them hides. Windows of panels are left out: a backdrop shows what
    /// it protects, not other covers.
    std::vector<const SourceWindow*> below(xcb_window_t panel, const PixelRect& area) const;

    /// The desktop's own picture, set by whoever draws wallpapers; nothing when there is none.
    ServerPicture wallpaper() const;

  private:
    struct Entry {
        xcb_window_t window;
        std::shared_ptr<SourceWindow> source;  // nothing for what can't be drawn
    };

    SceneSources();
    bool hasListeners() const;
    void start();
    void stop();
    void handle(const xcb_generic_event_t& event);
    void schedule();
    std::shared_ptr<SourceWindow> sourceOf(xcb_window_t window) const;
    void update();
    void readWindows();

    std::vector<std::weak_ptr<Changed>> listeners_;
    OrvelSystem::X11::Subscription events_;
    std::vector<Entry> stack_;  // bottom first
    std::vector<PixelRect> damaged_;
    bool structureChanged_ = false;
    bool isPaused_ = false;
    QTimer timer_;
};

}  // namespace OrvelBlur
