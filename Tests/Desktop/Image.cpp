#include "Image.h"

#include <cctype>

#include "Process.h"

namespace DesktopTest {

namespace {

int channel(Colour colour, int shift) {
    return static_cast<int>((colour >> shift) & 0xff);
}

constexpr std::array<int, 3> shifts{16, 8, 0};

const Environment toolEnvironment{
    {"PATH", "/usr/bin:/bin"}, {"LC_ALL", "C.UTF-8"}, {"OMP_THREAD_LIMIT", "1"}};

}  // namespace

Image::Image(int columns, int rows, Colour fill)
    : width(columns), height(rows), pixels(static_cast<std::size_t>(columns * rows), fill) {}

Image Image::crop(Area area) const {
    const int left = std::clamp(area.x, 0, width);
    const int top = std::clamp(area.y, 0, height);
    const int right = std::clamp(area.x + area.width, left, width);
    const int bottom = std::clamp(area.y + area.height, top, height);
    Image result(right - left, bottom - top);
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x) result.at(x - left, y - top) = at(x, y);
    return result;
}

void Image::fill(Area area, Colour colour) {
    for (int y = std::max(0, area.y); y < std::min(height, area.y + area.height); ++y)
        for (int x = std::max(0, area.x); x < std::min(width, area.x + area.width); ++x)
            at(x, y) = colour;
}

Image Image::stretched() const {
    double darkest = 255, brightest = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            darkest = std::min(darkest, brightness(x, y));
            brightest = std::max(brightest, brightness(x, y));
        }
    const double range = std::max(1.0, brightest - darkest);
    Image result(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const double share = (brightness(x, y) - darkest) / range;
            result.at(x, y) = static_cast<Colour>(std::lround(share * 255)) * 0x010101;
        }
    return result;
}

double Image::brightness(int x, int y) const {
    const Colour colour = at(x, y);
    return 0.299 * channel(colour, 16) + 0.587 * channel(colour, 8) + 0.114 * channel(colour, 0);
}

double Image::meanBrightness() const {
    double sum = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) sum += brightness(x, y);
    return pixels.empty() ? 0 : sum / static_cast<double>(pixels.size());
}

double Image::sharpness() const {
    if (width < 3 || height < 3) return 0;
    double sum = 0;
    for (int y = 1; y < height - 1; ++y)
        for (int x = 1; x < width - 1; ++x)
            sum += std::abs(4 * brightness(x, y) - brightness(x - 1, y) - brightness(x + 1, y) -
                            brightness(x, y - 1) - brightness(x, y + 1));
    return sum / ((width - 2) * (height - 2));
}

double Image::shareOf(Colour colour, int tolerance) const {
    if (pixels.empty()) return 0;
    const auto matches = [&](Colour pixel) {
        return std::ranges::all_of(shifts, [&](int shift) {
            return std::abs(channel(pixel, shift) - channel(colour, shift)) <= tolerance;
        });
    };
    return static_cast<double>(std::ranges::count_if(pixels, matches)) /
           static_cast<double>(pixels.size());
}

void Image::savePpm(const std::filesystem::path& path) const {
    std::string data = "P6\n" + std::to_string(width) + " " + std::to_string(height) + "\n255\n";
    data.reserve(data.size() + pixels.size() * 3);
    for (const Colour pixel : pixels)
        for (const int shift : shifts) data.push_back(static_cast<char>(channel(pixel, shift)));
    writeText(path, data);
}

void Image::savePng(const std::filesystem::path& path) const {
    auto raw = path;
    raw.replace_extension(".ppm");
    savePpm(raw);
    run({"convert", raw.string(), path.string()}, toolEnvironment);
    std::filesystem::remove(raw);
}

double difference(const Image& a, const Image& b) {
    if (a.width != b.width || a.height != b.height || a.pixels.empty()) return 255;
    double sum = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i)
        for (const int shift : shifts)
            sum += std::abs(channel(a.pixels[i], shift) - channel(b.pixels[i], shift));
    return sum / (3.0 * static_cast<double>(a.pixels.size()));
}

double shareChanged(const Image& a, const Image& b, int tolerance) {
    if (a.width != b.width || a.height != b.height || a.pixels.empty()) return 1;
    std::size_t changed = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i)
        changed += std::ranges::any_of(shifts, [&](int shift) {
            return std::abs(channel(a.pixels[i], shift) - channel(b.pixels[i], shift)) > tolerance;
        });
    return static_cast<double>(changed) / static_cast<double>(a.pixels.size());
}

std::vector<std::string> readWords(const Image& image, int enlargement) {
    std::string folder = std::filesystem::temp_directory_path() / "karvo-ocr-XXXXXX";
    if (!mkdtemp(folder.data())) return {};
    const std::string picture = folder + "/picture.ppm", enlarged = folder + "/enlarged.ppm";
    image.savePpm(picture);
    // A text recogniser needs large letters.
    run({"convert", picture, "-filter", "Triangle", "-resize",
         fmt::format("{}%", 100 * enlargement), enlarged},
        toolEnvironment);
    run({"tesseract", enlarged, folder + "/text", "-l", "eng", "--psm", "6"}, toolEnvironment);
    std::string text = textOf(folder + "/text.txt");
    std::filesystem::remove_all(folder);
    std::ranges::transform(text, text.begin(), [](unsigned char c) {
        return std::isalnum(c) ? static_cast<char>(std::tolower(c)) : ' ';
    });
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

Image testPattern(int width, int height) {
    constexpr int field = 120;
    constexpr std::array<Colour, 6> colours{0xd9463e, 0xf2b134, 0x3fa34d,
                                            0x2d7dd2, 0x8e4ec6, 0xf4f1ea};
    Image result(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const int number = x / field + 2 * (y / field);
            const Colour colour = colours[static_cast<std::size_t>(number) % colours.size()];
            const int shade = 255 - (x % field + y % field) / 2;
            Colour shaded = 0;
            for (const int shift : shifts)
                shaded |= static_cast<Colour>(channel(colour, shift) * shade / 255) << shift;
            result.at(x, y) = shaded;
        }
    return result;
}

}  // namespace DesktopTest
