#pragma once

#include "OrvelUI/CardContent.h"
#include "OrvelUI/Form.h"
#include "OrvelUI/Palette.h"
#include "OrvelUI/SettingsTheme.h"

namespace OrvelUI {

/// The colours of the program's ordinary windows: each control's, in each of its states.
struct FormColors {
    /// Something with a text or a sign on it.
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
    /// Around surfaces and between rows.
    Palette::Ink hairline() const;
    Palette::Ink text(TextRole role) const;
    /// Of a text field's prompt.
    Palette::Ink prompt() const { return {theme.ink2()}; }
    /// What lights up under the pointer or, `pressed`, under the finger.
    Palette::Ink highlight(bool pressed) const;
    Palette::Ink focusRing() const { return {theme.accent()}; }
    Palette::Ink accent() const { return {theme.accent()}; }
    Palette::Ink error() const { return {theme.error()}; }

    Face button(FormButton::Kind kind, bool enabled) const;
    Face chip(bool chosen) const;
    Face sidebarItem(bool chosen) const;
    Face field() const;
    /// Of a tile or a picture to choose: its border says whether it is chosen.
    Face tile(bool chosen) const;
    /// The track of a switch or a slider, where it is on and where it is not. The text is the knob.
    Face track(bool on) const;
    /// Behind an initial, a sign or a key.
    Palette::Ink well() const;

    bool operator==(const FormColors&) const = default;

  private:
    bool isIncreased() const { return theme.contrast == SettingsTheme::Contrast::increased; }
};

/// Size in points and weight of a text.
LabelContent styled(const FormText& text, const FormColors& colors);

}  // namespace OrvelUI
