#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "OrvelBlur/BlurSurface.h"
#include "OrvelCore/Lifetime.h"
#include "OrvelCore/Looks.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelModes/Blur/ModeSurface.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelModes {

/// An overlay of a blur mode, made of a blur surface.
class LiveModeSurface final : public ModeSurface {
  public:
    struct Options {
        OrvelSystem::MainLoop& loop;
        OrvelBlur::BlurBackend backend = OrvelBlur::BlurBackend::skyLight;
        int level = OrvelBlur::WindowLevel::normal;
        bool keyboard = false;
        bool passesClicks = false;
        /// Stays in its place while the overview moves windows.
        bool stationary = false;
        OrvelCore::OverlayLook look;
        /// Whether the surface may take the keyboard back when another program has taken it.
        std::function<bool()> mayRetakeKeyboard = [] { return false; };
    };

    explicit LiveModeSurface(Options options);

    /// The `makeSurface` of `QuickBlurSystem` and of `FocusBlurSystem`. `look` is called
    /// whenever a surface is made.
    static std::function<std::unique_ptr<ModeSurface>(bool keyboard)> forQuickBlur(
        OrvelSystem::MainLoop& loop, OrvelBlur::BlurBackend backend,
        std::function<OrvelCore::OverlayLook()> look, std::function<bool()> macLocked);
    static std::function<std::unique_ptr<ModeSurface>()> forFocusBlur(
        OrvelSystem::MainLoop& loop, OrvelBlur::BlurBackend backend,
        std::function<OrvelCore::OverlayLook()> look);

    OrvelCore::WindowID windowNumber() const override;
    void setContent(std::shared_ptr<OrvelBlur::PanelContent> content) override;
    void place(const OrvelCore::Rect& rect) override;
    void show(double duration) override;
    void hide(double duration) override;
    void takeKeyboard() override;
    void order(OrvelCore::WindowID below) override;
    void orderFront() override;
    void leaveOpen(const std::vector<OrvelCore::Rect>& parts) override;

  private:
    void keyChanged();

    Options options_;
    bool wantsKeyboard_ = false;
    /// The duration, in seconds, of a fade that starts when the surface gets its place among the
    /// windows.
    std::optional<double> pendingFade_;
    // Shared with its fade-out, which outlives this object.
    std::shared_ptr<OrvelBlur::BlurSurface> surface_;
    OrvelSystem::Timer retake_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelModes
