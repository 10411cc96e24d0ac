#pragma once

#include <functional>
#include <string>
#include <vector>

#include "OrvelUI/Alert.h"

/// Windows that ask the user something and go. Main thread only; they answer in a later turn of the
/// loop.
namespace OrvelModes::Dialogs {

/// `chosen` hears the place of the pressed button; closing the window presses the last.
void alert(const OrvelUI::Alert& alert, std::function<void(std::size_t button)> chosen);

/// Lets the user choose from the installed apps. `chosen` hears their bundle identifiers, none when
/// the user thinks better of it.
void chooseApplications(std::function<void(const std::vector<std::string>& bundleIDs)> chosen);

}  // namespace OrvelModes::Dialogs
