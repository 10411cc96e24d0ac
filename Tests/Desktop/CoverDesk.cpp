#include "CoverDesk.h"

namespace DesktopTest {

namespace {

constexpr Colour wall = 0x506070;
constexpr int badgeWidth = 300;
constexpr int badgeHeight = 112;

}  // namespace

CoverDesk::CoverDesk(const Desktop::Options& options) : desktop(options) {
    const Area bounds = screen().bounds();
    screen().paintBackground(Image(bounds.width, bounds.height, wall));
    screen().movePointer(1900, 1070);
}

CoverDesk::App& CoverDesk::addApp(const std::string& name, Colour one, Colour other,
                                  const std::vector<Area>& windows) {
    // Copy the program, because an app without a desktop entry is identified by its file.
    const auto binary = desktop.folder() / "apps" / name;
    std::filesystem::create_directories(binary.parent_path());
    std::filesystem::copy_file(KARVO_SAMPLE_APP, binary);
    const auto hex = [](Colour colour) {
        char text[8];
        std::snprintf(text, sizeof text, "%06x", colour);
        return std::string(text);
    };
    Arguments arguments{binary.string(), name, hex(one), hex(other)};
    for (const auto& area : windows) {
        arguments.push_back(std::to_string(area.width) + "x" + std::to_string(area.height) + "+" +
                            std::to_string(area.x) + "+" + std::to_string(area.y));
    }
    auto& app = apps_[name] = {name, one, other, &desktop.start(arguments, name), {}};
    const auto areThere = [&] {
        app.windows.clear();
        const auto titles = screen().titles();
        for (std::size_t i = 0; i < windows.size(); ++i) {
            const auto found = titles.find(name + std::to_string(i));
            if (found == titles.end()) return false;
            app.windows.push_back(found->second);
        }
        return true;
    };
    if (!eventually(areThere)) throw std::runtime_error("no window of " + name);
    if (!eventually([&] { return isClear(app, windows.size() - 1); }))
        throw std::runtime_error(name + " cannot be seen");
    return app;
}

CoverDesk::App& CoverDesk::pink() {
    if (!apps_.contains("pink"))
        addApp("pink", 0xff00ff, 0xff00f0, {{200, 200, 500, 300}, {400, 420, 400, 300}});
    return apps_.at("pink");
}

CoverDesk::App& CoverDesk::blue() {
    if (!apps_.contains("blue")) addApp("blue", 0x0000ff, 0x00ffff, {{1000, 300, 500, 400}});
    return apps_.at("blue");
}

void CoverDesk::start(const std::vector<std::string>& privateApps, const Karvo::Options& options) {
    std::string list;
    for (const auto& app : privateApps) list += (list.empty() ? "\"" : ", \"") + app + '"';
    std::filesystem::create_directories(desktop.configFolder() / "Karvo");
    writeText(desktop.configFolder() / "Karvo/settings.json", R"({"privateApps": [)" + list + "]}");
    karvo_ = std::make_unique<Karvo>(desktop, options);
    if (!karvo_->waitUntilReady()) throw std::runtime_error("the program did not get ready");
}

void CoverDesk::addPortal() {
    portal_ = std::make_unique<Portal>(desktop.sessionBus(), desktop.environment(),
                                       desktop.folder() / "portal.log");
}

void CoverDesk::activate(const App& app, std::size_t window) {
    screen().activate(app.windows[window]);
    if (!eventually([&] { return screen().activeWindow() == app.windows[window]; }))
        throw std::runtime_error(app.name + " cannot be activated");
}

bool CoverDesk::lock(const App& app) {
    screen().press({XK_Super_L, XK_Alt_L, XK_l});
    return eventually([&] { return isHidden(app); });
}

int CoverDesk::keys(const App& app) {
    const auto output = app.process->output();
    const auto last = output.rfind("keys ");
    return last == std::string::npos ? 0 : std::stoi(output.substr(last + 5));
}

double CoverDesk::shown(const App& app, Area area) {
    // A window manager may place a part of a window outside the screen for a moment.
    const Area all = screen().bounds();
    const int left = std::clamp(area.x, 0, all.width);
    const int top = std::clamp(area.y, 0, all.height);
    const Area seen{left, top, std::clamp(area.x + area.width, 0, all.width) - left,
                    std::clamp(area.y + area.height, 0, all.height) - top};
    if (seen.width == 0 || seen.height == 0) return 0;
    const Image picture = screen().picture(seen);
    return picture.shareOf(app.one) + picture.shareOf(app.other);
}

bool CoverDesk::isHidden(const App& app) {
    return shown(app, screen().bounds()) == 0;
}

bool CoverDesk::isClear(const App& app, std::size_t window) {
    return shown(app, areaOf(app, window)) > 0.6;
}

Area CoverDesk::areaOf(const App& app, std::size_t window) {
    return screen().areaOf(app.windows[window]);
}

bool CoverDesk::badgeSays(const App& app, std::string_view words, std::size_t window) {
    const auto look = [&] {
        const Area area = areaOf(app, window);
        return screen().picture({area.x + (area.width - badgeWidth) / 2,
                                 area.y + (area.height - badgeHeight) / 2, badgeWidth,
                                 badgeHeight});
    };
    return showsWords(look, words);
}

}  // namespace DesktopTest
