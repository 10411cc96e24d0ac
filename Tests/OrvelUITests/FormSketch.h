#pragma once

#include "OrvelCore/Match.h"
#include "OrvelUI/Form.h"

/// Renders a form as one line of text for each visible element, so that tests resemble the window:
/// "# title", "[x] switch", "label: (chosen) other", "<button>", "^ note", "! warning".
inline std::vector<std::string> sketch(const FormContent& form) {
    using namespace OrvelUI;
    std::vector<std::string> lines;
    const auto note = [&](const SettingsNote& shown) {
        lines.push_back((shown.warning ? "! " : "^ ") + shown.text);
    };
    const auto chip = [](const std::string& title, bool chosen) {
        return chosen ? " (" + title + ")" : " " + title;
    };
    for (const auto& section : form.sections) {
        if (!section.title.empty()) lines.push_back("# " + section.title);
        if (!section.intro.empty()) lines.push_back("^ " + section.intro);
        for (const auto& row : section.rows) {
            std::string line = row.label.text;
            match(
                row.control, [](const NoControl&) {},
                [&](const RowActions& actions) {
                    if (actions.keycaps) {
                        line += actions.keycaps->pulses ? " *" : " ";
                        for (const auto& cap : actions.keycaps->keycaps.caps) line += cap;
                    }
                    if (!actions.text.empty()) line += " " + actions.text;
                    if (actions.spins) line += " ...";
                    if (!actions.symbolName.empty()) line += " {" + actions.symbolName + "}";
                    for (const auto& button : actions.buttons) line += " <" + button.title + ">";
                },
                [&](const SettingsSwitch& toggle) { line = (toggle.on ? "[x] " : "[ ] ") + line; },
                [&](const IntensitySlider& slider) {
                    line += fmt::format(": {} of {} to {}", slider.value, slider.lowest,
                                        slider.highest);
                    if (slider.tick) line += fmt::format(", unreadable from {}", *slider.tick);
                },
                [&](const ChoiceStrip& strip) {
                    line += ":";
                    for (const auto& option : strip.chips)
                        line += chip(option.title, option.chosen);
                },
                [&](const StyleThumbnails& styles) {
                    for (const auto& style : styles.styles)
                        line += chip(style.title, style.chosen) +
                                fmt::format(" {}{}", style.look.radius,
                                            style.look.solid ? " solid" : "");
                },
                [&](const CornerPicker& picker) {
                    for (const auto& target : picker.targets)
                        line += chip(target.title, target.chosen) + (target.marked ? "!" : "");
                },
                [&](const TextField& field) { line += ": _" + field.text + "_" + field.prompt; },
                // The guide's pictures have no text of their own.
                [](const auto&) {});
            lines.push_back(line.starts_with(' ') ? line.substr(1) : line);
            if (row.note) note(*row.note);
        }
        for (const auto& shown : section.notes) note(shown);
    }
    return lines;
}

/// Returns the control of the row with this id; throws if there is none.
template <class Control>
const Control& control(const FormContent& form, std::string_view id) {
    for (const auto& section : form.sections)
        for (const auto& row : section.rows)
            if (row.id == id) return std::get<Control>(row.control);
    throw std::runtime_error("no row " + std::string(id));
}
