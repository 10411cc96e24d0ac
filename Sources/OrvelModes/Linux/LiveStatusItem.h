#pragma once

#include <QPoint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "OrvelCore/WeakList.h"
#include "OrvelModes/Linux/DBusMenu.h"
#include "OrvelModes/Linux/StatusNotifierItem.h"
#include "OrvelModes/Qt/ContextMenu.h"
#include "OrvelModes/StatusItem/StatusItem.h"

namespace OrvelModes {

/// The desktop around a status item. Rectangles and points are in window-server coordinates.
struct StatusItemDesktop {
    /// The primary one first; empty where there is none.
    std::function<std::vector<OrvelCore::Rect>()> screens;
    /// What the bars leave of a screen; the whole screen where that is not known.
    std::function<OrvelCore::Rect(const OrvelCore::Rect& screen)> workArea;
    std::function<OrvelCore::Point()> pointer;
    /// A place in Qt's coordinates for top-level windows.
    std::function<QPoint(OrvelCore::Point)> logical;
    /// Whether a click comes with its place, or that of the item, on the screen.
    bool clicksTellPlace = true;
};

/// The status item in the desktop's panel. Without a session bus it is never shown.
class LiveStatusItem final : public StatusItem {
  public:
    /// `menu` must outlive the item.
    LiveStatusItem(StatusMenuController& menu, StatusItemDesktop desktop);

    void setVisible(bool visible) override { item_.setVisible(visible); }
    void setState(OrvelCore::MenuBarIconState state) override { item_.setState(state); }
    std::optional<bool> isShown() const override;
    void performClick() override;

  private:
    void activated(int x, int y);
    void contextMenu(int x, int y);
    void click(OrvelCore::Point at, bool byMouse);
    std::optional<OrvelCore::Rect> screenWith(OrvelCore::Point at) const;
    OrvelCore::Rect primaryScreen() const;

    StatusItemDesktop desktop_;
    ContextMenu contextMenu_;
    DBusMenu menu_;
    StatusNotifierItem item_;
    /// Where the item was when it was last clicked, in window-server coordinates; `nullopt` before.
    std::optional<OrvelCore::Point> place_;
    OrvelCore::Subscription hosts_;
};

}  // namespace OrvelModes
