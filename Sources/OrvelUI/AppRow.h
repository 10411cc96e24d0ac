#pragma once

#include <memory>
#include <string>

#include "OrvelSystem/Picture.h"

namespace OrvelUI {

/// An app as a row of a list.
struct AppRow {
    std::string id;    ///< Bundle identifier.
    std::string name;  ///< The identifier itself for an app that nobody knows any more.
    std::shared_ptr<const OrvelSystem::Picture> icon;  ///< Null without one.
    bool operator==(const AppRow&) const = default;
};

}  // namespace OrvelUI
