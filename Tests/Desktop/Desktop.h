#pragma once

#include "Eventually.h"
#include "Image.h"
#include "Process.h"
#include "SampleWindow.h"
#include "Screen.h"
#include "Services.h"
#include "XServer.h"

namespace DesktopTest {

/// A whole desktop session that nothing outside can see and that leaves nothing behind: an X
/// server, a window manager, a session bus, a system bus with logind and, if wanted, fprintd, PAM
/// answers by script, and an own home. Each test makes its own, so tests may run side by side.
class Desktop {
  public:
    struct Options {
        /// Size of the whole screen in pixels.
        int width = 1920;
        int height = 1080;
        /// RandR monitors on it; none leaves the server's own one over the whole screen.
        std::vector<Display> displays;
        /// Keys and clicks come from devices like real ones, not from XTEST: an Xorg server stands
        /// in for Xvfb.
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
    /// Ends all that runs here. A sanitizer's report fails the test. When the test has failed, a
    /// picture of the screen stays among the artefacts, and the logs are printed.
    ~Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    Screen& screen() { return *screen_; }
    bool hasSessionBus() const { return sessionBus_ != nullptr; }
    PrivateBus& sessionBus() { return *sessionBus_; }
    PrivateBus& systemBus() { return *systemBus_; }
    Logind& logind() { return *logind_; }
    /// Only with `realDevices`.
    DeviceInput& devices() { return dynamic_cast<DeviceInput&>(screen_->input()); }
    /// Unplugs one of the keyboards, or plugs it in again.
    void plugKeyboard(int keyboard, bool in);
    /// Moves one to a master of its own, whose keys go to `focus`, and back again.
    void moveKeyboard(int keyboard, xcb_window_t focus);
    void moveKeyboardBack(int keyboard);
    FingerprintReader& fingerprintReader() { return *fingerprintReader_; }

    /// ":1"
    const std::string& display() const { return server_->display(); }
    /// What every program here is started with.
    Environment& environment() { return environment_; }
    /// Added to `environment` for a program that asks PAM.
    Environment environmentWithPam() const;
    /// The folder that holds this desktop, and the user's folders in it.
    const std::filesystem::path& folder() const { return folder_.path(); }
    std::filesystem::path dataFolder() const { return folder() / "home/.local/share"; }
    std::filesystem::path configFolder() const { return folder() / "home/.config"; }

    /// The PAM answers from now on: the lines that `pam/ScriptedPam.cpp` explains. At the start
    /// `password` is the right one.
    void setPam(const std::string& script);
    static constexpr const char* password = "correct horse";

    /// How often the window manager has run a program by its shortcut Super+R.
    int shortcutRuns() const;

    /// Starts a program that ends with the desktop; its output goes to a log of this name.
    Process& start(const Arguments& arguments, const std::string& name);
    Process& start(const Arguments& arguments, const std::string& name, const Environment& with);
    /// A colour window that listens, mapped and shown.
    SampleWindow& addWindow(Area area, Colour colour = 0x30507a,
                            SampleWindow::Kind kind = SampleWindow::Kind::normal,
                            const std::string& title = "Sample");
    /// An xterm as large as this text, which it shows in DejaVu Sans Mono of `points` with its
    /// upper left corner about there, dark on light or the reverse. Waits until the text is there
    /// and gives the place of its window, which has the name `title`.
    Area showText(const std::string& text, int points, int x, int y, bool lightOnDark = false,
                  const std::string& title = "Text");

    /// Keeps a picture for people, under the name of the running test.
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
    // In the order of their start; ended in reverse.
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
