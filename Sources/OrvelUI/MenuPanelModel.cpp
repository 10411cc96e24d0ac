#include "OrvelUI/MenuPanelModel.h"

#include "OrvelUI/MenuPanelText.h"

namespace OrvelUI {

std::string MenuPanelModel::status() const {
    return MenuPanelText::status(privateAppsOn.get() ? chosenNames() : std::vector<std::string>{},
                                 lockedApps.get().size(), focusBlurOn.get(), quickBlurOn.get());
}

std::string MenuPanelModel::privateSummary() const {
    return MenuPanelText::privateSummary(chosenNames());
}

std::vector<std::string> MenuPanelModel::chosenNames() const {
    std::vector<std::string> names;
    for (const auto& choice : privateChoices.get()) {
        if (choice.chosen) names.push_back(choice.name);
    }
    return names;
}

}  // namespace OrvelUI
