#pragma once

#include <functional>
#include <optional>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/MenuRules.h"

namespace OrvelModes {

/// The program's icon in the menu bar, with its menu. Main thread only.
class StatusItem {
  public:
    /// Where and how the item was clicked, in window-server coordinates.
    struct Click {
        OrvelCore::Rect anchor;  ///< The item's rectangle, as far as it is known.
        OrvelCore::Rect screen;  ///< The display with the item.
        bool byMouse = true;
        bool operator==(const Click&) const = default;
    };

    StatusItem() = default;
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;
    virtual ~StatusItem() = default;

    /// Sets whether the user wants the item. A new item is hidden.
    virtual void setVisible(bool visible) = 0;
    virtual void setState(OrvelCore::MenuBarIconState state) = 0;
    /// Whether the item can be seen; `nullopt` while that is not known, and false where the system
    /// draws no status items.
    virtual std::optional<bool> isShown() const = 0;
    /// Calls `onClick` as if the user had clicked the item.
    virtual void performClick() = 0;

    std::function<void(const Click&)> onClick = [](const Click&) {};
    /// Called when the result of `isShown` has changed.
    std::function<void()> onShownChanged = [] {};
};

}  // namespace OrvelModes
