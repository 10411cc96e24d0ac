#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "OrvelBlur/BlurSurface.h"
#include "OrvelCore/Lifetime.h"
#include "OrvelCore/Looks.h"
#include "OrvelModes/Blur/ModeSurface.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelModes {

/// An overlay of a blur mode as a blur surface.
class LiveModeSurface final : public ModeSurface {
  public:
    struct Setting {
        OrvelSystem::MainLoop& loop;
        OrvelBlur::BlurBackend backend = OrvelBlur::BlurBackend::skyLight;
        int level = OrvelBlur::WindowLevel::normal;
        bool keyboard = false;
        bool passesClicks = false;
        /// Stays where it is while the overview moves windows about.
        bool stationary = false;
        OrvelCore::OverlayLook look;
        /// Whether a keyboard that somebody took from the surface may be taken back.
        std::function<bool()> mayRetakeKeyboard = [] { return false; };
    };

    explicit LiveModeSurface(Setting setting);

    std::int64_t windowNumber() const override;
    void setContent(std::shared_ptr<OrvelBlur::PanelContent> content) override;
    void place(const OrvelCore::Rect& rect) override;
    void show(double duration) override;
    void hide(double duration) override;
    void takeKeyboard() override;
    void order(std::int64_t below) override;
    void orderFront() override;
    void leaveOpen(const std::vector<OrvelCore::Rect>& parts) override;

  private:
    void keyChanged();

    Setting setting_;
    bool wantsKeyboard_ = false;
    /// Seconds of a fade that waits to be told where among the windows it is to happen.
    std::optional<double> pendingFade_;
    // Shared with its own fading out, which outlives this object.
    std::shared_ptr<OrvelBlur::BlurSurface> surface_;
    OrvelSystem::Timer retake_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelModes
