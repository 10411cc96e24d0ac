#pragma once

#include "Desktop.h"
#include "Karvo.h"

namespace DesktopTest {

constexpr Area leftDisplay{0, 0, 1920, 1080};
constexpr Area rightDisplay{1920, 0, 1920, 1080};
/// Without displays of its own a desktop has the server's one.
constexpr Area onlyDisplay{0, 0, 1280, 720};

/// A desktop with the program on it, and what a person in front of it sees and does.
class LockDesk {
  public:
    static Desktop::Options oneDisplay();

    explicit LockDesk(const Desktop::Options& options = oneDisplay());

    Desktop desktop;
    Screen& screen() { return desktop.screen(); }
    /// Another program, which has the input focus.
    SampleWindow& window() { return *window_; }

    /// The settings file as JSON, before the program starts.
    void setSettings(const std::string& json);
    /// Starts the program and, where there is a bus to ask on, waits until it is ready.
    Karvo& start(const Karvo::Options& options = {});
    Karvo& karvo() { return *karvo_; }

    /// Remembers what the screen shows, which a lock has to hide and to give back.
    void remember();
    /// Both remember first, and wait until the covers are there.
    bool lockByShortcut();
    bool lockByURL();
    /// By the shortcut, without looking again.
    bool lockUnseen();

    /// Whether a display is covered: of the fine detail all over it nothing is left.
    bool isCovered(Area display);
    bool isCovered();
    /// Whether the whole screen is as it was, pixel for pixel.
    bool isOpen();
    /// Whether the desktop can be seen below its windows. Whether they are as they were is open.
    bool showsDesktop();
    /// Whether the cover holds for as long as a mistake would take to show.
    bool staysCovered();

    /// The words on the card of a display, which hangs from the middle of its upper edge.
    std::vector<std::string> cardWords(Area display);
    /// Waits until all of the words, in lower case, are on the card.
    bool cardSays(Area display, std::string_view words);
    /// Whether there is a card, or only the pill that other displays have.
    bool hasCard(Area display);
    bool hasPill(Area display);
    /// Where the island of a display begins, from the left; -1 where there is none.
    int islandLeft(Area display);

    /// Types into the card and presses Return.
    void submit(std::string_view password);
    /// A wrong password, up to its entry among the failed attempts.
    bool submitWrong();
    /// The right password, up to the screen as it was.
    bool unlock();
    /// The same with a locker or a stand-in that may have to be unlocked before the card or in its
    /// place.
    bool unlockWhateverAsks();
    /// Failed attempts that are on record.
    int attempts();
    /// Whether keys reach the program that had the focus.
    bool typesIntoWindow();

  private:
    std::vector<Area> displays();

    SampleWindow* window_;
    std::unique_ptr<Karvo> karvo_;
    Image before_;
};

/// Whether every word of `wanted`, separated by blanks, is among `words`.
bool contains(const std::vector<std::string>& words, std::string_view wanted);

}  // namespace DesktopTest
