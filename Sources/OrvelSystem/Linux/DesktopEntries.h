#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace OrvelSystem {

/// An app as its desktop entry describes it.
struct DesktopEntry {
    /// The file name without its extension.
    std::string id;
    /// `nullopt` if the file is not a desktop entry, or its name cannot be stored as an identifier.
    static std::optional<std::string> idOf(std::string_view file);
    /// In the user's language.
    std::string name;
    /// A name in the icon theme or a path; empty if the entry has no icon.
    std::string icon;
    /// `StartupWMClass`: the window class by which the app's windows are recognised; empty if
    /// missing.
    std::string startupClass;
    /// The file name of the program, without a folder. Empty if an interpreter or another launcher
    /// runs the program.
    std::string executable;
    /// Whether menus show the app.
    bool isShown = false;
};

/// The desktop entries of the user and the system whose programs are installed. They are read on
/// first use, and again after a change. Main thread only.
class DesktopEntries {
  public:
    DesktopEntries();
    ~DesktopEntries();
    DesktopEntries(const DesktopEntries&) = delete;
    DesktopEntries& operator=(const DesktopEntries&) = delete;

    /// An entry has changed. Not called before the first reading.
    std::function<void()> onChange = [] {};

    /// Sorted by identifier.
    const std::vector<DesktopEntry>& all();
    /// Null if there is no such entry.
    const DesktopEntry* find(std::string_view id);

  private:
    class Monitor;
    std::unique_ptr<Monitor> monitor_;
    std::optional<std::vector<DesktopEntry>> entries_;
};

}  // namespace OrvelSystem
