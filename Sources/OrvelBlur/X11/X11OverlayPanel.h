#pragma once

#include <QTimer>
#include <memory>
#include <optional>
#include <vector>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelBlur/X11/ContentHost.h"
#include "OrvelBlur/X11/PanelFocus.h"
#include "OrvelBlur/X11/PanelFront.h"
#include "OrvelBlur/X11/PanelPainter.h"
#include "OrvelBlur/X11/PanelScene.h"
#include "OrvelBlur/X11/PanelShape.h"
#include "OrvelBlur/X11/PanelWindow.h"
#include "OrvelBlur/X11/StackPosition.h"
#include "OrvelCore/WeakList.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelBlur {

/// A panel as an override-redirect window on the root, with all layers drawn by the X server.
/// Window-server coordinates are those of the root window, in pixels. This class decides when each
/// part of the panel acts: the window, its shape, its position in the stack, its scene, the
/// windows in front, its painting and its focus.
class X11OverlayPanel final : public OverlayPanel {
  public:
    X11OverlayPanel(const OrvelCore::Rect& frame, int level);
    ~X11OverlayPanel() override;

    OrvelCore::Rect frame() const override;
    void setFrame(const OrvelCore::Rect& frame) override;
    int level() const override { return window_.level(); }
    void setCollectionBehavior(std::uint32_t behavior) override;
    OrvelCore::WindowID windowNumber() const override { return window_.id(); }
    bool owns(OrvelCore::WindowID windowNumber) const override;
    bool ignoresMouseEvents() const override { return shape_.ignoresMouseEvents(); }
    void setIgnoresMouseEvents(bool ignores) override;
    void setBackdrop(const Backdrop& backdrop) override;
    bool setRadius(int radius) override;
    void setTint(const OrvelCore::Color& tint) override;
    void setCornerRadius(double radius) override;
    void setOpenings(const std::vector<OrvelCore::Rect>& openings) override;
    void setWindowsInFront(const std::vector<OrvelCore::WindowID>& windows) override;
    void setOpacity(Layer layer, double opacity) override;
    void setContent(std::shared_ptr<PanelContent> content) override;
    void display() override;
    bool isVisible() const override { return window_.isMapped(); }
    void orderFrontRegardless() override;
    void orderOut() override;
    void orderAbove(OrvelCore::WindowID windowNumber) override;
    void orderBelow(OrvelCore::WindowID windowNumber) override;
    void makeKeyAndOrderFront() override;
    bool isKeyWindow() const override { return focus_.isKey(); }

  private:
    template <class T>
    void setLayer(T& layer, const T& value);
    void attachContent();
    bool isFrameInFlight();
    void forgetFrameInFlight();
    void comeIn();
    void moveOnScreen();
    void paint(const PixelRect& area) { painter_.paint(area, host_.get()); }
    void handle(const xcb_generic_event_t& event);
    bool repair(const xcb_generic_event_t& event);
    void replaceWindow();
    void cancel();

    PanelWindow window_;
    PanelShape shape_;
    StackPosition position_;
    PanelLayers layers_;
    PanelScene scene_;
    PanelFront front_;
    PanelPainter painter_;
    PanelFocus focus_;
    std::shared_ptr<const QtPanelContent> content_;
    std::unique_ptr<ContentHost> host_;  // set while the panel is visible and has content
    QTimer attach_;

    bool isDirty_ = false;  // whether a layer has changed since the last frame
    // The request whose reply shows that the last frame has been drawn, so that frames never queue
    // up behind a slow one.
    std::optional<unsigned> frameInFlight_;
    QTimer retry_;
    OrvelCore::Subscription events_;
};

}  // namespace OrvelBlur
