#include "SwayDesk.h"

namespace DesktopTest {

namespace fs = std::filesystem;

namespace {

constexpr Colour background = 0xc08040, locker = 0x203040;
constexpr int width = 1280, height = 720;
/// Where the card or the pill hangs.
constexpr Area island{(width - 400) / 2, 0, 400, 170};

Image readPpm(const std::string& bytes) {
    std::istringstream in(bytes);
    std::string kind;
    int columns = 0, rows = 0, most = 0;
    in >> kind >> columns >> rows >> most;
    in.get();
    Image image(columns, rows);
    for (auto& pixel : image.pixels) {
        for (int channel = 0; channel < 3; ++channel)
            pixel = pixel << 8 | static_cast<unsigned char>(in.get());
    }
    return in && kind == "P6" ? image : Image();
}

fs::path install(const fs::path& source, const fs::path& folder) {
    fs::create_directories(folder);
    fs::copy_file(source, folder / source.filename());
    return folder / source.filename();
}

}  // namespace

std::optional<std::string> SwayDesk::obstacle() {
    const auto [status, output] = run({"sway", "--version"}, {{"PATH", "/usr/bin:/bin"}});
    std::smatch version;
    if (status != 0 || !std::regex_search(output, version, std::regex("(\\d+)\\.(\\d+)")))
        return "sway is not installed";
    if (std::stoi(version[1]) == 1 && std::stoi(version[2]) < 8)
        return "sway " + version[0].str() + " has no session lock";
    return {};
}

SwayDesk::SwayDesk(int outputs) : environment_(privateEnvironment(folder_.path())) {
    adoptOrphans();
    environment_["PATH"] = (folder_ / "bin").string() + ":/usr/bin:/bin";
    environment_["XDG_SESSION_TYPE"] = "wayland";
    environment_["XDG_CURRENT_DESKTOP"] = "sway";
    environment_["WLR_BACKENDS"] = "headless";
    environment_["WLR_RENDERER"] = "pixman";
    environment_["WLR_LIBINPUT_NO_DEVICES"] = "1";
    environment_["WLR_HEADLESS_OUTPUTS"] = std::to_string(outputs);
    binary_ = install(KARVO_BINARY, folder_ / "app");
    guard_ = install(KARVO_GUARD_BINARY, folder_ / "app");
    scriptPam(folder_.path(), std::string("password ") + password + "\n");
    // The session's own locker, which counts its starts.
    const auto lockerFile = folder_ / "bin/swaylock";
    writeText(lockerFile, "#!/bin/sh\necho started >>" + (folder_ / "locker").string() +
                              "\nexec /usr/bin/swaylock -c 203040 \"$@\"\n");
    fs::permissions(lockerFile, fs::perms::owner_all);
    std::ostringstream config;
    config << "xwayland disable\noutput * bg #" << std::hex << background << " solid_color\n"
           << std::dec << "output * mode " << width << "x" << height << "\n"
           << "output HEADLESS-1 position 0 0\noutput HEADLESS-2 position " << width << " 0\n"
           << "default_border none\nfocus_on_window_activation none\n";
    writeText(folder_ / "sway.config", config.str());
    bus_ = std::make_unique<PrivateBus>(folder_.path(), "session-bus", environment_);
    start({"sway", "-c", folder_ / "sway.config"}, "sway");
    const auto find = [this](const std::string& variable, const std::string& prefix) {
        for (const auto& entry : fs::directory_iterator(environment_["XDG_RUNTIME_DIR"])) {
            const auto name = entry.path().filename().string();
            if (name.starts_with(prefix) && entry.is_socket())
                environment_[variable] = entry.path();
        }
        return environment_.contains(variable);
    };
    if (!eventually(
            [&] { return find("WAYLAND_DISPLAY", "wayland-") && find("SWAYSOCK", "sway-"); }))
        throw std::runtime_error("sway did not start: " + programs_.back()->output());
    environment_["WAYLAND_DISPLAY"] = fs::path(environment_["WAYLAND_DISPLAY"]).filename();
    start({"foot", "--config=/dev/null", "-o", "colors.background=20a060", "sh", "-c",
           "cat > " + (folder_ / "typed").string()},
          "foot");
    if (!eventually([this] { return isOpen(); })) throw std::runtime_error("no desktop to lock");
    if (!typesIntoTerminal()) throw std::runtime_error("no keys");
}

SwayDesk::~SwayDesk() {
    checkSanitizers(folder_.path());
    if (testing::Test::HasFailure()) {
        keepPictures("failed");
        for (const char* const name : {"karvo.log", "sway.log"})
            std::cerr << "--- " << name << "\n" << textOf(folder_ / name) << "\n";
    }
    while (!programs_.empty()) programs_.pop_back();
    endDescendants();
}

Process& SwayDesk::start(const Arguments& arguments, const std::string& name) {
    programs_.push_back(
        std::make_unique<Process>(arguments, environment_, folder_ / (name + ".log")));
    return *programs_.back();
}

void SwayDesk::sway(const std::string& command) {
    const auto [status, output] = run({"swaymsg", command}, environment_);
    if (status != 0) throw std::runtime_error(command + ": " + output);
}

void SwayDesk::addToConfig(const std::string& lines) {
    const auto file = folder_ / "sway.config";
    writeText(file, textOf(file) + lines + "\n");
    sway("reload");
}

std::vector<std::string> SwayDesk::outputs() {
    const auto [status, output] = run({"swaymsg", "-r", "-t", "get_outputs"}, environment_);
    static const std::regex name("\"name\": \"(HEADLESS-\\d+)\"");
    std::vector<std::string> names;
    for (std::sregex_iterator at(output.begin(), output.end(), name), end; at != end; ++at)
        names.push_back((*at)[1]);
    std::ranges::sort(names);
    return names;
}

void SwayDesk::setSettings(const std::string& json) {
    fs::create_directories(folder_ / "home/.config/Karvo");
    writeText(folder_ / "home/.config/Karvo/settings.json", json);
}

void SwayDesk::endLocker() {
    for (const auto locker : descendantsRunning("/usr/bin/swaylock")) kill(locker, SIGKILL);
}

bool SwayDesk::showsLocker() {
    return picture(outputs().front()).shareOf(locker, 2) > 0.5;
}

Process& SwayDesk::startKarvo() {
    auto environment = withPam(environment_, folder_.path());
    environment["ORVEL_NO_ONBOARDING"] = "";
    programs_.push_back(std::make_unique<Process>(Arguments{binary_.string(), "--login-item"},
                                                  environment, folder_ / "karvo.log"));
    auto& process = *programs_.back();
    if (!eventually([&] { return answers() && guards().size() == 1; }))
        throw std::runtime_error("the program did not get ready: " + process.output());
    return process;
}

bool SwayDesk::answers() {
    return sd_bus_call_method(bus_->connection(), "com.brindlewick.karvo", "/com/brindlewick/karvo",
                              "org.freedesktop.Application", "ActivateAction", nullptr, nullptr,
                              "sava{sv}", "ready", 0, 0) >= 0;
}

void SwayDesk::open(const std::string& url) {
    Arguments arguments{binary_.string()};
    if (!url.empty()) arguments.push_back(url);
    run(arguments, withPam(environment_, folder_.path()));
}

bool SwayDesk::isMarked() const {
    return fs::exists(folder_ / "home/.local/share/Karvo/state.json");
}

int SwayDesk::attempts() const {
    // A list of numbers.
    const auto log = textOf(folder_ / "home/.local/share/Karvo/attempts.json");
    const bool isEmpty = std::ranges::none_of(log, [](char c) { return c >= '0' && c <= '9'; });
    return isEmpty ? 0 : static_cast<int>(std::ranges::count(log, ',')) + 1;
}

Image SwayDesk::picture(const std::string& output) {
    const auto file = folder_ / "picture.ppm";
    if (run({"grim", "-t", "ppm", "-o", output, file}, environment_).status != 0) return {};
    return readPpm(textOf(file));
}

bool SwayDesk::isHidden() {
    return std::ranges::all_of(outputs(), [this](const std::string& output) {
        const auto shown = picture(output);
        return !shown.pixels.empty() && shown.shareOf(background, 12) == 0 &&
               shown.shareOf(terminal, 12) == 0;
    });
}

bool SwayDesk::isOpen() {
    return std::ranges::all_of(outputs(), [this](const std::string& output) {
        const auto shown = picture(output);
        return shown.shareOf(background, 2) > 0.9 || shown.shareOf(terminal, 2) > 0.9;
    });
}

bool SwayDesk::says(const std::string& output, const std::string& words) {
    const bool said = eventually([&] {
        const auto read = readWords(picture(output).crop(island).stretched());
        std::istringstream wanted(words);
        return std::all_of(std::istream_iterator<std::string>(wanted), {}, [&](const auto& word) {
            return std::ranges::find(read, word) != read.end();
        });
    });
    if (!said) keepPictures("unsaid");
    return said;
}

bool SwayDesk::hasPill(const std::string& output) {
    return eventually([&] {
        const auto shown = picture(output);
        const Area middle{shown.width / 2 - 40, 0, 80, 14};
        return shown.crop(middle).shareOf(0) > 0.5 && shown.crop(island).shareOf(0) < 0.3;
    });
}

bool SwayDesk::lock() {
    open("karvo://lock");
    return eventually([this] { return isMarked() && isHidden(); }) &&
           says(outputs().front(), "enter your password");
}

bool SwayDesk::unlock() {
    submit(password);
    return eventually([this] { return isOpen(); }) && eventually([this] { return !isMarked(); });
}

void SwayDesk::submit(const std::string& text) {
    run({"wtype", "-d", "10", "-s", "100", text, "-k", "Return", "-s", "100"}, environment_);
}

void SwayDesk::press(const std::string& key) {
    run({"wtype", "-s", "100", "-k", key, "-s", "100"}, environment_);
}

void SwayDesk::chord(const std::string& key) {
    run({"wtype", "-s", "100", "-M", "ctrl", "-M", "alt", "-k", key, "-m", "alt", "-m", "ctrl",
         "-s", "100"},
        environment_);
}

bool SwayDesk::typesIntoTerminal() {
    return eventually([this] {
        const auto before = typed().size();
        submit("x");
        return eventually([&] { return typed().size() > before; }, std::chrono::seconds(2));
    });
}

int SwayDesk::lockerStarts() const {
    return static_cast<int>(std::ranges::count(textOf(folder_ / "locker"), '\n'));
}

void SwayDesk::keepPictures(const std::string& name) {
    const char* const chosen = std::getenv("KARVO_ARTIFACTS");
    if (chosen == nullptr) return;
    const auto* const info = testing::UnitTest::GetInstance()->current_test_info();
    fs::create_directories(chosen);
    for (const auto& output : outputs())
        picture(output).savePng(fs::path(chosen) / (std::string("Wayland.") + info->name() + "-" +
                                                    name + "-" + output + ".png"));
}

}  // namespace DesktopTest
