#pragma once

#include "Desktop.h"

namespace DesktopTest {

/// The program under test, copied into the desktop's own folder so that its processes cannot be
/// confused with those of another test.
class Karvo {
  public:
    struct Options {
        /// If false, the program finds no guard in its folder.
        bool withGuard = true;
        /// Whether the first-run guide may open.
        bool withGuide = false;
        /// Added to the desktop's environment, which it overrides.
        Environment environment;
        /// A start by the session. A start by the user would open a window if no panel shows the
        /// status item.
        Arguments arguments{"--login-item"};
        /// A program and its arguments that finally runs the command line appended to them.
        Arguments wrapper;
    };

    /// Does not wait; call `waitUntilReady`.
    Karvo(Desktop& desktop, const Options& options);
    explicit Karvo(Desktop& desktop) : Karvo(desktop, Options()) {}

    /// Waits until the launch is complete, the shortcuts are registered and the guard runs; false
    /// if that does not happen. Needs a session bus.
    bool waitUntilReady();
    /// The process started here, not one that the guard has started since.
    Process& process() { return *process_; }
    /// Starts the program again, like a second launch by the user.
    Process& startAgain(const Arguments& arguments = {});
    /// Opens the URL the way other programs do.
    void open(const std::string& url) { startAgain({url}); }

    /// Ids of the running processes of the app and of its guard, including those started by others.
    std::vector<pid_t> apps() const { return descendantsRunning(binary_); }
    std::vector<pid_t> guards() const { return descendantsRunning(guard_); }
    const std::filesystem::path& binary() const { return binary_; }
    std::filesystem::path markerFile() const { return desktop_.dataFolder() / "Karvo/state.json"; }

  private:
    bool answers();
    /// Whether the guard is ready, which the program checks too before a lock.
    bool isGuarded() const;
    bool expectsGuard() const;

    Desktop& desktop_;

    Options options_;
    std::filesystem::path binary_;
    std::filesystem::path guard_;
    Process* process_;
};

}  // namespace DesktopTest
