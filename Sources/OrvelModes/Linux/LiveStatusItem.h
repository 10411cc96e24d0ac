#pragma once

#include <memory>
#include <optional>

#include "OrvelModes/Linux/DBusMenu.h"
#include "OrvelModes/Linux/StatusNotifierItem.h"
#include "OrvelModes/Qt/ContextMenu.h"
#include "OrvelModes/StatusItem/StatusItem.h"

namespace OrvelModes {

/// The status item in the desktop's panel. Needs an X server; without a session bus it is never
/// shown.
class LiveStatusItem final : public StatusItem {
  public:
    /// `menu` must outlive the item.
    explicit LiveStatusItem(StatusMenuController& menu);

    void setVisible(bool visible) override { item_.setVisible(visible); }
    void setState(OrvelCore::MenuBarIconState state) override { item_.setState(state); }
    std::optional<bool> isShown() const override;
    void performClick() override;

  private:
    void activated(int x, int y);
    void contextMenu(int x, int y);
    void click(OrvelCore::Point at, bool byMouse);

    ContextMenu contextMenu_;
    DBusMenu menu_;
    StatusNotifierItem item_;
    /// Where the item was when it was last clicked, in window-server coordinates; `nullopt` before.
    std::optional<OrvelCore::Point> place_;
    std::shared_ptr<void> hosts_;
};

}  // namespace OrvelModes
