#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "OrvelCore/Date.h"
#include "OrvelCore/PrivateAppList.h"
#include "OrvelCore/Shortcut.h"
#include "OrvelCovers/RunningApp.h"
#include "OrvelSystem/Picture.h"
#include "OrvelUI/MenuPanelModel.h"

/// Fills the model of the status item's panel and menu from the live state.
namespace OrvelModes::MenuPanelFeed {

struct Locked {
    OrvelCovers::RunningApp app;
    OrvelCore::Date since;
};

struct Sources {
    /// The app in front when the panel or menu was requested; `nullopt` for none.
    std::optional<OrvelCovers::RunningApp> front;
    /// Every locked app, in any order.
    std::vector<Locked> locked;
    OrvelCore::PrivateAppList privateList;
    /// Every running app that the user may know.
    std::vector<OrvelCovers::RunningApp> running;
    OrvelCore::ShortcutSet shortcuts;
    /// The name of an app, whether or not it runs; `nullopt` if it is not found.
    std::function<std::optional<std::string>(const std::string& bundleID)> nameForBundleID;
    /// The app's icon; null without one.
    std::function<std::shared_ptr<const OrvelSystem::Picture>(const std::string& bundleID)>
        iconForBundleID = [](const auto&) { return nullptr; };
    OrvelCore::Date now;
};

/// Returns the process ID of the app to which "Lock" applies; `nullopt` when there is none.
std::optional<std::int64_t> fill(OrvelUI::MenuPanelModel& model, const Sources& sources);

}  // namespace OrvelModes::MenuPanelFeed
