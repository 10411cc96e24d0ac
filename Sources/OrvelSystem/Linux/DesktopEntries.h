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
    /// The file's name without the ending.
    std::string id;
    /// Nothing for a file that is no entry, or by whose name the app could not be told again.
    static std::optional<std::string> idOf(std::string_view file);
    /// In the user's language.
    std::string name;
    /// A name in the icon theme or a path; empty without one.
    std::string icon;
    std::string startupClass;
    /// The name of the program's file, without a folder. Empty where an interpreter or the like
    /// runs the program.
    std::string executable;
    /// Whether menus show it.
    bool isShown = false;
};

/// The desktop entries of the user and the system whose programs are there. Read when they are
/// first asked for, and again after they have changed. Main thread only.
class DesktopEntries {
  public:
    DesktopEntries();
    ~DesktopEntries();
    DesktopEntries(const DesktopEntries&) = delete;
    DesktopEntries& operator=(const DesktopEntries&) = delete;

    /// Some entry has changed. Only told after they were read.
    std::function<void()> onChange = [] {};

    /// In the order of their identifiers.
    const std::vector<DesktopEntry>& all();
    /// Null without one.
    const DesktopEntry* find(std::string_view id);

  private:
    class Monitor;
    std::unique_ptr<Monitor> monitor_;
    std::optional<std::vector<DesktopEntry>> entries_;
};

}  // namespace OrvelSystem
