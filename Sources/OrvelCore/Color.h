#pragma once

namespace OrvelCore {

/// An sRGB colour with straight (not premultiplied) alpha. Each component is from 0 to 1.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    bool operator==(const Color&) const = default;
};

}  // namespace OrvelCore
