#pragma once

#include "OrvelBlur/OverlayPanel.h"

/// The state that one call of `display` made visible.
struct Frame {
    double opacity = 0;
    int radius = 0;
    bool operator==(const Frame&) const = default;
};

/// The state of a stub panel, which outlives the panel.
struct PanelRecord {
    std::optional<OverlayPanel::Backdrop> backdrop;
    std::optional<Color> tint;
    double cornerRadius = 0;
    Rect frame;
    std::shared_ptr<PanelContent> content;
    std::vector<int> radii;
    std::map<OverlayPanel::Layer, double> opacities;
    bool visible = false;
    /// Recorded only while the panel is visible.
    std::vector<Frame> frames;
};

class StubOverlayPanel : public OverlayPanel {
  public:
    explicit StubOverlayPanel(PanelRecord& record) : record_(record) {}

    Rect frame() const override { return record_.frame; }
    void setFrame(const Rect& frame) override { record_.frame = frame; }
    int level() const override { return WindowLevel::normal; }
    void setCollectionBehavior(std::uint32_t) override {}
    WindowID windowNumber() const override { return 1; }
    bool owns(WindowID windowNumber) const override { return windowNumber == 1; }
    bool ignoresMouseEvents() const override { return false; }
    void setIgnoresMouseEvents(bool) override {}
    void setBackdrop(const Backdrop& backdrop) override { record_.backdrop = backdrop; }
    bool setRadius(int radius) override {
        record_.radii.push_back(radius);
        return true;
    }
    void setTint(const Color& tint) override { record_.tint = tint; }
    void setCornerRadius(double radius) override { record_.cornerRadius = radius; }
    void setOpenings(const std::vector<Rect>&) override {}
    void setOpacity(Layer layer, double opacity) override { record_.opacities[layer] = opacity; }
    void setContent(std::shared_ptr<PanelContent> content) override {
        record_.content = std::move(content);
    }
    void display() override {
        if (!record_.visible) return;
        record_.frames.push_back(
            {record_.opacities[Layer::tint], record_.radii.empty() ? 0 : record_.radii.back()});
    }
    bool isVisible() const override { return record_.visible; }
    void orderFrontRegardless() override { record_.visible = true; }
    void orderOut() override { record_.visible = false; }
    void orderAbove(WindowID) override { record_.visible = true; }
    void orderBelow(WindowID) override { record_.visible = true; }
    void makeKeyAndOrderFront() override { record_.visible = true; }
    bool isKeyWindow() const override { return false; }

  private:
    PanelRecord& record_;
};
