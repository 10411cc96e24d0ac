#pragma once

#include <string>
#include <vector>

#include "OrvelUI/Form.h"
#include "OrvelUI/SettingsModel.h"
#include "OrvelUI/SettingsTheme.h"

/// From the models of the Settings window, what it shows.
namespace OrvelUI {

struct SettingsSidebar {
    struct Item {
        std::string title;
        std::string symbol;
        bool chosen = false;
        Handler<> choose;
        bool operator==(const Item&) const = default;
    };
    std::vector<Item> items;

    static SettingsSidebar of(SettingsModel& model);
    bool operator==(const SettingsSidebar&) const = default;
};

namespace SettingsPanes {

FormContent general(PreferencesModel& model);
/// `theme` decides what the little pictures of the lock look like.
FormContent lock(PreferencesModel& model, const SettingsTheme& theme);
FormContent blur(PreferencesModel& model);
FormContent privateApps(PreferencesModel& model);
FormContent shortcuts(PreferencesModel& model);
FormContent about(AboutPaneModel& model);

/// The pane that the model stands on. The model outlives the content.
FormContent current(SettingsModel& model, const SettingsTheme& theme);

}  // namespace SettingsPanes

}  // namespace OrvelUI
