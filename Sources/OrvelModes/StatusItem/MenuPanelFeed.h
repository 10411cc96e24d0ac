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
    /// The app in front when the panel or menu was asked for; nothing for none.
    std::optional<OrvelCovers::RunningApp> front;
    /// Every locked app, in any order.
    std::vector<Locked> locked;
    OrvelCore::PrivateAppList privateList;
    /// Every app that the user may know to be running.
    std::vector<OrvelCovers::RunningApp> running;
    OrvelCore::ShortcutSet shortcuts;
    /// The name of an app that need not run; nothing when it can't be found.
    std::function<std::optional<std::string>(const std::string& bundleID)> nameForBundleID;
    /// Its icon; null when there is none.
    std::function<std::shared_ptr<const OrvelSystem::Picture>(const std::string& bundleID)>
        iconForBundleID = [](const auto&) { return nullptr; };
    OrvelCore::Date now;
};

/// The process id of the app that "Lock" will act on; nothing when there is none.
std::optional<std::int64_t> fill(OrvelUI::MenuPanelModel& model, const Sources& sources);

}  // namespace OrvelModes::MenuPanelFeed
