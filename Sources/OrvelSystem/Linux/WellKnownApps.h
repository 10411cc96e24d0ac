#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace OrvelSystem {

/// The identifier by which the product knows an app: its own for well-known ones, else the entry's.
std::string bundleIDForEntry(std::string_view entryID);
/// The entries that may stand for an identifier, the likeliest first.
std::vector<std::string> entriesForBundleID(std::string_view bundleID);
bool isWellKnownEntry(std::string_view entryID);

}  // namespace OrvelSystem
