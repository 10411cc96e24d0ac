#pragma once

#include "Eventually.h"
#include "Image.h"
#include "Process.h"
#include "SampleWindow.h"
#include "Screen.h"
#include "Services.h"
#include "XServer.h"

namespace DesktopTest {

/// A complete, isolated desktop session in a temporary folder: an X server, a window manager, a
/// session bus, a system bus with logind and optionally fprintd, scripted PAM answers, and a home
/// folder. Each test creates its own, so tests can run in parallel.
class Desktop {
  public:
    struct Options {
        /// Size of the whole screen in pixels.
        int width = 1920;
        int height = 1080;
        /// RandR monitors; if empty, the server's own monitor covers the whole screen.
        std::vector<Monitor> displays;
        /// Uses an Xorg server with emulated hardware devices for keys and clicks, instead of Xvfb
        /// with XTEST.
        bool realDevices = false;
        bool windowManager = true;
        bool sessionBus = true;
        bool systemBus = true;
        bool logind = true;
        bool fingerprintReader = false;
    };
    /// "Left" and "Right", 1920 by 1080 each, side by side.
    static Options twoDisplays();

    explicit Desktop(const Options& options);
    Desktop() : Desktop(Options()) {}
    /// Ends every process of the desktop. A sanitizer report fails the test. If the test has
    /// failed, saves a picture of the screen as an artifact and prints the logs.
    ~Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    Screen& screen() { return *screen_; }
    // Each of these services exists only with the option of the same name.
    bool hasSessionBus() const { return sessionBus_ != nullptr; }
    PrivateBus& sessionBus() { return *sessionBus_; }
    PrivateBus& systemBus() { return *systemBus_; }
    Logind& logind() { return *logind_; }
    /// Only with `realDevices`.
    DeviceInput& devices() { return dynamic_cast<DeviceInput&>(screen_->input()); }
    /// Disables one of the keyboards, as if it were unplugged, or enables it again.
    void plugKeyboard(int keyboard, bool in);
    /// Attaches a keyboard to a new master device whose focus is `focus`; `moveKeyboardBack`
    /// reverts it.
    void moveKeyboard(int keyboard, xcb_window_t focus);
    void moveKeyboardBack(int keyboard);
    FingerprintReader& fingerprintReader() { return *fingerprintReader_; }

    /// For example ":1".
    const std::string& display() const { return server_->display(); }
    /// The environment of every program that is started here.
    Environment& environment() { return environment_; }
    /// `environment` plus the variables for a program that calls PAM.
    Environment environmentWithPam() const;
    /// The desktop's own folder; the user's folders are in it.
    const std::filesystem::path& folder() const { return folder_.path(); }
    std::filesystem::path dataFolder() const { return folder() / "home/.local/share"; }
    std::filesystem::path configFolder() const { return folder() / "home/.config"; }

    /// Sets the PAM answers from now on, in the format that `pam/ScriptedPam.cpp` describes.
    /// Initially `password` is accepted.
    void setPam(const std::string& script);
    static constexpr const char* password = "correct horse";

    /// How often the window manager's shortcut Super+R has run its program.
    int shortcutRuns() const;

    /// Starts a program that ends with the desktop. Its output goes to the log `name`.log.
    Process& start(const Arguments& arguments, const std::string& name);
    Process& start(const Arguments& arguments, const std::string& name, const Environment& with);
    /// Maps a window in one colour that counts input, and waits until it is visible. Throws if it
    /// never is.
    SampleWindow& addWindow(Area area, Colour colour = 0x30507a,
                            SampleWindow::Kind kind = SampleWindow::Kind::normal,
                            const std::string& title = "Sample");
    /// Shows `text` in an xterm of the text's size, in DejaVu Sans Mono at `points`, with its upper
    /// left corner near (x, y). Waits until the text is painted, and returns the area of the window
    /// named `title`. Throws if the text does not appear.
    Area showText(const std::string& text, int points, int x, int y, bool lightOnDark = false,
                  const std::string& title = "Text");

    /// Saves a picture of the screen as an artifact, named after the running test and `name`.
    void keepPicture(const std::string& name);

  private:
    struct Folder : TemporaryFolder {
        ~Folder();
    };

    void startServer(const Options& options);
    void startBuses(const Options& options);
    void printLogs() const;
    std::string xinput(Arguments arguments);

    Folder folder_;
    int exceptionsBefore_;
    Environment environment_;
    // In order of creation; destroyed in reverse.
    std::unique_ptr<XServer> server_;
    std::unique_ptr<Screen> screen_;
    std::unique_ptr<PrivateBus> sessionBus_;
    std::unique_ptr<PrivateBus> systemBus_;
    std::unique_ptr<Logind> logind_;
    std::unique_ptr<FingerprintReader> fingerprintReader_;
    std::vector<std::unique_ptr<Process>> programs_;
    std::vector<std::unique_ptr<SampleWindow>> windows_;
};

}  // namespace DesktopTest
