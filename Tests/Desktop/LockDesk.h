#pragma once

#include "Desktop.h"
#include "Karvo.h"

namespace DesktopTest {

constexpr Area leftDisplay{0, 0, 1920, 1080};
constexpr Area rightDisplay{1920, 0, 1920, 1080};
/// The display of a desktop for which no other displays are set.
constexpr Area onlyDisplay{0, 0, 1280, 720};

/// A desktop with the program, with functions for what a user sees and does.
class LockDesk {
  public:
    static Desktop::Options oneDisplay();

    explicit LockDesk(const Desktop::Options& options = oneDisplay());

    Desktop desktop;
    Screen& screen() { return desktop.screen(); }
    /// A window of another program; it has the input focus at the start.
    SampleWindow& window() { return *window_; }

    /// Writes the settings file; call before `start`.
    void setSettings(const std::string& json);
    /// Starts the program. If there is a session bus, waits until it is ready, and throws if it
    /// never is.
    Karvo& start(const Karvo::Options& options = {});
    Karvo& karvo() { return *karvo_; }

    /// Stores a picture of the screen, which `isCovered` and `isOpen` compare with.
    void remember();
    /// These call `remember` and wait until all displays are covered.
    bool lockByShortcut();
    bool lockByURL();
    /// Like `lockByShortcut`, and waits until this display's card asks for the password.
    bool lockToCard(Area display = onlyDisplay);
    /// Like `lockByShortcut`, but keeps the stored picture.
    bool lockUnseen();

    /// Whether none of the fine detail of the background is visible on a display.
    bool isCovered(Area display);
    bool isCovered();
    /// Whether the whole screen equals the stored picture.
    bool isOpen();
    /// Whether the desktop background is visible; ignores the windows above it.
    bool showsDesktop();
    /// Whether the cover stays for 1.5 s.
    bool staysCovered();

    /// The words on the card of a display, which is at the middle of its upper edge.
    std::vector<std::string> cardWords(Area display);
    /// Waits until the card contains all of these lower-case words.
    bool cardSays(Area display, std::string_view words);
    /// Waits until the card asks for the password and has the keyboard.
    bool takesPassword(Area display = onlyDisplay);
    /// Whether the display has a card, or only a pill as the other displays have.
    bool hasCard(Area display);
    bool hasPill(Area display);

    /// Types `password` into the card and presses Return.
    void submit(std::string_view password);
    /// Submits a wrong password and waits until it is recorded as a failed attempt.
    bool submitWrong(std::chrono::milliseconds limit = patience);
    /// Submits the right password and waits until the screen equals the stored picture.
    bool unlock();
    /// Like `unlock`, for a locker or the guard's stand-in that may ask first or instead of the
    /// card.
    bool unlockWhateverAsks();
    /// The number of recorded failed attempts.
    int attempts();
    /// Whether keys reach `window`.
    bool typesIntoWindow();

  private:
    std::vector<Area> displays();

    SampleWindow* window_;
    std::unique_ptr<Karvo> karvo_;
    Image before_;
};

/// Whether `words` contains every word of `wanted`, which is separated by spaces.
bool contains(const std::vector<std::string>& words, std::string_view wanted);
/// Waits until these pictures of a place contain all the words. Reading takes long, so a picture is
/// read when it no longer changes, and otherwise only now and then.
bool showsWords(const std::function<Image()>& look, std::string_view words);

}  // namespace DesktopTest
