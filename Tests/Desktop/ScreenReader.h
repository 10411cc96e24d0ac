#pragma once

#include "Desktop.h"

namespace DesktopTest {

/// An element of a window as a screen reader gets it.
struct Accessible {
    std::string role;
    std::string name;
    std::set<std::string> states;
    Area area;  ///< In pixels of the screen.

    bool is(std::string_view state) const { return states.contains(std::string(state)); }
};

/// Reads the accessibility bus of a desktop. Create it before the program starts.
class ScreenReader {
  public:
    explicit ScreenReader(Desktop& desktop);

    /// All visible elements, in reading order.
    std::vector<Accessible> read();
    /// The first element with this name and, unless empty, this role; empty if there is none.
    std::optional<Accessible> find(std::string_view name, std::string_view role = "");
    /// Waits for the element and throws if it does not appear.
    Accessible wait(std::string_view name, std::string_view role = "");
    /// Waits until an element with this name appears.
    bool shows(std::string_view name) {
        return becomes([&] { return find(name).has_value(); });
    }
    bool becomes(const std::function<bool()>& holds) { return eventually(holds); }
    /// Scrolls to the element if necessary, and clicks its middle.
    void click(std::string_view name, std::string_view role = "");
    /// The name of the focused element.
    std::string focused();

  private:
    /// The visible part of the first window.
    Area visiblePart();

    Desktop& desktop_;
};

}  // namespace DesktopTest
