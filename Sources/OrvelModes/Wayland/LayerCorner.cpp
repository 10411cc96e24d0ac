#include <QWidget>
#include <optional>

#include "OrvelBlur/Wayland/LayerSurface.h"
#include "OrvelModes/Wayland/LayerForms.h"

namespace OrvelModes {

using OrvelSystem::Compositor;
using OrvelSystem::Outputs;

namespace {

/// A transparent surface of one logical pixel that reports when the pointer enters it.
class LayerCorner final : public CornerPanel {
  public:
    LayerCorner(Compositor& compositor, Outputs& outputs)
        : compositor_(compositor), outputs_(outputs), window_(*this) {}

    void place(const OrvelCore::Rect& rect) override {
        surface_.reset();
        for (const auto& output : outputs_.list()) {
            if (!output.frame.contains({rect.x, rect.y})) continue;
            const QPointF corner(rect.x - output.frame.x, rect.y - output.frame.y);
            surface_.emplace(
                compositor_, window_, *output.screen,
                OrvelBlur::LayerSurface::Place{.size = {1, 1}, .position = corner.toPoint()});
        }
    }

  private:
    class Window final : public QWidget {
      public:
        explicit Window(LayerCorner& owner) : owner_(owner) {
            setWindowFlags(Compositor::rolelessWindow);
            setAttribute(Qt::WA_TranslucentBackground);
            setAttribute(Qt::WA_QuitOnClose, false);
        }

      protected:
        void enterEvent(QEnterEvent*) override { tell(owner_.onEnter); }
        void leaveEvent(QEvent*) override { tell(owner_.onExit); }

      private:
        // The handler may destroy the panel.
        static void tell(const std::function<void()>& heard) {
            const auto call = heard;
            call();
        }
        LayerCorner& owner_;
    };

    Compositor& compositor_;
    Outputs& outputs_;
    Window window_;
    std::optional<OrvelBlur::LayerSurface> surface_;
};

}  // namespace

std::unique_ptr<CornerPanel> makeLayerCorner(Compositor& compositor, Outputs& outputs) {
    return std::make_unique<LayerCorner>(compositor, outputs);
}

}  // namespace OrvelModes
