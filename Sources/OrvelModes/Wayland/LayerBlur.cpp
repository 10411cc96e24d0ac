#include <QKeyEvent>
#include <QTimer>
#include <optional>
#include <utility>

#include "OrvelBlur/Wayland/FilledWindow.h"
#include "OrvelBlur/Wayland/LayerSurface.h"
#include "OrvelModes/Qt/QuickBlurPillContent.h"
#include "OrvelModes/Wayland/LayerForms.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelUI/Palette.h"

namespace OrvelModes {

using OrvelBlur::FilledWindow;
using OrvelSystem::Compositor;
using OrvelSystem::Outputs;

namespace {

/// Is shown and hidden without a fade, because a fade would show the desktop.
class LayerBlur final : public ModeSurface {
  public:
    LayerBlur(Compositor& compositor, Outputs& outputs, const OrvelCore::Color& color,
              bool keyboard)
        : compositor_(compositor), outputs_(outputs), window_(color), keyboard_(keyboard) {
        window_.onKey = [this](const QKeyEvent& event) {
            if (event.key() != Qt::Key_Escape) return;
            // Called in a later turn of the loop, because it destroys the window that receives the
            // key.
            QTimer::singleShot(0, &window_, [this] {
                const auto cancelled = onCancel;
                if (cancelled) cancelled();
            });
        };
    }

    OrvelCore::WindowID windowNumber() const override { return 0; }
    void setContent(std::shared_ptr<OrvelBlur::PanelContent> content) override {
        window_.setContent(std::dynamic_pointer_cast<OrvelBlur::QtPanelContent>(content));
    }
    void place(const OrvelCore::Rect& rect) override { rect_ = rect; }
    void show(double) override {
        for (const auto& output : outputs_.list()) {
            if (output.frame != rect_) continue;
            surface_.emplace(compositor_, window_, *output.screen,
                             OrvelBlur::LayerSurface::Place{.takesKeyboard = keyboard_},
                             [this](const QSize& size) { window_.fill(size); });
            return;
        }
    }
    void hide(double) override { surface_.reset(); }
    // The compositor gives the surface the keyboard and restores the focus afterwards.
    void takeKeyboard() override {}
    void order(OrvelCore::WindowID) override {}
    void orderFront() override {}
    void leaveOpen(const std::vector<OrvelCore::Rect>&) override {}

  private:
    Compositor& compositor_;
    Outputs& outputs_;
    FilledWindow window_;
    bool keyboard_;
    OrvelCore::Rect rect_;
    std::optional<OrvelBlur::LayerSurface> surface_;
};

}  // namespace

QuickBlurSystem waylandQuickBlur(Compositor& compositor, Outputs& outputs,
                                 std::function<OrvelCore::OverlayLook()> look,
                                 std::function<bool()> macLocked) {
    QuickBlurSystem system;
    system.displays = [&outputs] { return outputs.frames(); };
    system.makeSurface = [&, look = std::move(look)](bool keyboard) {
        return std::make_unique<LayerBlur>(compositor, outputs,
                                           OrvelUI::Palette::solidColor(look()), keyboard);
    };
    system.frontApp = [] { return std::optional<std::int64_t>(); };
    system.activateOrvel = [] {};
    system.activateApp = [](std::int64_t) {};
    system.reduceMotion = [] { return OrvelSystem::Appearance::shared().reducesMotion(); };
    system.pill = [](const OrvelCore::Rect& display, std::function<void()> onReveal) {
        return makeQuickBlurPill(static_cast<int>(display.width), std::move(onReveal));
    };
    system.macLocked = std::move(macLocked);
    return system;
}

}  // namespace OrvelModes
