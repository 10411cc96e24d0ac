#pragma once

#include "Desktop.h"

namespace DesktopTest {

/// One element of a window as a screen reader is told of it.
struct Accessible {
    std::string role;
    std::string name;
    std::string description;
    std::set<std::string> states;
    std::string value;
    Area area;  ///< On the screen.

    bool is(std::string_view state) const { return states.contains(std::string(state)); }
};

/// The accessibility bus of a desktop, and what the program tells over it. To be made before the
/// program starts.
class ScreenReader {
  public:
    explicit ScreenReader(Desktop& desktop);

    /// All elements that are shown, in the order of reading.
    std::vector<Accessible> read();
    /// The first of that name and, if it is not empty, that role.
    std::optional<Accessible> find(std::string_view name, std::string_view role = "");
    /// Waits for it; throws when it does not come.
    Accessible wait(std::string_view name, std::string_view role = "");
    /// Whether one of that name comes.
    bool shows(std::string_view name) {
        return becomes([&] { return find(name).has_value(); });
    }
    bool becomes(const std::function<bool()>& holds) { return eventually(holds); }
    /// Clicks its middle, after scrolling to it where that is needed.
    void click(std::string_view name, std::string_view role = "");
    /// The name of the element that has the keyboard.
    std::string focused();

  private:
    /// Of the first window.
    Area visiblePart();

    Desktop& desktop_;
};

}  // namespace DesktopTest
