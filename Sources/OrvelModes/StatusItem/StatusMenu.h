#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "OrvelCore/Shortcut.h"
#include "OrvelUI/MenuPanelModel.h"

namespace OrvelModes {

/// The cases of `StatusMenuAction`.
namespace StatusMenuActions {

struct PrivateApp {
    std::string bundleID;
    bool operator==(const PrivateApp&) const = default;
};
struct Unlock {
    std::int64_t pid = 0;
    bool operator==(const Unlock&) const = default;
};
struct LockMac {
    bool operator==(const LockMac&) const = default;
};
struct LockFront {
    bool operator==(const LockFront&) const = default;
};
struct QuickBlur {
    bool operator==(const QuickBlur&) const = default;
};
struct FocusBlur {
    bool operator==(const FocusBlur&) const = default;
};
struct PrivateApps {
    bool operator==(const PrivateApps&) const = default;
};
struct AddPrivateApps {
    bool operator==(const AddPrivateApps&) const = default;
};
struct InstallUpdate {
    bool operator==(const InstallUpdate&) const = default;
};
struct OpenSettings {
    bool operator==(const OpenSettings&) const = default;
};
struct Quit {
    bool operator==(const Quit&) const = default;
};

}  // namespace StatusMenuActions

using StatusMenuAction = std::variant<
    StatusMenuActions::PrivateApp, StatusMenuActions::Unlock, StatusMenuActions::LockMac,
    StatusMenuActions::LockFront, StatusMenuActions::QuickBlur, StatusMenuActions::FocusBlur,
    StatusMenuActions::PrivateApps, StatusMenuActions::AddPrivateApps,
    StatusMenuActions::InstallUpdate, StatusMenuActions::OpenSettings, StatusMenuActions::Quit>;

/// One row of the status item's plain menu.
struct StatusMenuEntry {
    struct Action {
        StatusMenuAction action;
        bool operator==(const Action&) const = default;
    };
    struct Status {
        bool operator==(const Status&) const = default;
    };
    struct Header {
        bool operator==(const Header&) const = default;
    };
    struct Separator {
        bool operator==(const Separator&) const = default;
    };
    struct Submenu {
        bool operator==(const Submenu&) const = default;
    };
    using Kind = std::variant<Action, Status, Header, Separator, Submenu>;

    std::string title;
    Kind kind;
    /// Key equivalent: one lower-case character, or empty for none.
    std::string key;
    OrvelCore::Shortcut::Modifiers modifiers;
    bool checked = false;
    bool enabled = true;
    std::vector<StatusMenuEntry> children;

    static const StatusMenuEntry separator;
    /// Null for a row that is not an action.
    const StatusMenuAction* action() const;
    bool operator==(const StatusMenuEntry&) const = default;
};

namespace StatusMenuContent {

std::vector<StatusMenuEntry> entries(const OrvelUI::MenuPanelModel& model);

}  // namespace StatusMenuContent

/// Holds the menu's rows and performs the chosen action. Main thread only.
class StatusMenuController {
  public:
    /// `model` must outlive the controller.
    explicit StatusMenuController(OrvelUI::MenuPanelModel& model) : model_(model) {}
    StatusMenuController(const StatusMenuController&) = delete;
    StatusMenuController& operator=(const StatusMenuController&) = delete;

    OrvelUI::MenuPanelModel& model() const { return model_; }
    /// The rows of the last `rebuild`; empty before the first.
    const std::vector<StatusMenuEntry>& menu() const { return menu_; }

    /// Called before a menu is shown, to refresh the model.
    std::function<void()> onWillOpen = [] {};
    std::function<void()> onAddPrivateApps = [] {};

    void rebuild();
    /// Call before the menu is shown: refreshes the model, then rebuilds the rows.
    void menuNeedsUpdate();
    void perform(const StatusMenuAction& action);

  private:
    OrvelUI::MenuPanelModel& model_;
    std::vector<StatusMenuEntry> menu_;
};

}  // namespace OrvelModes
