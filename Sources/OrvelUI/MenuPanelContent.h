#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "OrvelUI/CardContent.h"
#include "OrvelUI/Controls.h"
#include "OrvelUI/MenuPanelModel.h"

/// What the status item's panel shows, as plain values: a renderer draws rows and hands back the
/// actions that they carry, and knows none by name.
namespace OrvelUI {

namespace MenuPanelActions {

struct Simple {
    enum class What {
        lockMac,
        lockFront,
        quickBlur,
        focusBlur,
        privateApps,
        showChoices,
        installUpdate,
        openSettings,
        quit,
    };
    What what = What::lockMac;
    bool operator==(const Simple&) const = default;
};
struct PrivateApp {
    std::string bundleID;
    bool operator==(const PrivateApp&) const = default;
};
struct Unlock {
    std::int64_t pid = 0;
    bool operator==(const Unlock&) const = default;
};

}  // namespace MenuPanelActions

using MenuPanelAction =
    std::variant<MenuPanelActions::Simple, MenuPanelActions::PrivateApp, MenuPanelActions::Unlock>;

/// Carries an action out through the model's closures, ending the panel's use first where the
/// action leads away from it.
void perform(MenuPanelModel& model, const MenuPanelAction& action);

/// Something to click on, or to reach and press with the keyboard.
struct MenuPanelControl {
    enum class Role { button, toggle, choice };

    MenuPanelAction action;
    Role role = Role::button;
    /// Of a toggle or a choice.
    bool on = false;
    bool enabled = true;
    std::string name;
    std::string hint;
    /// The name holds words of another program, which nobody may reword.
    bool verbatim = false;

    bool operator==(const MenuPanelControl&) const = default;
};

/// A small button within a row: a text, or a symbol without one.
struct MenuPanelButton {
    MenuPanelControl control;
    LabelContent label;
    SymbolContent symbol;
    double turn = 0;  ///< Degrees clockwise by which the symbol is turned.

    bool operator==(const MenuPanelButton&) const = default;
};

struct MenuPanelRow {
    enum class Kind { header, prominent, item, choice, section, separator, footer };

    /// The same for the same row from one content to the next.
    std::string id;
    Kind kind = Kind::item;
    /// What a click anywhere in the row does; a toggle shows a switch at the row's end.
    std::optional<MenuPanelControl> control;
    /// At the row's start: a symbol on a round field of colour, or the icon of an app.
    std::optional<SymbolContent> symbol;
    Palette::Ink field{Palette::lockInk, 0};
    std::optional<AvatarContent> icon;
    LabelContent title;
    LabelContent subtitle;  ///< Empty text for none.
    std::optional<Keycaps> keycaps;
    /// At the row's end, before a switch.
    std::vector<MenuPanelButton> buttons;
    /// At the row's very end.
    std::optional<SymbolContent> mark;

    double height() const;  ///< Points.
    bool operator==(const MenuPanelRow&) const = default;
};

struct MenuPanelContent {
    static constexpr double width = 320;        ///< Points.
    static constexpr double cornerRadius = 14;  ///< Points.
    /// Points. What is longer scrolls between header and footer.
    static constexpr double maximumHeight = 640;

    MenuPanelRow header;
    std::vector<MenuPanelRow> rows;
    MenuPanelRow footer;
    std::string accessibleName;

    /// With room for at most that many points, what is between header and footer being cut.
    double height(double room) const;
    double bodyHeight() const;

    static MenuPanelContent of(const MenuPanelModel& model, bool increasedContrast);
    bool operator==(const MenuPanelContent&) const = default;
};

}  // namespace OrvelUI
