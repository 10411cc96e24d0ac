#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace OrvelSystem {

/// An app as its desktop entry describes it.
struct DesktopEntry {
    /// The file's name without the ending.
    std::string id;
    /// In the user's language.
    std::string name;
    /// A name in the icon theme or a path; empty without one.
    std::string icon;
    std::string startupClass;
    /// The name of the program's file, without a folder.
    std::string executable;
    /// Whether menus show it.
    bool isShown = false;
};

/// What tells which app a process is. Empty where unknown.
struct AppTraits {
    std::string windowInstance;  ///< The two parts of `WM_CLASS`.
    std::string windowClass;
    std::string gtkApplicationID;
    std::string scope;       ///< The app that the session's manager says the process belongs to.
    std::string executable;  ///< The name of the file, without a folder.
};

/// All desktop entries of the user and the system, read once and again when they have changed.
std::vector<DesktopEntry> readDesktopEntries();

/// The entry of an app, by the startup class, the toolkit's identifier, the scope, or the
/// executable, in this order; null when none fits.
const DesktopEntry* findEntry(const std::vector<DesktopEntry>& entries, const AppTraits& traits);

/// The app in a path of the process's control group; empty when there is none.
std::string appOfScope(std::string_view controlGroup);

/// The identifier by which the product knows an app: its own for well-known ones, else the entry's.
std::string bundleIDForEntry(std::string_view entryID);
/// The entries that may stand for an identifier, the likeliest first.
std::vector<std::string> entriesForBundleID(std::string_view bundleID);

}  // namespace OrvelSystem
