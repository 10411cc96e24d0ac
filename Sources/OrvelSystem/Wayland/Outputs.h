#pragma once

#include <QObject>
#include <QScreen>
#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "OrvelCore/Geometry.h"

namespace OrvelSystem {

/// The outputs of the compositor. Main thread only. Needs a `QGuiApplication` on the Wayland
/// platform.
class Outputs {
  public:
    struct Output {
        /// Outputs of the same name have the same number.
        std::uint32_t id = 0;
        /// In logical coordinates of the compositor.
        OrvelCore::Rect frame;
        QScreen* screen = nullptr;
    };

    Outputs();

    /// In Qt's order. Empty while there is no output; Qt then has a placeholder screen.
    std::vector<Output> list();
    std::vector<OrvelCore::Rect> frames();
    /// Null if there is no output with that number.
    QScreen* screen(std::uint32_t id);

    /// Called after each change of `list`.
    std::function<void()> onChanged = [] {};

  private:
    void follow(QScreen* screen);

    QObject context_;
    std::map<QString, std::uint32_t> numbers_;
};

}  // namespace OrvelSystem
