#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace OrvelSystem {

/// The identifier by which the program knows an app: the macOS identifier of a well-known app, else
/// the ID of the desktop entry.
std::string bundleIDForEntry(std::string_view entryID);
/// The desktop entries that may correspond to an identifier, the likeliest first.
std::vector<std::string> entriesForBundleID(std::string_view bundleID);
/// Whether the entry belongs to an app for which `bundleIDForEntry` returns another identifier.
bool isWellKnownEntry(std::string_view entryID);

}  // namespace OrvelSystem
