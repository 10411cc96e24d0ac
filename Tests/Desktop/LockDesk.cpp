#include "LockDesk.h"

namespace DesktopTest {

namespace {

// Below the card and its shadow, and beside the window.
constexpr int detailTop = 220;
constexpr int detailHeight = 20;
constexpr int detailSpacing = 100;
constexpr Area windowArea{100, 420, 400, 200};
// The card of a display without a notch.
constexpr int cardWidth = 344;
constexpr int cardHeight = 136;
constexpr int pillWidth = 120;
constexpr int pillHeight = 30;
constexpr Colour island = 0x000000;
// Not grey, since the smoothed edges of a locker's white or black text have every shade of grey.
constexpr Colour lightDetail = 0xfffaf0, darkDetail = 0x080810;

constexpr std::chrono::milliseconds longEnough{1500};

/// The test pattern with bands of fine black and white detail, which any blur or tint changes.
Image background(int width, int height) {
    Image image = testPattern(width, height);
    std::minstd_rand random(1);
    for (int top = detailTop; top < height; top += detailSpacing)
        for (int y = top; y < top + detailHeight; y += 2)
            for (int x = 0; x < width; x += 2)
                image.fill({x, y, 2, 2}, random() / 64 % 2 ? lightDetail : darkDetail);
    return image;
}

/// Whether no detail pixel of a band is visible. `before` may lack some where a window was.
bool isHidden(const Image& before, const Image& now) {
    const auto isDetail = [](Colour colour) {
        return colour == lightDetail || colour == darkDetail;
    };
    for (std::size_t i = 0; i < before.pixels.size(); ++i)
        if (isDetail(before.pixels[i]) && now.pixels[i] == before.pixels[i]) return false;
    // The cover's grain has some sharpness of its own.
    return now.sharpness() < std::max(before.sharpness() / 10, 20.0);
}

Area cardOf(Area display) {
    return {display.x + (display.width - cardWidth) / 2, display.y, cardWidth, cardHeight};
}

}  // namespace

bool contains(const std::vector<std::string>& words, std::string_view wanted) {
    std::istringstream stream{std::string(wanted)};
    return std::all_of(std::istream_iterator<std::string>(stream), {}, [&](const auto& word) {
        return std::ranges::find(words, word) != words.end();
    });
}

bool showsWords(const std::function<Image()>& look, std::string_view words) {
    Image last, read;
    int looks = 0;
    return eventually([&] {
        Image now = look();
        const bool isDue = ++looks % 25 == 0;
        const bool isNew = now.pixels == last.pixels && now.pixels != read.pixels;
        last = std::move(now);
        if (!isNew && !isDue) return false;
        read = last;
        return contains(readWords(read), words);
    });
}

Desktop::Options LockDesk::oneDisplay() {
    Desktop::Options options;
    options.width = onlyDisplay.width;
    options.height = onlyDisplay.height;
    return options;
}

LockDesk::LockDesk(const Desktop::Options& options) : desktop(options) {
    const Area bounds = screen().bounds();
    screen().paintBackground(background(bounds.width, bounds.height));
    window_ = &desktop.addWindow(windowArea);
    window_->takeFocus();
    screen().movePointer(bounds.width / 4, bounds.height - 40);
    // The window manager redraws the frame some time after the window has the focus.
    constexpr std::chrono::milliseconds frameDrawn{200};
    const auto isSteady = [this, frameDrawn] {
        remember();
        return stays([this] { return isOpen(); }, frameDrawn);
    };
    if (!eventually(isSteady)) throw std::runtime_error("the desktop does not come to rest");
}

void LockDesk::setSettings(const std::string& json) {
    std::filesystem::create_directories(desktop.configFolder() / "Karvo");
    writeText(desktop.configFolder() / "Karvo/settings.json", json);
}

Karvo& LockDesk::start(const Karvo::Options& options) {
    karvo_ = std::make_unique<Karvo>(desktop, options);
    if (desktop.hasSessionBus() && !karvo_->waitUntilReady())
        throw std::runtime_error("the program did not get ready");
    return *karvo_;
}

void LockDesk::remember() {
    before_ = screen().picture();
}

bool LockDesk::lockByShortcut() {
    remember();
    return lockUnseen();
}

bool LockDesk::lockUnseen() {
    screen().press({XK_Super_L, XK_l});
    return eventually([this] { return isCovered(); });
}

bool LockDesk::lockByURL() {
    remember();
    karvo_->startAgain({"karvo://lock"});
    return eventually([this] { return isCovered(); });
}

std::vector<Area> LockDesk::displays() {
    std::vector<Area> areas;
    for (const auto& display : screen().displays()) areas.push_back(display.area);
    return areas;
}

bool LockDesk::isCovered(Area display) {
    for (int top = detailTop; top + detailHeight <= display.height; top += detailSpacing) {
        const Area band{display.x, display.y + top, display.width, detailHeight};
        const Image before = before_.crop(band);
        if (before.bounds() != Area{0, 0, band.width, band.height})
            throw std::runtime_error("this display was not there to be remembered");
        if (!isHidden(before, screen().picture(band))) return false;
    }
    return true;
}

bool LockDesk::isCovered() {
    return std::ranges::all_of(displays(), [this](Area display) { return isCovered(display); });
}

bool LockDesk::isOpen() {
    return screen().picture().pixels == before_.pixels;
}

bool LockDesk::showsDesktop() {
    const Area bounds = screen().bounds();
    const int bands = (bounds.height - detailTop - detailHeight) / detailSpacing;
    const Area last{0, detailTop + bands * detailSpacing, bounds.width, detailHeight};
    return screen().picture(last).pixels == before_.crop(last).pixels;
}

bool LockDesk::staysCovered() {
    return stays([this] { return isCovered(); }, longEnough);
}

std::vector<std::string> LockDesk::cardWords(Area display) {
    return readWords(screen().picture(cardOf(display)));
}

bool LockDesk::cardSays(Area display, std::string_view words) {
    return showsWords([&] { return screen().picture(cardOf(display)); }, words);
}

bool LockDesk::lockToCard(Area display) {
    return lockByShortcut() && cardSays(display, "enter your password");
}

bool LockDesk::takesPassword(Area display) {
    return cardSays(display, "enter your password") &&
           eventually([this] { return screen().keyboardIsGrabbed(); });
}

bool LockDesk::hasCard(Area display) {
    const Area card = cardOf(display);
    // This strip between the band and the content is entirely in the island's colour.
    return screen().picture({card.x + 20, pillHeight + 2, cardWidth - 40, 2}).shareOf(island) == 1;
}

bool LockDesk::hasPill(Area display) {
    const int middle = display.x + display.width / 2;
    const Area pill{middle - pillWidth / 2 + 12, display.y + 2, pillWidth - 24, 3};
    return screen().picture(pill).shareOf(island) == 1 && !hasCard(display);
}

void LockDesk::submit(std::string_view password) {
    screen().type(password);
    screen().press({XK_Return});
}

bool LockDesk::submitWrong(std::chrono::milliseconds limit) {
    const int before = attempts();
    submit("wrong guess");
    return eventually([&] { return attempts() == before + 1; }, limit);
}

bool LockDesk::unlock() {
    submit(Desktop::password);
    return eventually([this] { return isOpen(); });
}

bool LockDesk::unlockWhateverAsks() {
    // Input is lost until something asks for it, and a locker ignores keys for a moment after a
    // wrong password.
    return eventually([this] {
        screen().press({XK_Escape});
        submit(Desktop::password);
        return eventually([this] { return isOpen(); }, std::chrono::seconds(4));
    });
}

int LockDesk::attempts() {
    const auto list = textOf(desktop.dataFolder() / "Karvo/attempts.json");
    const auto commas = std::ranges::count(list, ',');
    return list.find_first_of("0123456789") == std::string::npos ? 0 : static_cast<int>(commas) + 1;
}

bool LockDesk::typesIntoWindow() {
    const int before = window_->keyPresses();
    screen().type("abc");
    return eventually([&] { return window_->keyPresses() == before + 3; });
}

}  // namespace DesktopTest
