#include "OrvelUI/AppChooserModel.h"

#include <algorithm>

#include "OrvelCore/Text.h"

namespace OrvelUI {

namespace Text = OrvelCore::Text;

AppChooserModel::AppChooserModel(std::vector<App> apps) {
    entries_.reserve(apps.size());
    for (auto& app : apps) {
        auto key = Text::lowerCase(app.name);
        entries_.push_back({std::move(app), std::move(key)});
    }
}

std::vector<AppChooserModel::App> AppChooserModel::matches() const {
    const auto words = Text::splitOnWhitespace(Text::lowerCase(query.get()));
    std::vector<App> found;
    for (const auto& [app, key] : entries_) {
        const bool fits = std::ranges::all_of(
            words, [&](const std::string& word) { return key.find(word) != std::string::npos; });
        if (fits) found.push_back(app);
    }
    return found;
}

void AppChooserModel::toggle(const std::string& bundleID) {
    auto changed = chosen.get();
    if (changed.erase(bundleID) == 0) changed.insert(bundleID);
    chosen.set(std::move(changed));
}

std::vector<std::string> AppChooserModel::result() const {
    std::vector<std::string> ids;
    for (const auto& entry : entries_)
        if (chosen.get().contains(entry.app.bundleID)) ids.push_back(entry.app.bundleID);
    return ids;
}

}  // namespace OrvelUI
