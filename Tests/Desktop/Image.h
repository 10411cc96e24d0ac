#pragma once

#include "Support/Prelude.h"

namespace DesktopTest {

/// In pixels, origin at the top left.
struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const Area&) const = default;

    Area inset(int by) const { return {x + by, y + by, width - 2 * by, height - 2 * by}; }
};

/// 0xRRGGBB
using Colour = std::uint32_t;

/// A picture in memory, rows from the top.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<Colour> pixels;

    Image() = default;
    Image(int columns, int rows, Colour fill = 0);

    Colour at(int x, int y) const { return pixels[index(x, y)]; }
    Colour& at(int x, int y) { return pixels[index(x, y)]; }
    Area bounds() const { return {0, 0, width, height}; }
    /// The part of `area` that lies in the picture.
    Image crop(Area area) const;
    /// Enlarged by whole pixels with bilinear smoothing, as a text recogniser likes it.
    Image enlarged(int factor) const;
    void fill(Area area, Colour colour);
    /// In greys from black to white, whatever the contrast was: what an image editor brings out.
    Image stretched() const;

    /// Brightness 0 to 255.
    double brightness(int x, int y) const;
    double meanBrightness() const;
    /// How much fine detail there is: the mean absolute Laplacian of the brightness. Text and
    /// edges give several, a blurred picture close to 0.
    double sharpness() const;
    /// Share of the pixels, 0 to 1, with every channel within `tolerance` of `colour`'s.
    double shareOf(Colour colour, int tolerance = 0) const;

    void savePpm(const std::filesystem::path& path) const;
    /// PNG by ImageMagick, for people to look at; a failure is only missing there.
    void savePng(const std::filesystem::path& path) const;

  private:
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }
};

/// Mean difference of the channels, 0 to 255; 255 for pictures of different sizes.
double difference(const Image& a, const Image& b);
/// Share of the pixels, 0 to 1, of which any channel differs by more than `tolerance`.
double shareChanged(const Image& a, const Image& b, int tolerance = 8);

/// The words, in lower case, that a text recogniser reads in the picture.
std::vector<std::string> readWords(const Image& image, int enlargement = 3);

/// Colour fields, hard edges and ramps over the whole picture: a desktop background on which both
/// blur and gaps show.
Image testPattern(int width, int height);

}  // namespace DesktopTest
