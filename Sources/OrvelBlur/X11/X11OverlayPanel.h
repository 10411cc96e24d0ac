#pragma once

#include <QTimer>
#include <memory>
#include <optional>
#include <vector>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelBlur/X11/BlurPyramid.h"
#include "OrvelBlur/X11/ContentHost.h"
#include "OrvelBlur/X11/Roof.h"
#include "OrvelBlur/X11/SceneSources.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelBlur {

/// A panel as an override-redirect window on the root, with all layers drawn by the X server.
/// Frames are in pixels of the root window.
class X11OverlayPanel final : public OverlayPanel {
  public:
    X11OverlayPanel(const OrvelCore::Rect& frame, int level);
    ~X11OverlayPanel() override;

    OrvelCore::Rect frame() const override;
    void setFrame(const OrvelCore::Rect& frame) override;
    int level() const override { return level_; }
    void setCollectionBehavior(std::uint32_t behavior) override;
    std::uint64_t windowNumber() const override { return window_; }
    bool owns(std::uint64_t windowNumber) const override;
    bool ignoresMouseEvents() const override { return ignoresMouseEvents_; }
    void setIgnoresMouseEvents(bool ignores) override;
    void setBackdrop(const Backdrop& backdrop) override;
    bool setRadius(int radius) override;
    void setTint(const OrvelCore::Color& tint) override;
    void setCornerRadius(double radius) override;
    void setOpenings(const std::vector<OrvelCore::Rect>& openings) override;
    void setOpacity(Layer layer, double opacity) override;
    void setContent(std::shared_ptr<PanelContent> content) override;
    void display() override;
    bool isVisible() const override { return isVisible_; }
    void orderFrontRegardless() override;
    void orderOut() override;
    void orderAbove(std::uint64_t windowNumber) override;
    void orderBelow(std::uint64_t windowNumber) override;
    void makeKeyAndOrderFront() override;
    bool isKeyWindow() const override { return isKey_; }

  private:
    enum class Order { none, front, above, below };

    void makeWindow();
    void replaceWindow();
    bool repair(const xcb_generic_event_t& event);
    void handle(const xcb_generic_event_t& event);
    void handleFocus(const xcb_focus_in_event_t& event, bool in);
    void retakeFocus();
    void setKey(bool isKey);
    void cancel();
    void takeFocus();
    void attachContent();
    void shapeWindow();
    bool isBlurring() const;
    void comeIn();
    void stack();
    void moveOnScreen();
    void captureScene();
    void composeScene();
    PixelSize sceneSize() const;
    PixelRect neededArea() const;
    bool fillsScene(const SourceWindow& source) const;
    void drawBackground();
    void drawSources(const Canvas& canvas);
    void refreshBackdrop();
    void paint(const PixelRect& area);
    void drawPanel(xcb_render_picture_t target, int originX, int originY, const PixelRect& visible);
    void drawLayers(xcb_render_picture_t target, int originX, int originY, const PixelRect& area);
    PixelRect bounds() const { return {0, 0, frame_.width, frame_.height}; }

    xcb_window_t window_ = XCB_NONE;
    int level_;
    PixelRect frame_;   // in root coordinates
    PixelRect placed_;  // the frame that was last sent to the server
    bool ignoresMouseEvents_ = false;
    bool isAttached_ = false;
    double cornerRadius_ = 0;
    Backdrop backdrop_ = ServerBlur{};
    int radius_ = 0;
    std::vector<OrvelCore::Rect> openings_;
    OrvelCore::Color tint_{0, 0, 0, 0};
    double tintOpacity_ = 0;
    double grainOpacity_ = 0;
    double contentOpacity_ = 0;

    bool isVisible_ = false;
    Order pendingOrder_ = Order::none;
    Order order_ = Order::front;  // the last order that was carried out
    xcb_window_t pendingSibling_ = 0;
    bool isDirty_ = false;
    bool isKey_ = false;
    QTimer retake_;  // runs while the focus is being retaken; the focus counts as lost when it ends
    unsigned focusRequest_ = 0;

    ServerPicture target_;
    Canvas capture_;  // what the screen showed when the panel came in, at the scene's scale
    Canvas scene_;    // what is behind the panel now; empty until something has changed there
    BlurPyramid pyramid_;
    const Canvas* blurred_ = nullptr;
    /// the windows that the scene is made of
    std::vector<std::shared_ptr<const SourceWindow>> sources_;
    Canvas buffer_;  // for what must change in one step: the content over its part of the backdrop
    std::shared_ptr<const QtPanelContent> content_;
    std::unique_ptr<ContentHost> host_;
    SceneSources::Subscription live_;
    Roof::Subscription roof_;  // set for a panel of the lock
    OrvelSystem::X11::Subscription events_;

    // The request whose reply shows that the last frame has been drawn, so that frames never queue
    // up behind a slow one.
    std::optional<unsigned> frameInFlight_;
    QTimer retry_;
    QTimer attach_;
};

}  // namespace OrvelBlur
