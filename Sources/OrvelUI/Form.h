#pragma once

#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "OrvelCore/Looks.h"
#include "OrvelCore/TriggerSettings.h"
#include "OrvelUI/AppRow.h"
#include "OrvelUI/Controls.h"
#include "OrvelUI/MenuBarDrawing.h"

/// What the program's ordinary windows show, as plain values: sections of rows of controls. A
/// renderer draws any of them and hands input back through their handlers; it knows no window,
/// pane or step. Texts are the product's words unless a field says otherwise.
namespace OrvelUI {

/// What using a control does. Two are always equal: what a control does follows from its place and
/// from what it shows, so that only these need comparing.
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
    /// Words of the user or of another program, which nobody may reword.
    bool verbatim = false;

    bool operator==(const FormText&) const = default;
};

/// A sentence under a row or a section. A warning comes with a sign and is read out at once.
struct SettingsNote {
    std::string text;
    bool warning = false;
    bool operator==(const SettingsNote&) const = default;
};

struct FormButton {
    enum class Kind { plain, prominent, destructive, link, symbol };

    std::string title;  ///< Not shown for a `symbol`, but read out.
    std::string hint;
    Kind kind = Kind::plain;
    std::string symbol;
    bool enabled = true;
    /// What is read out where the title alone says too little; empty for the title.
    std::string accessibleName;
    /// The name holds words of another program, which nobody may reword.
    bool verbatim = false;
    Handler<> press;

    bool operator==(const FormButton&) const = default;
};

/// The cases of `FormControl`.

/// Text alone.
struct NoControl {
    bool operator==(const NoControl&) const = default;
};

/// Keys, signs and buttons at the end of a row.
struct RowActions {
    std::optional<PulsingKeycaps> keycaps;
    std::string text;  ///< After the keycaps, or in their place.
    std::string symbol;
    std::string symbolName;  ///< Read out for the symbol; empty for an ornament.
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

/// A blur's strength.
struct IntensitySlider {
    static constexpr auto softer = "Softer";
    static constexpr auto stronger = "Stronger";

    int value = 0;
    int lowest = 0;
    int highest = 0;
    /// The softest value at which text cannot be read; nothing where no softer one can be set.
    std::optional<int> tick;
    Handler<int> set;

    /// How a value is read out.
    static std::string spokenValue(int value, std::optional<int> tick);
    bool operator==(const IntensitySlider&) const = default;
};

/// A row of values of which one holds, or none.
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

/// Looks of the lock, each with a small picture of itself.
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

/// The corners of a display.
struct CornerPicker {
    struct Target {
        OrvelCore::TriggerSettings::Corner corner{};
        std::string title;
        std::string hint;
        bool chosen = false;
        /// The desktop itself acts there.
        bool marked = false;
        Handler<> pick;
        bool operator==(const Target&) const = default;
    };
    std::vector<Target> targets;

    bool operator==(const CornerPicker&) const = default;
};

/// A line of the user's own words.
struct TextField {
    std::string text;
    std::string prompt;
    std::string hint;
    /// Takes what is typed, and gives what is kept of it.
    std::function<std::string(const std::string&)> type;
    /// Typing is over.
    Handler<> finish;

    bool operator==(const TextField& other) const {
        return text == other.text && prompt == other.prompt && hint == other.hint;
    }
};

/// Apps to choose from, any number of them.
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

/// A small picture of a desktop that blurs and locks, or of one that is locked.
struct MiniDesktop {
    static constexpr auto label = "A desktop blurs and locks";

    bool animated = false;
    bool operator==(const MiniDesktop&) const = default;
};

using FormControl = std::variant<NoControl, RowActions, SettingsSwitch, IntensitySlider,
                                 ChoiceStrip, StyleThumbnails, CornerPicker, TextField,
                                 AppChoiceTiles, MiniDesktop, MenuBarDrawing>;

struct FormRow {
    /// The same for the same row from one content to the next, and no other row's.
    std::string id;
    /// An app's picture before the label; with a null picture, the sign of an app.
    std::optional<std::shared_ptr<const OrvelSystem::Picture>> icon;
    /// Empty text for a control that needs the whole row. Names the control.
    FormText label;
    std::optional<SettingsNote> note;
    FormControl control;

    bool operator==(const FormRow&) const = default;
};

struct FormSection {
    /// On a surface of its own, or on the window's canvas in the middle of it.
    enum class Style { card, plain };

    std::string id;
    std::string title;
    std::string intro;  ///< A sentence under the title.
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
