#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <optional>
#include <utility>

#include <unistd.h>

#include "OrvelBlur/Wayland/LayerSurface.h"
#include "OrvelModes/Wayland/LayerForms.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelUI/Qt/Drawing.h"
#include "OrvelUI/Qt/MenuPanelView.h"

namespace OrvelModes {

using OrvelCore::Rect;
using OrvelSystem::Appearance;
using OrvelSystem::Compositor;
using OrvelSystem::Outputs;
using OrvelUI::MenuPanelView;
namespace Drawing = OrvelUI::Drawing;

namespace {

/// Shows the panel on a transparent surface over the whole output, because a program does not
/// receive clicks on other windows.
class LayerMenuPanel final : public MenuPanelSurface {
  public:
    LayerMenuPanel(Compositor& compositor, Outputs& outputs, OrvelUI::MenuPanelModel& model)
        : compositor_(compositor), outputs_(outputs), model_(model), window_(*this) {}

    void renewView() override { window_.renew(model_); }
    OrvelCore::Size fittingSize(double room) override {
        const QSize size = window_.view().fittingSize(room);
        return {double(size.width()), double(size.height())};
    }
    void setFrame(const Rect& frame) override {
        frame_ = frame;
        place();
    }
    void orderFront(bool takesKeyboard) override {
        for (const auto& output : outputs_.list()) {
            if (!output.frame.contains({frame_.x, frame_.y})) continue;
            output_ = output.frame;
            place();
            surface_.emplace(compositor_, window_, *output.screen,
                             OrvelBlur::LayerSurface::Place{.takesKeyboard = takesKeyboard});
            surface_->onClosed = [this] { onCancel(); };
            if (takesKeyboard) window_.view().focusFirst();
            return;
        }
    }
    void orderOut(bool) override { surface_.reset(); }

  private:
    class Window final : public QWidget {
      public:
        explicit Window(LayerMenuPanel& owner) : owner_(owner) {
            setWindowFlags(Compositor::rolelessWindow);
            setAttribute(Qt::WA_TranslucentBackground);
            setAttribute(Qt::WA_QuitOnClose, false);
            setWindowTitle(QStringLiteral("Karvo"));
        }
        MenuPanelView& view() { return *view_; }
        void renew(OrvelUI::MenuPanelModel& model) {
            const auto& appearance = Appearance::shared();
            delete std::exchange(view_, nullptr);
            view_ = new MenuPanelView(model, appearance.reducesMotion(),
                                      appearance.increasesContrast(), this);
            view_->show();
        }

      protected:
        void keyPressEvent(QKeyEvent* event) override {
            if (event->key() == Qt::Key_Escape) cancel();
        }
        void mousePressEvent(QMouseEvent*) override { cancel(); }
        void paintEvent(QPaintEvent*) override {
            if (view_ == nullptr) return;
            QPainter painter(this);
            painter.translate(view_->pos());
            painter.scale(Drawing::uiScale(), Drawing::uiScale());
            const double points = 1 / Drawing::uiScale();
            shadow_.draw(painter, QTransform::fromScale(points, points).map(view_->outline()));
        }

      private:
        // Called in a later turn of the loop, because it hides the window that receives the event.
        void cancel() {
            QTimer::singleShot(0, this, [this] { owner_.onCancel(); });
        }

        LayerMenuPanel& owner_;
        MenuPanelView* view_ = nullptr;
        Drawing::Shadow shadow_{OrvelUI::MenuPanelContent::shadow};
    };

    void place() {
        const QRectF card(frame_.x - output_.x, frame_.y - output_.y, frame_.width, frame_.height);
        window_.view().setGeometry(card.toRect());
        window_.update();
    }

    Compositor& compositor_;
    Outputs& outputs_;
    OrvelUI::MenuPanelModel& model_;
    Window window_;
    Rect frame_;
    Rect output_;
    std::optional<OrvelBlur::LayerSurface> surface_;
};

}  // namespace

MenuPanelSystem waylandMenuPanel(Compositor& compositor, Outputs& outputs) {
    return {.makePanel =
                [&](OrvelUI::MenuPanelModel& model) {
                    return std::make_unique<LayerMenuPanel>(compositor, outputs, model);
                },
            .watchPresses = [](const auto&) { return nullptr; },
            .watchActivations = [](const auto&) { return nullptr; },
            .ownPID = getpid()};
}

}  // namespace OrvelModes
