#pragma once

#include <functional>
#include <string>
#include <vector>

#include "OrvelUI/Alert.h"

/// Windows that ask the user a question. Main thread only; they answer in a later turn of the loop.
namespace OrvelModes::Dialogs {

/// `chosen` gets the index of the pressed button; closing the window counts as pressing the last
/// one.
void alert(const OrvelUI::Alert& alert, std::function<void(std::size_t button)> chosen);

/// Lets the user choose from the installed apps. `chosen` gets their bundle identifiers; empty if
/// the user cancels.
void chooseApplications(std::function<void(const std::vector<std::string>& bundleIDs)> chosen);

}  // namespace OrvelModes::Dialogs
