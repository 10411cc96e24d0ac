#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <variant>

#include "OrvelCore/Color.h"
#include "OrvelCore/Geometry.h"

namespace OrvelBlur {

/// Stacking levels. Windows of a higher level stand above all windows of a lower one.
namespace WindowLevel {
inline constexpr int normal = 0;  ///< Among the windows of other programs.
inline constexpr int toast = 101;
inline constexpr int hotCorner = 998;
inline constexpr int quickBlur = 999;
inline constexpr int lock = 1000;
}  // namespace WindowLevel

/// How a panel behaves among desktops and in full screen, as the window server's own bits.
namespace CollectionBehavior {
/// On every desktop, not moved by the overview, not cycled through, also over full screen.
inline constexpr std::uint32_t overlay = 0x151;
/// The same, but moved with its desktop: for what belongs to a window.
inline constexpr std::uint32_t attached = 0x141;
}  // namespace CollectionBehavior

/// What a panel shows on top: made by the platform, known to portable code by its name alone.
class PanelContent {
  public:
    virtual ~PanelContent() = default;
};

/// One borderless, non-activating panel. From back to front it draws a backdrop, a tint, a grain
/// and its content. Never a main window; key only when it accepts the keyboard. Main thread only.
class OverlayPanel {
  public:
    /// Blurred by the window server with the radius of `setRadius`.
    struct ServerBlur {
        bool operator==(const ServerBlur&) const = default;
    };
    /// The desktop's own effect of fixed strength.
    struct VisualEffect {
        bool operator==(const VisualEffect&) const = default;
    };
    /// Opaque: nothing behind the panel shows.
    struct Fill {
        OrvelCore::Color color;
        bool operator==(const Fill&) const = default;
    };
    using Backdrop = std::variant<ServerBlur, VisualEffect, Fill>;

    enum class Layer { effect, tint, grain, content };

    /// A panel of the platform, ordered out, with `CollectionBehavior::overlay`.
    static std::unique_ptr<OverlayPanel> make(const OrvelCore::Rect& frame, int level);

    OverlayPanel() = default;
    OverlayPanel(const OverlayPanel&) = delete;
    OverlayPanel& operator=(const OverlayPanel&) = delete;
    virtual ~OverlayPanel() = default;

    virtual OrvelCore::Rect frame() const = 0;
    /// Like all that is set, on the screen with the next `display`.
    virtual void setFrame(const OrvelCore::Rect& frame) = 0;
    virtual int level() const = 0;
    virtual void setCollectionBehavior(std::uint32_t behavior) = 0;
    /// Its number in the window server's list of windows.
    virtual std::uint64_t windowNumber() const = 0;
    /// Whether the window of that number is the panel or part of it.
    virtual bool owns(std::uint64_t windowNumber) const = 0;

    /// Click-through: every pointer event goes to what lies behind.
    virtual bool ignoresMouseEvents() const = 0;
    virtual void setIgnoresMouseEvents(bool ignores) = 0;

    virtual void setBackdrop(const Backdrop& backdrop) = 0;
    /// Points; 0 shows what lies behind as it is. False where the window server has no such blur.
    virtual bool setRadius(int radius) = 0;
    virtual void setTint(const OrvelCore::Color& tint) = 0;
    /// Points, 0 for square corners.
    virtual void setCornerRadius(double radius) = 0;
    /// Parts where nothing of the panel shows, in window-server coordinates; empty for none.
    virtual void setOpenings(const std::vector<OrvelCore::Rect>& openings) = 0;
    /// 0 to 1. A fill has no opacity of its own: it always hides.
    virtual void setOpacity(Layer layer, double opacity) = 0;
    /// Nothing takes the content away.
    virtual void setContent(std::shared_ptr<PanelContent> content) = 0;
    /// Brings all that was set since the last call to the screen, in one go.
    virtual void display() = 0;

    virtual bool isVisible() const = 0;
    virtual void orderFrontRegardless() = 0;
    virtual void orderOut() = 0;
    /// Directly above or below a window of the server, of this or any program; a panel that is out
    /// comes in with the next `display`. Where there is no such window the order stays as it was.
    virtual void orderAbove(std::uint64_t windowNumber) = 0;
    virtual void orderBelow(std::uint64_t windowNumber) = 0;

    bool canBecomeKey() const { return acceptsKeyboard; }
    /// Orders front and asks for the keyboard; nothing more than ordering where it can't be key.
    virtual void makeKeyAndOrderFront() = 0;
    /// Whether typing goes here.
    virtual bool isKeyWindow() const = 0;

    bool acceptsKeyboard = false;
    /// The primary button was pressed on the panel.
    std::function<void()> onClick;
    /// Escape, where the content has not used it.
    std::function<void()> onCancel;
    /// The panel became or ceased to be the key window.
    std::function<void()> onKeyChanged;
};

}  // namespace OrvelBlur
