#pragma once

#include "Desktop.h"

namespace DesktopTest {

/// The program under test on one desktop, installed in the desktop's own folder, so that no other
/// test's guard or app can be taken for this one's.
class Karvo {
  public:
    struct Options {
        /// Without it the program finds no guard beside itself.
        bool withGuard = true;
        /// Whether the first-run guide may open.
        bool withGuide = false;
        /// Set over the desktop's environment.
        Environment environment;
        /// As the session starts it, since the user's own start shows a window where no panel shows
        /// the status item.
        Arguments arguments{"--login-item"};
        /// A program and its arguments that end by running the command line after them.
        Arguments wrapper;
    };

    /// Starts it; `waitUntilReady` is for the caller.
    Karvo(Desktop& desktop, const Options& options);
    explicit Karvo(Desktop& desktop) : Karvo(desktop, Options()) {}

    /// True once its launch is over, its shortcuts are registered and its guard runs. Asks over the
    /// session bus, so it needs one.
    bool waitUntilReady();
    /// The process started here, not one that the guard started since.
    Process& process() { return *process_; }
    /// Starts it once more, as a second launch by hand.
    Process& startAgain(const Arguments& arguments = {});
    /// Opens the URL as other programs do.
    void open(const std::string& url) { startAgain({url}); }

    /// Processes of the app and of its guard that run now, whoever started them.
    std::vector<pid_t> apps() const { return descendantsRunning(binary_); }
    std::vector<pid_t> guards() const { return descendantsRunning(guard_); }
    const std::filesystem::path& binary() const { return binary_; }
    std::filesystem::path markerFile() const { return desktop_.dataFolder() / "Karvo/state.json"; }

  private:
    bool answers();
    bool expectsGuard() const;

    Desktop& desktop_;

    Options options_;
    std::filesystem::path binary_;
    std::filesystem::path guard_;
    Process* process_;
};

}  // namespace DesktopTest
