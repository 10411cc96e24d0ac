#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "OrvelCore/Date.h"

/// The sentences of the status item's panel.
namespace OrvelUI::MenuPanelText {

/// One line that says what is hidden now. `privateNames` are the protected apps; empty while
/// Private Apps is off.
std::string status(const std::vector<std::string>& privateNames, std::size_t lockedCount,
                   bool focusBlurOn, bool quickBlurOn);
/// The first two names and the number of the others; empty without names.
std::string list(const std::vector<std::string>& names);
/// The end of `list` that counts the omitted names; empty if none are omitted.
std::string listTail(const std::vector<std::string>& names);
std::string privateSummary(const std::vector<std::string>& names);
/// In whole minutes or hours; a `since` in the future counts as now.
std::string lockedAgo(OrvelCore::Date since, OrvelCore::Date now);
std::string updateLine(std::string_view version);
std::string restartLine();

}  // namespace OrvelUI::MenuPanelText
