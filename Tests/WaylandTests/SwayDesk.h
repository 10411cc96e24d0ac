#pragma once

#include "Eventually.h"
#include "Image.h"
#include "PrivateSession.h"
#include "Services.h"

namespace DesktopTest {

/// A session on a headless sway with outputs of 1280 by 720 side by side, a terminal that keeps
/// what is typed into it, and the program. Ends with all that runs in it.
class SwayDesk {
  public:
    static constexpr const char* password = "correct horse";
    static constexpr Colour terminal = 0x20a060;

    /// Fails with the reason where this machine has no sway with session locks.
    static std::optional<std::string> obstacle();

    explicit SwayDesk(int outputs = 1);
    ~SwayDesk();
    SwayDesk(const SwayDesk&) = delete;
    SwayDesk& operator=(const SwayDesk&) = delete;

    /// Runs a command of sway's.
    void sway(const std::string& command);
    /// Adds lines to sway's configuration, which is read again.
    void addToConfig(const std::string& lines);
    /// The names of the outputs that are on, "HEADLESS-1" first.
    std::vector<std::string> outputs();

    /// Starts a program; its output goes to a log of this name.
    Process& start(const Arguments& arguments, const std::string& name);
    /// To be called before the program starts.
    void setSettings(const std::string& json);
    /// Starts the program, with its guard beside it, and waits until both are there.
    Process& startKarvo();
    /// Opens its link; without one, its settings.
    void open(const std::string& url);
    std::vector<pid_t> apps() const { return descendantsRunning(binary_); }
    std::vector<pid_t> guards() const { return descendantsRunning(guard_); }
    bool isMarked() const;
    int attempts() const;

    Image picture(const std::string& output);
    /// Whether nothing of the desktop shows on any output.
    bool isHidden();
    bool isOpen();
    /// Waits until the words, in lower case, are on the island of the output.
    bool says(const std::string& output, const std::string& words);
    /// Waits until there is what an output without the card has.
    bool hasPill(const std::string& output);
    /// Opens the lock's link, and waits until the card is there.
    bool lock();
    /// Types the password and waits until the desktop is there.
    bool unlock();

    /// Types, and presses Return.
    void submit(const std::string& text);
    void press(const std::string& key);
    /// Presses a key with Control and Alt.
    void chord(const std::string& key);
    /// What the terminal was given.
    std::string typed() const { return textOf(folder_ / "typed"); }
    /// Whether keys reach the terminal.
    bool typesIntoTerminal();

    /// How often the session's own locker, swaylock, was started.
    int lockerStarts() const;
    bool showsLocker();
    void endLocker();
    void keepPictures(const std::string& name);

    const TemporaryFolder& folder() const { return folder_; }

  private:
    Environment withSway() const;
    bool answers();

    TemporaryFolder folder_;
    Environment environment_;
    std::filesystem::path binary_;
    std::filesystem::path guard_;
    std::unique_ptr<PrivateBus> bus_;
    std::vector<std::unique_ptr<Process>> programs_;
};

}  // namespace DesktopTest
