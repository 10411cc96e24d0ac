#include "OrvelUI/FormColors.h"

#include "OrvelUI/Contrast.h"

namespace OrvelUI {

using Palette::Ink;

Palette::Value FormColors::sidebar() const {
    return Contrast::blend(theme.ink(), 0.04, theme.canvas());
}

Ink FormColors::hairline() const {
    return {theme.ink(), isIncreased() ? 0.55 : 0.11};
}

Ink FormColors::text(TextRole role) const {
    switch (role) {
        case TextRole::paneTitle:
        case TextRole::label:
        case TextRole::heroTitle:
            return {theme.ink()};
        case TextRole::sectionTitle:
        case TextRole::note:
        case TextRole::heroBody:
            return {theme.ink2()};
        case TextRole::warning:
            return {theme.error()};
    }
    return {theme.ink()};
}

Ink FormColors::highlight(bool pressed) const {
    return {theme.ink(), pressed ? 0.07 : 0.04};
}

FormColors::Face FormColors::button(FormButton::Kind kind, bool enabled) const {
    // Inactive controls have no required contrast, but remain readable.
    const Ink quiet{theme.ink2()};
    switch (kind) {
        case FormButton::Kind::prominent:
            if (!enabled) return {{theme.ink(), 0.1}, {theme.ink(), 0}, quiet};
            return {{theme.accent()}, {theme.accent()}, {theme.surface()}};
        case FormButton::Kind::link:
            return {{theme.ink(), 0}, {theme.ink(), 0}, enabled ? Ink{theme.accent()} : quiet};
        case FormButton::Kind::symbol:
            return {{theme.ink(), 0}, {theme.ink(), 0}, quiet};
        case FormButton::Kind::plain:
        case FormButton::Kind::destructive:
            break;
    }
    Ink ink{kind == FormButton::Kind::destructive ? theme.error() : theme.ink()};
    return {{theme.ink(), 0.05}, {theme.ink(), isIncreased() ? 0.7 : 0.13}, enabled ? ink : quiet};
}

FormColors::Face FormColors::chip(bool chosen) const {
    if (chosen) return {{theme.accent()}, {theme.accent()}, {theme.surface()}};
    return {{theme.ink(), 0.05}, {theme.ink(), isIncreased() ? 0.7 : 0.08}, {theme.ink()}};
}

FormColors::Face FormColors::sidebarItem(bool chosen) const {
    if (chosen) return {{theme.accent()}, {theme.accent()}, {theme.surface()}};
    return {{theme.ink(), 0}, {theme.ink(), 0}, {theme.ink()}};
}

FormColors::Face FormColors::field() const {
    return {{theme.canvas()}, {theme.ink(), isIncreased() ? 0.7 : 0.2}, {theme.ink()}};
}

FormColors::Face FormColors::tile(bool chosen) const {
    if (chosen) return {{theme.surface()}, {theme.accent()}, {theme.ink()}};
    return {{theme.surface()}, hairline(), {theme.ink()}};
}

FormColors::Face FormColors::track(bool on) const {
    const Ink knob{Palette::surfaceLight};
    if (on) return {{theme.accent()}, {theme.accent()}, knob};
    const Ink ink{theme.ink(), isIncreased() ? 0.65 : 0.45};
    return {ink, ink, knob};
}

Ink FormColors::well() const {
    return {theme.ink(), 0.06};
}

LabelContent styled(const FormText& text, const FormColors& colors) {
    using Weight = LabelContent::Weight;
    LabelContent label{
        .text = text.text, .tail = {}, .ink = colors.text(text.role), .verbatim = text.verbatim};
    switch (text.role) {
        case TextRole::paneTitle:
            label.size = 20;
            label.weight = Weight::semibold;
            break;
        case TextRole::sectionTitle:
            label.size = 12;
            label.weight = Weight::semibold;
            break;
        case TextRole::label:
            label.size = 13;
            break;
        case TextRole::note:
        case TextRole::warning:
            label.size = 12;
            break;
        case TextRole::heroTitle:
            label.size = 24;
            label.weight = Weight::semibold;
            break;
        case TextRole::heroBody:
            label.size = 14;
            break;
    }
    return label;
}

}  // namespace OrvelUI
