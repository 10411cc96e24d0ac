// An app with several windows, all filled with fine detail in the same two colours, so that a test
// finds every visible pixel. It prints the number of received key presses.
//   SampleApp NAME COLOUR COLOUR WIDTHxHEIGHT+X+Y...

#include "../SampleWindow.h"
#include "../Screen.h"

namespace {

Image noise(Area area, Colour one, Colour other) {
    Image image(area.width, area.height);
    std::minstd_rand random(7);
    for (auto& pixel : image.pixels) pixel = random() / 64 % 2 ? one : other;
    return image;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string display = std::getenv("DISPLAY");
    const std::string name = argv[1];
    const auto colour = [](const char* text) {
        return static_cast<Colour>(std::stoul(text, nullptr, 16));
    };
    Screen screen(display);
    std::vector<std::unique_ptr<SampleWindow>> windows;
    for (int i = 4; i < argc; ++i) {
        Area area;
        if (std::sscanf(argv[i], "%dx%d+%d+%d", &area.width, &area.height, &area.x, &area.y) != 4)
            return 2;
        windows.push_back(std::make_unique<SampleWindow>(display, area, colour(argv[2]),
                                                         SampleWindow::Kind::normal,
                                                         name + std::to_string(windows.size())));
        screen.paint(windows.back()->id(), noise(area, colour(argv[2]), colour(argv[3])));
    }
    for (int before = -1;;) {
        int keys = 0;
        for (const auto& window : windows) keys += window->keyPresses();
        if (keys != before) std::printf("keys %d\n", before = keys);
        std::fflush(stdout);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}
