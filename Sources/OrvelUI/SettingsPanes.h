#pragma once

#include <string>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelUI/Form.h"
#include "OrvelUI/SettingsModel.h"
#include "OrvelUI/SettingsTheme.h"

/// Builds the content of the Settings window from its models.
namespace OrvelUI {

/// The size of the window's content in points.
inline constexpr OrvelCore::Size settingsSize{720, 520};

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
/// `theme` determines the look of the small pictures of the lock.
FormContent lock(PreferencesModel& model, const SettingsTheme& theme);
FormContent blur(PreferencesModel& model);
FormContent privateApps(PreferencesModel& model);
FormContent shortcuts(PreferencesModel& model);
FormContent about(AboutPaneModel& model);

/// The content of the model's current pane. The model must outlive it.
FormContent current(SettingsModel& model, const SettingsTheme& theme);

}  // namespace SettingsPanes

}  // namespace OrvelUI
