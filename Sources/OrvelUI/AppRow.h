#pragma once

#include <memory>
#include <string>

#include "OrvelSystem/Picture.h"

namespace OrvelUI {

/// An app as a row of a list.
struct AppRow {
    std::string id;    ///< Bundle identifier.
    std::string name;  ///< The identifier if the app is no longer known.
    std::shared_ptr<const OrvelSystem::Picture> icon;  ///< Null without an icon.
    bool operator==(const AppRow&) const = default;
};

}  // namespace OrvelUI
