#include "OrvelUI/OnboardingContent.h"

#include "OrvelCore/OnboardingText.h"
#include "OrvelUI/AccessibilityText.h"
#include "OrvelUI/FormParts.h"
#include "OrvelUI/SettingsText.h"

namespace OrvelUI {

namespace Words = OrvelCore::OnboardingText;
using OrvelCore::OnboardingStep;
using OrvelCore::Shortcut;
using Trial = OrvelCore::OnboardingFlow::Trial;
using Style = FormSection::Style;

namespace {

FormRow words(std::string id, std::string text, TextRole role) {
    return {.id = std::move(id), .label = {.text = std::move(text), .role = role}};
}

FormContent welcome(const OnboardingModel& model) {
    return {
        .sections = {{.id = "picture",
                      .style = Style::plain,
                      .rows = {{.id = "desktop", .control = MiniDesktop{!model.staticPreview}}}},
                     {.id = "words",
                      .style = Style::plain,
                      .rows = {words("title", Words::welcomeTitle, TextRole::heroTitle),
                               words("body", Words::welcomeBody, TextRole::heroBody)}}}};
}

FormRow shortcutRow(std::string id, std::string title, const std::optional<Shortcut>& shortcut,
                    bool pulses, bool tried) {
    RowActions keys;
    if (shortcut)
        keys.keycaps = PulsingKeycaps{.keycaps = {.caps = shortcut->keycaps(), .large = true},
                                      .pulses = pulses};
    else
        keys.text = "None";
    if (tried) {
        keys.symbol = "checkmark.circle.fill";
        keys.symbolName = "Tried";
    }
    return {.id = std::move(id), .label = {.text = std::move(title)}, .control = std::move(keys)};
}

FormContent shortcuts(const OnboardingModel& model) {
    const auto trial = model.flow.get().trial;
    FormSection rows{
        .id = "shortcuts",
        .rows = {shortcutRow("lockMac", Words::lockMacTitle, model.lockMac.get(),
                             model.keycapsPulse(), trial == Trial::done),
                 shortcutRow("lockApp", Words::lockAppTitle, model.lockApp.get(), false, false)}};
    if (!model.capabilities.shortcuts)
        rows =
            FormSection{.id = "shortcuts",
                        .rows = {FormParts::textRow("noShortcuts", SettingsText::noShortcuts())}};
    else if (auto note = Words::browserNote(model.lockMac.get()))
        rows.notes.push_back({.text = std::move(*note)});
    if (model.capabilities.shortcuts) rows.notes.push_back({.text = Words::changeNote});
    FormContent content{
        .sections = {{.id = "words",
                      .style = Style::plain,
                      .rows = {words("title", Words::shortcutsTitle, TextRole::heroTitle)}},
                     std::move(rows)}};
    if (trial != Trial::idle)
        content.sections.push_back(
            {.id = "trial",
             .style = Style::plain,
             .rows = {words("trial", trial == Trial::done ? Words::tryDone : Words::tryWaiting,
                            TextRole::label)}});
    return content;
}

FormContent privateApps(OnboardingModel& model) {
    AppChoiceTiles apps;
    for (const auto& app : model.apps.get())
        apps.tiles.push_back({.app = app,
                              .hint = AccessibilityText::chooseApp,
                              .chosen = model.flow.get().chosenApps.contains(app.id),
                              .toggle = [&model, id = app.id] { model.toggle(id); }});
    FormSection section{.id = "words",
                        .style = Style::plain,
                        .rows = {words("title", Words::privateTitle, TextRole::heroTitle)}};
    if (apps.tiles.empty()) {
        const bool isPossible = model.capabilities.appCovers;
        section.rows.push_back(words(
            "none", isPossible ? Words::privateNone : SettingsText::noCovers, TextRole::heroBody));
        return {.sections = {std::move(section)}};
    }
    section.rows.push_back(words("body", Words::privateBody(), TextRole::heroBody));
    return {.sections = {std::move(section),
                         {.id = "apps",
                          .style = Style::plain,
                          .rows = {{.id = "apps", .control = std::move(apps)}}}}};
}

FormContent finish(OnboardingModel& model) {
    const bool hidden = model.showsHiddenIconNote();
    FormSection section{
        .id = "words",
        .style = Style::plain,
        .rows = {words("title", Words::finishTitle, TextRole::heroTitle),
                 {.id = "menuBar", .control = MenuBarDrawing{hidden}},
                 words("note", hidden ? Words::hiddenIconNote() : Words::menuBarNote(),
                       TextRole::heroBody)}};
    FormSection choices{.id = "choices",
                        .rows = {{.id = "launchAtLogin",
                                  .label = {.text = Words::launchAtLogin()},
                                  .control = SettingsSwitch{
                                      .on = model.flow.get().launchAtLogin,
                                      .set = [&model](bool on) { model.setLaunchAtLogin(on); }}}}};
    if (const auto& lockMac = model.lockMac.get(); hidden && lockMac)
        choices.rows.push_back(
            {.id = "stillLocks",
             .control =
                 RowActions{.keycaps = PulsingKeycaps{.keycaps = {.caps = lockMac->keycaps()}},
                            .text = Words::hiddenIconShortcut}});
    return {.sections = {std::move(section), std::move(choices)}};
}

FormContent stepForm(OnboardingModel& model) {
    switch (model.flow.get().step) {
        case OnboardingStep::welcome:
            return welcome(model);
        case OnboardingStep::shortcuts:
            return shortcuts(model);
        case OnboardingStep::privateApps:
            return privateApps(model);
        case OnboardingStep::finish:
            break;
    }
    return finish(model);
}

}  // namespace

OnboardingContent OnboardingContent::of(OnboardingModel& model) {
    const auto& flow = model.flow.get();
    const bool tries = flow.step == OnboardingStep::shortcuts && flow.trial != Trial::done;
    OnboardingContent content{.form = stepForm(model),
                              .dots = {.count = OrvelCore::onboardingStepCount,
                                       .current = static_cast<int>(flow.step) + 1},
                              .primary = {.title = model.primaryTitle(),
                                          .hint = flow.step == OnboardingStep::finish ? ""
                                                  : tries ? AccessibilityText::tryIt
                                                          : AccessibilityText::onboardingNext,
                                          .kind = FormButton::Kind::prominent,
                                          .enabled = model.primaryEnabled(),
                                          .press = [&model] { model.primary(); }}};
    if (flow.step != OnboardingStep::welcome)
        content.back = FormButton{.title = "Back",
                                  .kind = FormButton::Kind::link,
                                  .enabled = model.primaryEnabled(),
                                  .press = [&model] { model.back(); }};
    if (const auto title = model.secondaryTitle())
        content.secondary = FormButton{.title = *title,
                                       .hint = AccessibilityText::onboardingSkip,
                                       .kind = FormButton::Kind::plain,
                                       .enabled = model.primaryEnabled(),
                                       .press = [&model] { model.secondary(); }};
    return content;
}

}  // namespace OrvelUI
