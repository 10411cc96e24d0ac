// Measures how much text can be read through the blur, by radius and letter size. It gives pictures
// of the screen to a text recogniser, together with simple enhancements of them.

#include <algorithm>
#include <cstdlib>
#include <set>
#include <stdexcept>

#include <fmt/format.h>

#include "Desktop.h"
#include "Karvo.h"
#include "Measuring.h"

using namespace DesktopTest;

namespace {

const std::string text =
    "Confidential merger agreement\nMargaret Thornbury director\nsettlement seventeen million";
const std::vector<std::string> words{"confidential", "merger",    "agreement",
                                     "margaret",     "thornbury", "director",
                                     "settlement",   "seventeen", "million"};
constexpr int sizes[]{8, 10, 12, 14, 18, 24, 36, 48, 72};
constexpr int radii[]{8, 12, 16, 20, 24, 28, 32, 40, 48, 64};
// The letter height in pixels that suits the text recogniser.
constexpr int goodHeight = 32;

/// Averages blocks of `factor` by `factor` pixels. Blurred letters lose no detail by this.
Image reduced(const Image& image, int factor) {
    Image result(image.width / factor, image.height / factor);
    for (int y = 0; y < result.height; ++y)
        for (int x = 0; x < result.width; ++x) {
            int sums[3]{};
            for (int i = 0; i < factor * factor; ++i) {
                const Colour pixel = image.at(x * factor + i % factor, y * factor + i / factor);
                for (int c = 0; c < 3; ++c) sums[c] += static_cast<int>(pixel >> (8 * c) & 0xFFU);
            }
            Colour mean = 0;
            for (int c = 0; c < 3; ++c)
                mean |= static_cast<Colour>(sums[c] / (factor * factor)) << (8 * c);
            result.at(x, y) = mean;
        }
    return result;
}

/// Percentage of the words that are recognised in any version of the picture.
double share(const Image& picture, int points) {
    std::set<std::string> found;
    const int pixels = points * 96 / 72;
    for (const Image& image : {picture, picture.stretched()}) {
        const auto plain = readWords(image, pixels < goodHeight ? 3 : 1);
        found.insert(plain.begin(), plain.end());
        // Averaging removes the grain.
        const auto smooth = readWords(reduced(image, 2), pixels < goodHeight ? 5 : 2);
        found.insert(smooth.begin(), smooth.end());
        if (pixels <= goodHeight) continue;
        const auto small = readWords(reduced(image, pixels / goodHeight + 1), 1);
        found.insert(small.begin(), small.end());
    }
    const auto read =
        std::ranges::count_if(words, [&](const auto& word) { return found.contains(word); });
    return 100.0 * static_cast<double>(read) / static_cast<double>(words.size());
}

struct Sample {
    int points;
    Area place;
    Image before;
};

std::vector<Sample> showSamples(Desktop& desktop) {
    std::vector<Sample> samples;
    int y = 20;
    for (const int points : sizes) {
        const Area place =
            desktop.showText(text, points, 40, y, false, fmt::format("{} points", points));
        samples.push_back({points, place, desktop.screen().picture(place)});
        y = place.y + place.height + 20;
    }
    return samples;
}

void measure() {
    Desktop::Options options;
    options.width = 2560;
    options.height = 2160;
    Desktop desktop(options);
    auto& screen = desktop.screen();
    const Portal portal(desktop.sessionBus(), desktop.environment(), desktop.folder() / "portal");
    auto samples = showSamples(desktop);
    // The active window is not blurred; the texts are in other windows.
    auto& used = desktop.addWindow({2200, 40, 300, 200});
    used.takeFocus();

    fmt::print("| points | no blur |");
    for (const int radius : radii) fmt::print(" {} |", radius);
    fmt::print("\n|---|---|");
    for (std::size_t i = 0; i < std::size(radii); ++i) fmt::print("---|");
    fmt::print("\n");
    std::map<int, std::map<int, double>> read;
    for (auto& sample : samples) {
        // Title bars have changed with the focus.
        sample.before = screen.picture(sample.place);
        read[sample.points][0] = share(sample.before, sample.points);
    }
    std::filesystem::create_directories(desktop.configFolder() / "Karvo");
    for (const int radius : radii) {
        // Only Focus Blur allows a radius that is too small to make text unreadable.
        writeText(desktop.configFolder() / "Karvo/settings.json",
                  fmt::format(R"({{"focusBlurIntensity": {}}})", radius));
        Karvo::Options quiet;
        quiet.withGuard = false;
        Karvo karvo(desktop, quiet);
        if (!karvo.waitUntilReady()) throw std::runtime_error("Karvo is not ready");
        karvo.open("karvo://focus/on");
        const auto isBlurred = [&] {
            return std::ranges::all_of(samples, [&](const Sample& sample) {
                // Most white pixels stay white.
                return shareChanged(sample.before, screen.picture(sample.place)) > 0.3;
            });
        };
        if (!eventually([&] { return stays(isBlurred, std::chrono::milliseconds(700)); }))
            throw std::runtime_error("Focus Blur does not cover");
        for (const auto& sample : samples)
            read[sample.points][radius] = share(screen.picture(sample.place), sample.points);
        desktop.keepPicture(fmt::format("radius-{}", radius));
        karvo.process().kill();
        if (!eventually([&] {
                return std::ranges::all_of(samples, [&](const Sample& sample) {
                    return shareChanged(sample.before, screen.picture(sample.place)) < 0.01;
                });
            }))
            throw std::runtime_error("the blur does not go");
    }
    for (const auto& [points, byRadius] : read) {
        fmt::print("| {} |", points);
        for (const auto& [radius, percent] : byRadius) fmt::print(" {:.0f} |", percent);
        fmt::print("\n");
    }
}

}  // namespace

int main() {
    return Measuring::run(measure);
}
