#pragma once

#include "OrvelUI/CardContent.h"
#include "OrvelUI/Form.h"
#include "OrvelUI/Palette.h"
#include "OrvelUI/SettingsTheme.h"

namespace OrvelUI {

/// The colours of the program's ordinary windows, for each control in each of its states.
struct FormColors {
    /// A control's background, with a border and a text or a symbol.
    struct Face {
        Palette::Ink fill;
        Palette::Ink border;
        Palette::Ink text;
        bool operator==(const Face&) const = default;
    };

    SettingsTheme theme;

    Palette::Value canvas() const { return theme.canvas(); }
    Palette::Value surface() const { return theme.surface(); }
    Palette::Value sidebar() const;
    /// The colour around surfaces and between rows.
    Palette::Ink hairline() const;
    Palette::Ink text(TextRole role) const;
    /// The colour of a text field's prompt.
    Palette::Ink prompt() const { return {theme.ink2()}; }
    /// The highlight of a control under the pointer or, with `pressed`, while it is pressed.
    Palette::Ink highlight(bool pressed) const;
    Palette::Ink focusRing() const { return {theme.accent()}; }
    Palette::Ink accent() const { return {theme.accent()}; }
    Palette::Ink error() const { return {theme.error()}; }

    Face button(FormButton::Kind kind, bool enabled) const;
    Face chip(bool chosen) const;
    Face sidebarItem(bool chosen) const;
    Face field() const;
    /// For a tile or a picture that can be chosen; the border shows whether it is.
    Face tile(bool chosen) const;
    /// The track of a switch or slider, for its on or off part. `text` is the colour of the knob.
    Face track(bool on) const;
    /// The background of an initial, a symbol or a key.
    Palette::Ink well() const;

    bool operator==(const FormColors&) const = default;

  private:
    bool isIncreased() const { return theme.contrast == SettingsTheme::Contrast::increased; }
};

/// Returns the text with its colour, its size in points and its weight.
LabelContent styled(const FormText& text, const FormColors& colors);

}  // namespace OrvelUI
