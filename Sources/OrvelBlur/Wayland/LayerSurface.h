#pragma once

#include <QMargins>
#include <QScreen>
#include <QSize>
#include <QWidget>
#include <cstdint>
#include <functional>

struct zwlr_layer_surface_v1;

namespace OrvelSystem {
class Compositor;
}

namespace OrvelBlur {

/// Shows a Qt window above all windows of one output and below a lock of the session. Main thread
/// only.
class LayerSurface {
  public:
    struct Place {
        /// In logical pixels. Empty means the whole output.
        QSize size;
        /// From the upper left corner of the output, in logical pixels.
        QPoint position;
        /// Whether the surface takes the keyboard from all windows.
        bool takesKeyboard = false;
    };

    /// Shows the window, which must have the flag `Compositor::rolelessWindow` and outlive this
    /// object. `resized` receives the size of the surface and must draw the window; if it is empty,
    /// the window gets that size and is drawn.
    LayerSurface(const OrvelSystem::Compositor& compositor, QWidget& window, QScreen& screen,
                 const Place& place, std::function<void(const QSize&)> resized = nullptr);
    /// Hides the window.
    ~LayerSurface();
    LayerSurface(const LayerSurface&) = delete;
    LayerSurface& operator=(const LayerSurface&) = delete;

    /// Called when the compositor has closed the surface, for example because its output is gone.
    std::function<void()> onClosed = [] {};

  private:
    void configured(std::uint32_t serial, const QSize& size);

    QWidget& window_;
    std::function<void(const QSize&)> resized_;
    zwlr_layer_surface_v1* role_ = nullptr;
};

}  // namespace OrvelBlur
