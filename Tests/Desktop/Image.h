#pragma once

namespace DesktopTest {

/// A rectangle in pixels; the origin is at the top left.
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

/// An image in memory; rows go from top to bottom.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<Colour> pixels;

    Image() = default;
    Image(int columns, int rows, Colour fill = 0);

    Colour at(int x, int y) const { return pixels[index(x, y)]; }
    Colour& at(int x, int y) { return pixels[index(x, y)]; }
    Area bounds() const { return {0, 0, width, height}; }
    /// The part of `area` that lies within the image.
    Image crop(Area area) const;
    void fill(Area area, Colour colour);
    /// In grey, with the contrast stretched from black to white as an image editor does.
    Image stretched() const;

    /// Brightness 0 to 255.
    double brightness(int x, int y) const;
    double meanBrightness() const;
    /// The amount of fine detail: the mean absolute Laplacian of the brightness. It is greater than
    /// 1 for text and edges, and close to 0 for a blurred image.
    double sharpness() const;
    /// Share of the pixels, 0 to 1, in which each channel is within `tolerance` of `colour`.
    double shareOf(Colour colour, int tolerance = 0) const;

    void savePpm(const std::filesystem::path& path) const;
    /// Saves a PNG with ImageMagick for a person to look at; does nothing on failure.
    void savePng(const std::filesystem::path& path) const;

  private:
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }
};

/// Mean difference of the channels, 0 to 255; 255 if the sizes differ.
double difference(const Image& a, const Image& b);
/// Share of the pixels, 0 to 1, in which any channel differs by more than `tolerance`.
double shareChanged(const Image& a, const Image& b, int tolerance = 8);

/// Words that a text recogniser finds in the image, in lower case.
std::vector<std::string> readWords(const Image& image, int enlargement = 3);

/// An image of colour fields, hard edges and gradients, on which both blur and gaps are visible.
Image testPattern(int width, int height);

}  // namespace DesktopTest
