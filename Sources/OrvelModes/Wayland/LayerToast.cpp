#include <optional>

#include "OrvelBlur/Wayland/LayerSurface.h"
#include "OrvelModes/Wayland/LayerForms.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelUI/Qt/NoticePillWidget.h"

namespace OrvelModes {

using OrvelSystem::Appearance;
using OrvelSystem::Compositor;
using OrvelSystem::Outputs;
using OrvelUI::NoticePillWidget;

namespace {

class LayerToast final : public ToastPanel {
  public:
    LayerToast(Compositor& compositor, Outputs& outputs)
        : compositor_(compositor), outputs_(outputs) {
        window_.setWindowFlags(Compositor::rolelessWindow | Qt::WindowTransparentForInput);
        window_.setAttribute(Qt::WA_TranslucentBackground);
        window_.setAttribute(Qt::WA_QuitOnClose, false);
        window_.setWindowTitle(QStringLiteral("Karvo"));
    }
    ~LayerToast() override { orderOut(); }

    void show(const OrvelUI::NoticePillContent& notice, const OrvelCore::Rect& display) override {
        orderOut();
        for (const auto& output : outputs_.list()) {
            if (output.frame != display) continue;
            const QSize area = output.screen->size();
            pill_ = std::make_unique<NoticePillWidget>(notice, std::nullopt, area.width(), true);
            const QRect place = pill_->placement(area);
            pill_->setParent(&window_);
            pill_->setGeometry(QRect(QPoint(), place.size()));
            pill_->show();
            surface_.emplace(
                compositor_, window_, *output.screen,
                OrvelBlur::LayerSurface::Place{.size = place.size(), .position = place.topLeft()});
            surface_->onClosed = [this] { orderOut(); };
            return;
        }
    }
    void setAlpha(double alpha) override {
        if (pill_) pill_->setShown(alpha);
    }
    void orderOut() override {
        surface_.reset();
        pill_.reset();
    }

  private:
    Compositor& compositor_;
    Outputs& outputs_;
    QWidget window_;
    std::unique_ptr<NoticePillWidget> pill_;
    std::optional<OrvelBlur::LayerSurface> surface_;
};

}  // namespace

ToastSystem waylandToasts(Compositor& compositor, Outputs& outputs) {
    return {.makePanel = [&] { return std::make_unique<LayerToast>(compositor, outputs); },
            // Without a layer shell no notice is shown.
            .screens =
                [&] {
                    return compositor.layerShell != nullptr ? outputs.frames()
                                                            : std::vector<OrvelCore::Rect>();
                },
            .pointer = [] { return OrvelCore::Point{}; },
            .reduceMotion = [] { return Appearance::shared().reducesMotion(); },
            .increasedContrast = [] { return Appearance::shared().increasesContrast(); }};
}

}  // namespace OrvelModes
