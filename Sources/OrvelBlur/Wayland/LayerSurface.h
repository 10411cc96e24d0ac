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

/// A window of Qt as a surface above all windows of one output, and below a lock of the session.
/// Main thread only.
class LayerSurface {
  public:
    struct Place {
        /// Empty for the whole output.
        QSize size;
        /// From the output's upper left corner, in its logical units.
        QPoint position;
        /// Takes the keyboard from all windows.
        bool takesKeyboard = false;
    };

    /// Shows the window, which has `Compositor::rolelessWindow` among its flags and outlives this
    /// object. `resized` hears the size of the surface, and draws it; without one the window gets
    /// that size and is drawn.
    LayerSurface(const OrvelSystem::Compositor& compositor, QWidget& window, QScreen& screen,
                 const Place& place, std::function<void(const QSize&)> resized = nullptr);
    /// Hides the window.
    ~LayerSurface();
    LayerSurface(const LayerSurface&) = delete;
    LayerSurface& operator=(const LayerSurface&) = delete;

    /// The compositor has taken the surface away, with its output for example.
    std::function<void()> onClosed = [] {};

  private:
    void configured(std::uint32_t serial, const QSize& size);

    QWidget& window_;
    std::function<void(const QSize&)> resized_;
    zwlr_layer_surface_v1* role_ = nullptr;
};

}  // namespace OrvelBlur
