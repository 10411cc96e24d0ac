#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "OrvelCore/Date.h"

/// The sentences of the status item's panel.
namespace OrvelUI::MenuPanelText {

/// The one line that says what is hidden now. `privateNames` are the apps that are guarded, none
/// while Private Apps is off.
std::string status(const std::vector<std::string>& privateNames, std::size_t lockedCount,
                   bool focusBlurOn, bool quickBlurOn);
/// The first two names, and how many more there are; empty for none.
std::string list(const std::vector<std::string>& names);
/// The end of `list` that counts the names it leaves out; empty when it names them all.
std::string listTail(const std::vector<std::string>& names);
std::string privateSummary(const std::vector<std::string>& names);
/// In whole minutes or hours; a `since` in the future counts as now.
std::string lockedAgo(OrvelCore::Date since, OrvelCore::Date now);
std::string updateLine(std::string_view version);
std::string restartLine();

}  // namespace OrvelUI::MenuPanelText
