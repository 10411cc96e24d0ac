#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "OrvelUI/CardContent.h"
#include "OrvelUI/Controls.h"
#include "OrvelUI/MenuPanelModel.h"

/// What the status item's panel shows, as plain values: a renderer draws rows and returns their
/// actions without interpreting them.
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

/// Performs an action through the model's closures. Calls `onDone` first if the action ends the use
/// of the panel.
void perform(MenuPanelModel& model, const MenuPanelAction& action);

/// Something that can be clicked, or reached and pressed with the keyboard.
struct MenuPanelControl {
    enum class Role { button, toggle, choice };

    MenuPanelAction action;
    Role role = Role::button;
    /// The state of a toggle or a choice.
    bool on = false;
    bool enabled = true;
    std::string name;
    std::string hint;
    /// The name contains text of another program and must not be reworded.
    bool verbatim = false;

    bool operator==(const MenuPanelControl&) const = default;
};

/// A small button within a row: a text, or a symbol if the text is empty.
struct MenuPanelButton {
    // In points.
    static constexpr double height = 26;
    static constexpr double padding = 10;  ///< At the sides of a text.
    static constexpr double cornerRadius = 8;

    MenuPanelControl control;
    LabelContent label;
    SymbolContent symbol;
    double turn = 0;  ///< The clockwise rotation of the symbol, in degrees.

    bool operator==(const MenuPanelButton&) const = default;
};

struct MenuPanelRow {
    enum class Kind { header, prominent, item, choice, section, separator, footer };

    // In points.
    static constexpr double inset = 6;     ///< Between the highlight and the sides of the panel.
    static constexpr double padding = 10;  ///< Between the highlight and the content.
    static constexpr double gap = 10;
    static constexpr double fieldSide = 28;  ///< Of the background of a symbol.
    static constexpr double cornerRadius = 9;
    static constexpr double titleLine = 17;
    static constexpr double subtitleLine = 14;

    /// Identifies the row across contents.
    std::string id;
    Kind kind = Kind::item;
    /// What a click anywhere in the row does; `nullopt` for nothing. A toggle shows a switch at the
    /// end of the row.
    std::optional<MenuPanelControl> control;
    /// At the start of the row: a symbol on a round coloured background, or the icon of an app.
    std::optional<SymbolContent> symbol;
    Palette::Ink field{Palette::lockInk, 0};
    std::optional<AvatarContent> icon;
    LabelContent title;
    LabelContent subtitle;  ///< The text is empty for none.
    std::optional<Keycaps> keycaps;
    /// Near the end of the row, before a switch.
    std::vector<MenuPanelButton> buttons;
    /// At the very end of the row.
    std::optional<SymbolContent> mark;

    double height() const;  ///< Points.
    bool operator==(const MenuPanelRow&) const = default;
};

struct MenuPanelContent {
    static constexpr double width = 320;        ///< Points.
    static constexpr double cornerRadius = 14;  ///< Points.
    static constexpr Palette::Shadow shadow{.opacity = 0.45, .radius = 22, .drop = 6};
    /// In points. Longer content scrolls between header and footer.
    static constexpr double maximumHeight = 640;

    MenuPanelRow header;
    std::vector<MenuPanelRow> rows;
    MenuPanelRow footer;
    std::string accessibleName;

    /// The height in points if at most `room` points are available; only the part between header
    /// and footer is cut.
    double height(double room) const;
    /// The full height of `rows`, in points.
    double bodyHeight() const;

    static MenuPanelContent of(const MenuPanelModel& model, bool increasedContrast);
    bool operator==(const MenuPanelContent&) const = default;
};

}  // namespace OrvelUI
