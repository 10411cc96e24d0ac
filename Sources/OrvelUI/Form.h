#pragma once

#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/Looks.h"
#include "OrvelCore/TriggerSettings.h"
#include "OrvelUI/AppRow.h"
#include "OrvelUI/Controls.h"
#include "OrvelUI/MenuBarDrawing.h"

/// What the program's ordinary windows show, as plain values: sections with rows of controls. A
/// renderer draws any of them and reports input through their handlers; it depends on no window,
/// pane or step. Texts are the product's wording unless a field says otherwise.
namespace OrvelUI {

/// What using a control does. Two handlers always compare equal: what a control does follows from
/// its position and its content, so only these need to be compared.
template <class... Args>
class Handler {
  public:
    Handler() = default;
    template <class F>
    requires(!std::is_same_v<std::decay_t<F>, Handler>) Handler(F f)
        : call_(std::move(f)) {}  // NOLINT: a lambda stands where a handler is wanted

    void operator()(Args... args) const {
        if (call_) call_(args...);
    }
    bool operator==(const Handler&) const { return true; }

  private:
    std::function<void(Args...)> call_;
};

enum class TextRole { paneTitle, sectionTitle, label, note, warning, heroTitle, heroBody };

struct FormText {
    std::string text;
    TextRole role = TextRole::label;
    /// The text is from the user or another program and must not be reworded.
    bool verbatim = false;

    bool operator==(const FormText&) const = default;
};

/// A sentence under a row or a section. A warning gets a symbol and is announced at once.
struct SettingsNote {
    std::string text;
    bool warning = false;
    bool operator==(const SettingsNote&) const = default;
};

struct FormButton {
    enum class Kind { plain, prominent, destructive, link, symbol };

    std::string title;  ///< For a `symbol`, only read out.
    std::string hint;
    Kind kind = Kind::plain;
    std::string symbol;
    bool enabled = true;
    /// What is read out if the title alone is not enough; empty to use the title.
    std::string accessibleName;
    /// The name contains text of another program and must not be reworded.
    bool verbatim = false;
    Handler<> press;

    bool operator==(const FormButton&) const = default;
};

/// The cases of `FormControl`.

/// Only text.
struct NoControl {
    bool operator==(const NoControl&) const = default;
};

/// Keys, symbols and buttons at the end of a row.
struct RowActions {
    /// `nullopt` for none.
    std::optional<PulsingKeycaps> keycaps;
    std::string text;  ///< After the keycaps, or instead of them.
    std::string symbol;
    std::string symbolName;  ///< Read out for the symbol; empty for a decorative one.
    bool spins = false;
    std::vector<FormButton> buttons;

    bool operator==(const RowActions&) const = default;
};

struct SettingsSwitch {
    bool on = false;
    std::string hint;
    Handler<bool> set;

    bool operator==(const SettingsSwitch&) const = default;
};

/// The strength of a blur.
struct IntensitySlider {
    static constexpr auto softer = "Softer";
    static constexpr auto stronger = "Stronger";

    int value = 0;
    int lowest = 0;
    int highest = 0;
    /// The lowest value at which text cannot be read; `nullopt` if no lower value can be set.
    std::optional<int> tick;
    Handler<int> set;

    /// How a value is read out.
    static std::string spokenValue(int value, std::optional<int> tick);
    bool operator==(const IntensitySlider&) const = default;
};

/// A row of values of which at most one is chosen.
struct ChoiceStrip {
    struct Chip {
        std::string title;
        bool chosen = false;
        Handler<> choose;
        bool operator==(const Chip&) const = default;
    };
    std::vector<Chip> chips;

    bool operator==(const ChoiceStrip&) const = default;
};

/// Looks of the lock, each with a small picture.
struct StyleThumbnails {
    struct StyleThumbnail {
        std::string title;
        std::string detail;
        OrvelCore::OverlayLook look;
        bool showsClock = false;
        bool chosen = false;
        Handler<> choose;
        bool operator==(const StyleThumbnail&) const = default;
    };
    std::vector<StyleThumbnail> styles;

    bool operator==(const StyleThumbnails&) const = default;
};

/// The corners of a display, in a picture of one.
struct CornerPicker {
    static constexpr OrvelCore::Size display{208, 122};  ///< Points.
    static constexpr double targetSide = 34;             ///< Points.
    /// The diameter of the circle in the middle of a target, in points.
    static constexpr double spotSide = 26;

    struct Target {
        OrvelCore::TriggerSettings::Corner corner{};
        std::string title;
        std::string hint;
        bool chosen = false;
        /// The desktop itself has an action for this corner.
        bool marked = false;
        Handler<> pick;
        bool operator==(const Target&) const = default;
    };
    std::vector<Target> targets;

    /// The place of a corner's target in the picture, in points from its top left.
    static OrvelCore::Rect place(OrvelCore::TriggerSettings::Corner corner);
    bool operator==(const CornerPicker&) const = default;
};

/// A line of text that the user types.
struct TextField {
    std::string text;
    std::string prompt;
    std::string hint;
    /// Takes the typed text and returns the part of it that is kept.
    std::function<std::string(const std::string&)> type;
    /// Called when typing has ended.
    Handler<> finish;

    bool operator==(const TextField& other) const {
        return text == other.text && prompt == other.prompt && hint == other.hint;
    }
};

/// Apps of which any number can be chosen.
struct AppChoiceTiles {
    struct AppChoiceTile {
        AppRow app;
        std::string hint;
        bool chosen = false;
        Handler<> toggle;
        bool operator==(const AppChoiceTile&) const = default;
    };
    std::vector<AppChoiceTile> tiles;

    bool operator==(const AppChoiceTiles&) const = default;
};

/// A small picture of a desktop that blurs and locks, or of a locked desktop.
struct MiniDesktop {
    static constexpr auto label = "A desktop blurs and locks";

    bool animated = false;
    bool operator==(const MiniDesktop&) const = default;
};

using FormControl = std::variant<NoControl, RowActions, SettingsSwitch, IntensitySlider,
                                 ChoiceStrip, StyleThumbnails, CornerPicker, TextField,
                                 AppChoiceTiles, MiniDesktop, MenuBarDrawing>;

struct FormRow {
    /// Identifies the row across contents; unique within a content.
    std::string id;
    /// An app's icon before the label; null shows a generic app symbol, `nullopt` no icon.
    std::optional<std::shared_ptr<const OrvelSystem::Picture>> icon;
    /// The label is also the control's accessible name. Its text is empty for a control that needs
    /// the whole row.
    FormText label;
    /// `nullopt` for none.
    std::optional<SettingsNote> note;
    FormControl control;

    bool operator==(const FormRow&) const = default;
};

struct FormSection {
    /// `card`: on a surface of its own. `plain`: centred on the window's background.
    enum class Style { card, plain };

    std::string id;
    std::string title;
    std::string intro;  ///< A sentence under the title; empty for none.
    Style style = Style::card;
    std::vector<FormRow> rows;
    std::vector<SettingsNote> notes;

    bool operator==(const FormSection&) const = default;
};

struct FormContent {
    std::string title;  ///< Empty for none.
    std::vector<FormSection> sections;

    bool operator==(const FormContent&) const = default;
};

}  // namespace OrvelUI
