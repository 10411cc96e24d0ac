#pragma once

#include <QObject>
#include <QScreen>
#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "OrvelCore/Geometry.h"

namespace OrvelSystem {

/// The compositor's outputs. Main thread only; needs a `QGuiApplication` on its Wayland platform.
class Outputs {
  public:
    struct Output {
        /// The same for every output of that name.
        std::uint32_t id = 0;
        /// In the compositor's logical coordinates.
        OrvelCore::Rect frame;
        QScreen* screen = nullptr;
    };

    Outputs();

    /// In Qt's order. Empty while there is none; Qt then has a screen of its own making.
    std::vector<Output> list();
    std::vector<OrvelCore::Rect> frames();
    /// Null where there is none of that number.
    QScreen* screen(std::uint32_t id);

    /// After each change of `list`.
    std::function<void()> onChanged = [] {};

  private:
    void follow(QScreen* screen);

    QObject context_;
    std::map<QString, std::uint32_t> numbers_;
};

}  // namespace OrvelSystem
