#include "Desktop.h"

#include <xcb/xinput.h>

#include "PrivateSession.h"

namespace DesktopTest {

namespace {

std::filesystem::path artifactFolder() {
    const char* chosen = std::getenv("KARVO_ARTIFACTS");
    return chosen ? chosen : KARVO_ARTIFACT_FOLDER;
}

std::string testName() {
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    return info ? std::string(info->test_suite_name()) + "." + info->name() : "none";
}

}  // namespace

Desktop::Options Desktop::twoDisplays() {
    Options options;
    options.width = 3840;
    options.displays = {{"Left", {0, 0, 1920, 1080}}, {"Right", {1920, 0, 1920, 1080}}};
    return options;
}

Desktop::Folder::~Folder() {
    // Done here because ~Desktop does not run if the constructor throws.
    endDescendants();
}

Desktop::Desktop(const Options& options) : exceptionsBefore_(std::uncaught_exceptions()) {
    adoptOrphans();
    environment_ = privateEnvironment(folder());
    environment_["XDG_SESSION_TYPE"] = "x11";
    startServer(options);
    startBuses(options);
    setPam(fmt::format("password {}\n", password));
    if (options.windowManager) {
        auto rules = textOf("/etc/xdg/openbox/rc.xml");
        rules.insert(rules.find("<keyboard>") + 10,
                     "<keybind key=\"W-r\"><action name=\"Execute\">"
                     "<command>sh -c 'echo >>" +
                         (folder() / "shortcut-runs").string() + "'</command></action></keybind>");
        std::filesystem::create_directories(configFolder() / "openbox");
        writeText(configFolder() / "openbox/rc.xml", rules);
        start({"openbox", "--sm-disable"}, "openbox");
        if (!eventually([&] {
                return !screen_->textProperty(screen_->root(), "_OPENBOX_VERSION").empty() ||
                       !screen_->textProperty(screen_->root(), "_OB_VERSION").empty();
            }))
            throw std::runtime_error("openbox did not start");
        // openbox ignores map requests during its start.
        auto probe = std::make_unique<SampleWindow>(display(), Area{0, 0, 10, 10}, 0,
                                                    SampleWindow::Kind::normal, "Probe");
        if (!eventually([&] {
                probe->map();
                return screen_->find("Probe").has_value();
            }))
            throw std::runtime_error("openbox does not show windows");
        probe.reset();
        if (!eventually([&] { return !screen_->cardinal(screen_->root(), "_NET_CLIENT_LIST"); }))
            throw std::runtime_error("openbox keeps a window that is gone");
    }
}

void Desktop::startServer(const Options& options) {
    Arguments arguments{
        "Xvfb", "-screen", "0",
        std::to_string(options.width) + "x" + std::to_string(options.height) + "x24"};
    auto environment = environment_;
    if (options.realDevices) {
        writeText(folder() / "xorg.conf",
                  DeviceInput::configuration(folder(), options.width, options.height));
        arguments = {
            "Xorg",        "-config",  folder() / "xorg.conf", "-logfile", folder() / "xorg.log",
            "-novtswitch", "-sharevts"};
        // Otherwise the server keeps looking for a logind that could give it devices.
        environment["DBUS_SYSTEM_BUS_ADDRESS"] = "unix:path=/nonexistent";
    }
    server_ = std::make_unique<XServer>(arguments, environment, folder() / "xserver.log");
    environment_["DISPLAY"] = display();
    if (options.realDevices)
        // Without kernel devices the server assumes the key codes of old keyboards.
        run({"setxkbmap", "-rules", "evdev", "-model", "pc105", "-layout", "us"}, environment_);
    screen_ = std::make_unique<Screen>(display());
    if (options.realDevices) screen_->use(std::make_unique<DeviceInput>(folder()));
    if (!options.displays.empty()) screen_->setDisplays(options.displays);
    screen_->paintBackground(testPattern(options.width, options.height));
}

void Desktop::startBuses(const Options& options) {
    if (options.sessionBus)
        sessionBus_ = std::make_unique<PrivateBus>(folder(), "session-bus", environment_);
    if (!options.systemBus) return;
    systemBus_ = std::make_unique<PrivateBus>(folder(), "system-bus", environment_);
    if (options.logind)
        logind_ = std::make_unique<Logind>(*systemBus_, environment_, folder() / "logind.log");
    if (options.fingerprintReader)
        fingerprintReader_ = std::make_unique<FingerprintReader>(*systemBus_, environment_,
                                                                 folder() / "fprintd.log");
}

Desktop::~Desktop() {
    checkSanitizers(folder());
    // An exception that leaves the test is not recorded as a failure yet.
    if (testing::Test::HasFailure() || std::uncaught_exceptions() > exceptionsBefore_) {
        keepPicture("failed");
        printLogs();
    }
    while (!programs_.empty()) programs_.pop_back();
    windows_.clear();
    fingerprintReader_.reset();
    logind_.reset();
    systemBus_.reset();
    sessionBus_.reset();
    screen_.reset();
    server_.reset();
}

void Desktop::printLogs() const {
    for (const auto& entry : std::filesystem::directory_iterator(folder())) {
        if (entry.path().extension() != ".log") continue;
        const auto text = textOf(entry.path());
        if (!text.empty()) std::cerr << "--- " << entry.path().filename() << "\n" << text << "\n";
    }
}

int Desktop::shortcutRuns() const {
    return static_cast<int>(textOf(folder() / "shortcut-runs").size());
}

Environment Desktop::environmentWithPam() const {
    return withPam(environment_, folder());
}

std::string Desktop::xinput(Arguments arguments) {
    arguments.insert(arguments.begin(), "xinput");
    return run(arguments, environment_).output;
}

void Desktop::plugKeyboard(int keyboard, bool in) {
    xinput({in ? "enable" : "disable", DeviceInput::nameOf(keyboard)});
    if (in) devices().connectAgain(keyboard);
}

void Desktop::moveKeyboard(int keyboard, xcb_window_t focus) {
    xinput({"create-master", "other"});
    xinput({"reattach", DeviceInput::nameOf(keyboard), "other keyboard"});
    const auto master = std::stoi(xinput({"list", "--id-only", "other keyboard"}));
    xcb_input_xi_set_focus(screen_->connection(), focus, XCB_CURRENT_TIME,
                           static_cast<xcb_input_device_id_t>(master));
    screen_->sync();
}

void Desktop::moveKeyboardBack(int keyboard) {
    xinput({"reattach", DeviceInput::nameOf(keyboard), "Virtual core keyboard"});
    xinput({"remove-master", "other pointer"});
}

void Desktop::setPam(const std::string& script) {
    scriptPam(folder(), script);
}

Process& Desktop::start(const Arguments& arguments, const std::string& name) {
    return start(arguments, name, environment_);
}

Process& Desktop::start(const Arguments& arguments, const std::string& name,
                        const Environment& with) {
    programs_.push_back(std::make_unique<Process>(arguments, with, folder() / (name + ".log")));
    return *programs_.back();
}

SampleWindow& Desktop::addWindow(Area area, Colour colour, SampleWindow::Kind kind,
                                 const std::string& title) {
    windows_.push_back(std::make_unique<SampleWindow>(display(), area, colour, kind, title));
    auto& window = *windows_.back();
    const auto isShown = [&] {
        const Area shown = screen_->areaOf(window.id());
        return screen_->picture({shown.x + shown.width / 2, shown.y + shown.height / 2, 1, 1})
                   .at(0, 0) == colour;
    };
    // openbox may lose a window that is mapped while it handles changed displays, so map it again.
    if (!eventually([&] {
            window.map();
            return eventually(isShown, std::chrono::seconds(2));
        }))
        throw std::runtime_error("the window " + title + " did not show");
    return window;
}

Area Desktop::showText(const std::string& text, int points, int x, int y, bool lightOnDark,
                       const std::string& title) {
    const auto file = folder() / (title + ".txt");
    // Hide the cursor, which is not text.
    writeText(file, "\033[?25l" + text);
    std::size_t columns = 0, rows = 0;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line); ++rows)
        columns = std::max(columns, line.size());
    const char* light = "#fbfbf8";
    const char* dark = "#101418";
    const auto geometry = fmt::format("{}x{}+{}+{}", columns + 1, rows + 1, x, y);
    const auto show = fmt::format("cat '{}'; exec sleep 100000", file.string());
    if (lightOnDark) std::swap(light, dark);
    start({"xterm",
           "-title",
           title,
           "-name",
           title,
           "-fa",
           "DejaVu Sans Mono",
           "-fs",
           std::to_string(points),
           "-geometry",
           geometry,
           "-b",
           "8",
           "-bg",
           light,
           "-fg",
           dark,
           "-e",
           "/bin/sh",
           "-c",
           show},
          title);
    std::optional<xcb_window_t> window;
    if (!eventually([&] { return (window = screen_->find(title)).has_value(); }))
        throw std::runtime_error("xterm did not start");
    // The text is complete when the picture has detail and no longer changes.
    Area place;
    Image last;
    if (!eventually([&] {
            place = screen_->areaOf(*window);
            Image now = screen_->picture(place);
            const bool done = now.sharpness() > 1 && difference(now, last) == 0;
            last = std::move(now);
            return done;
        }))
        throw std::runtime_error("xterm did not show its text");
    return place;
}

void Desktop::keepPicture(const std::string& name) {
    const auto folder = artifactFolder();
    std::filesystem::create_directories(folder);
    std::string file = testName() + "-" + name + ".png";
    for (char& c : file)
        if (c == '/') c = '_';
    if (screen_) screen_->picture().savePng(folder / file);
}

}  // namespace DesktopTest
