#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <variant>
#include <vector>

#include "OrvelCore/Color.h"
#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"

namespace OrvelBlur {

/// Stacking levels. Windows of a higher level are above all windows of a lower one.
namespace WindowLevel {
inline constexpr int normal = 0;  ///< Among the windows of other programs.
inline constexpr int toast = 101;
inline constexpr int hotCorner = 998;
inline constexpr int quickBlur = 999;
inline constexpr int lock = 1000;
}  // namespace WindowLevel

/// How a panel behaves with several desktops and in full screen, as the window server's own bits.
namespace CollectionBehavior {
/// On every desktop, not moved by the overview, skipped by window cycling, also over full screen.
inline constexpr std::uint32_t overlay = 0x151;
/// Like `overlay`, but moved with its desktop: for a panel that belongs to a window.
inline constexpr std::uint32_t attached = 0x141;
}  // namespace CollectionBehavior

/// The content on top of a panel. The platform makes it; portable code only passes it on.
class PanelContent {
  public:
    virtual ~PanelContent() = default;
};

/// One borderless panel that does not activate the app. From back to front it draws a backdrop, a
/// tint, a grain and its content. It is never a main window, and the key window only while it
/// accepts the keyboard. Main thread only.
class OverlayPanel {
  public:
    /// Blurred by the window server, with the radius of `setRadius`.
    struct ServerBlur {
        bool operator==(const ServerBlur&) const = default;
    };
    /// The desktop's own effect of fixed strength.
    struct VisualEffect {
        bool operator==(const VisualEffect&) const = default;
    };
    /// Opaque: nothing behind the panel is visible.
    struct Fill {
        OrvelCore::Color color;
        bool operator==(const Fill&) const = default;
    };
    using Backdrop = std::variant<ServerBlur, VisualEffect, Fill>;

    enum class Layer { effect, tint, grain, content };

    /// Makes a panel of the platform, ordered out, with `CollectionBehavior::overlay`. `frame` is
    /// in window-server coordinates.
    static std::unique_ptr<OverlayPanel> make(const OrvelCore::Rect& frame, int level);

    OverlayPanel() = default;
    OverlayPanel(const OverlayPanel&) = delete;
    OverlayPanel& operator=(const OverlayPanel&) = delete;
    virtual ~OverlayPanel() = default;

    /// In window-server coordinates.
    virtual OrvelCore::Rect frame() const = 0;
    /// In window-server coordinates. Like every setter, takes effect with the next `display`.
    virtual void setFrame(const OrvelCore::Rect& frame) = 0;
    virtual int level() const = 0;
    virtual void setCollectionBehavior(std::uint32_t behavior) = 0;
    /// The panel's number in the window server's list of windows.
    virtual OrvelCore::WindowID windowNumber() const = 0;
    /// Whether the window with that number is the panel or part of it.
    virtual bool owns(OrvelCore::WindowID windowNumber) const = 0;

    /// Whether every pointer event goes to what is behind the panel.
    virtual bool ignoresMouseEvents() const = 0;
    virtual void setIgnoresMouseEvents(bool ignores) = 0;

    virtual void setBackdrop(const Backdrop& backdrop) = 0;
    /// In points; 0 shows what is behind the panel unchanged. Returns false where the window server
    /// has no such blur.
    virtual bool setRadius(int radius) = 0;
    virtual void setTint(const OrvelCore::Color& tint) = 0;
    /// In points; 0 for square corners.
    virtual void setCornerRadius(double radius) = 0;
    /// Areas where nothing of the panel is shown, in window-server coordinates; empty for none.
    virtual void setOpenings(const std::vector<OrvelCore::Rect>& openings) = 0;
    /// Draws these windows, frontmost first, on top of the panel, at once and whenever they change:
    /// for a window server that draws the panel in front of them. Others need not do anything.
    virtual void setWindowsInFront(const std::vector<OrvelCore::WindowID>& /*windows*/) {}
    /// 0 to 1. `Fill` ignores its opacity and always hides what is behind the panel.
    virtual void setOpacity(Layer layer, double opacity) = 0;
    /// Null removes the content.
    virtual void setContent(std::shared_ptr<PanelContent> content) = 0;
    /// Applies everything that was set since the last call in one step.
    virtual void display() = 0;

    virtual bool isVisible() const = 0;
    virtual void orderFrontRegardless() = 0;
    virtual void orderOut() = 0;
    /// Orders the panel directly above or below a window of this or another program. A panel that
    /// is ordered out appears with the next `display`. If there is no such window, the order does
    /// not change.
    virtual void orderAbove(OrvelCore::WindowID windowNumber) = 0;
    virtual void orderBelow(OrvelCore::WindowID windowNumber) = 0;

    bool canBecomeKey() const { return acceptsKeyboard; }
    /// Orders the panel to the front and requests the keyboard. If it cannot become key, it is only
    /// ordered.
    virtual void makeKeyAndOrderFront() = 0;
    /// Whether keyboard input goes to this panel.
    virtual bool isKeyWindow() const = 0;

    bool acceptsKeyboard = false;
    /// Called when the primary button was pressed on the panel.
    std::function<void()> onClick;
    /// Called for Escape when the content has not used it.
    std::function<void()> onCancel;
    /// Called when the panel became or stopped being the key window.
    std::function<void()> onKeyChanged;
};

}  // namespace OrvelBlur
