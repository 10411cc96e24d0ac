#include "OrvelUI/SettingsPanes.h"

#include <fmt/format.h>

#include "OrvelCore/Brand.h"
#include "OrvelUI/AccessibilityText.h"
#include "OrvelUI/FormParts.h"

namespace OrvelUI {

namespace Brand = OrvelCore::Brand;
using OrvelCore::OverlayTint;
using OrvelCore::Preferences;
using OrvelCore::TriggerSettings;

SettingsSidebar SettingsSidebar::of(SettingsModel& model) {
    SettingsSidebar sidebar;
    for (const auto pane : OrvelCore::allCases<SettingsPane>())
        sidebar.items.push_back({.title = std::string(title(pane)),
                                 .symbol = std::string(symbol(pane)),
                                 .chosen = model.pane.get() == pane,
                                 .choose = [&model, pane] { model.pane.set(pane); }});
    return sidebar;
}

FormContent SettingsPanes::current(SettingsModel& model, const SettingsTheme& theme) {
    const auto pane = model.pane.get();
    FormContent content = [&] {
        switch (pane) {
            case SettingsPane::general:
                return general(model.preferences);
            case SettingsPane::lock:
                return lock(model.preferences, theme);
            case SettingsPane::blur:
                return blur(model.preferences);
            case SettingsPane::privateApps:
                return privateApps(model.preferences);
            case SettingsPane::shortcuts:
                return shortcuts(model.preferences);
            case SettingsPane::about:
                break;
        }
        return about(model.about);
    }();
    content.title = title(pane);
    return content;
}

FormContent SettingsPanes::general(PreferencesModel& model) {
    FormRow login{
        .id = "launchAtLogin",
        .label = {.text = fmt::format("Open {} when you log in", Brand::name)},
        .control = SettingsSwitch{.on = model.launchAtLogin.get(),
                                  .set = [&model](bool on) { model.onSetLaunchAtLogin(on); }}};
    auto icon = FormParts::preferenceSwitch(
        model, "showsMenuBarIcon", "Show the icon in the menu bar", &Preferences::showsMenuBarIcon);
    if (!model.prefs.get().showsMenuBarIcon)
        icon.note = SettingsNote{.text = SettingsText::hiddenIconNote()};
    auto sounds = FormParts::preferenceSwitch(
        model, "soundsOn", "Play sounds when you lock and unlock", &Preferences::soundsOn);
    sounds.note = SettingsNote{.text = "Silent while your Mac's interface sounds are off."};

    ChoiceStrip tints;
    for (const auto tint : OrvelCore::allCases<OverlayTint>())
        tints.chips.push_back(
            {.title = std::string(SettingsText::tintTitle(tint)),
             .chosen = model.prefs.get().tint == tint,
             .choose = [&model, tint] { model.change(&Preferences::tint, tint); }});
    FormRow tint{.id = "tint",
                 .label = {.text = "Overlay tint"},
                 .note = SettingsNote{.text = "The colour laid over the blur when you lock or blur "
                                              "the screen. Auto follows your Mac's appearance."},
                 .control = std::move(tints)};
    return {.sections = {{.id = "start", .rows = {std::move(login), std::move(icon)}},
                         {.id = "sounds", .rows = {std::move(sounds)}},
                         {.id = "tint", .rows = {std::move(tint)}}}};
}

namespace {

FormSection intensity(PreferencesModel& model) {
    return {.id = "intensity",
            .title = "Intensity",
            .rows = {FormParts::intensitySlider(model, "quickBlurIntensity", "Blur Screen",
                                                &Preferences::quickBlurIntensity, false),
                     FormParts::intensitySlider(model, "focusBlurIntensity", "Focus Blur",
                                                &Preferences::focusBlurIntensity, true)},
            .notes = {{.text = "Blur Screen never goes softer than unreadable. Focus Blur can, to "
                               "keep the outline of other windows."}}};
}

FormSection steppingAway(PreferencesModel& model) {
    FormSection section{.id = "away", .title = "When you step away"};
    if (model.capabilities.idleTime) {
        section.rows = {FormParts::durationChoice(model, "idleBlurAfter", "Blur the screen after",
                                                  SettingsText::idleBlurChoices(),
                                                  &TriggerSettings::idleBlurAfter),
                        FormParts::durationChoice(model, "idleLockAfter", "Lock after",
                                                  SettingsText::idleLockChoices(),
                                                  &TriggerSettings::idleLockAfter)};
        section.notes = {
            {.text = "The blur is for short breaks: any key or mouse move clears it. Both wait "
                     "while a video, a call or a slideshow keeps the display awake."}};
    }
    if (model.offersLockBeforeSleep.get())
        section.rows.push_back(
            {.id = "locksBeforeSleep",
             .label = {.text = "Lock when the computer sleeps"},
             .control = SettingsSwitch{.on = model.triggers.get().locksBeforeSleep,
                                       .set = [&model](bool on) {
                                           model.change(&TriggerSettings::locksBeforeSleep, on);
                                       }}});
    return section;
}

FormSection hotCorner(PreferencesModel& model) {
    const auto& triggers = model.triggers.get();
    const auto& used = model.macOSCorners.get();
    CornerPicker picker;
    for (const auto corner : OrvelCore::allCases<TriggerSettings::Corner>()) {
        const bool marked = used.contains(corner);
        const std::string hint = AccessibilityText::hotCorner;
        picker.targets.push_back({.corner = corner,
                                  .title = std::string(SettingsText::cornerTitle(corner)),
                                  .hint = marked ? "macOS already uses this corner. " + hint : hint,
                                  .chosen = triggers.hotCorner == corner,
                                  .marked = marked,
                                  .pick = [&model, corner] { model.pick(corner); }});
    }
    FormSection corner{.id = "corner",
                       .title = "Hot corner",
                       .rows = {{.id = "hotCorner", .control = std::move(picker)}}};
    if (triggers.hotCorner) {
        ChoiceStrip actions;
        for (const auto action : OrvelCore::allCases<TriggerSettings::CornerAction>())
            actions.chips.push_back({.title = std::string(SettingsText::cornerActionTitle(action)),
                                     .chosen = triggers.hotCornerAction == action,
                                     .choose = [&model, action] {
                                         model.change(&TriggerSettings::hotCornerAction, action);
                                     }});
        corner.rows.push_back({.id = "hotCornerAction",
                               .label = {.text = "Corner action"},
                               .control = std::move(actions)});
        if (used.contains(*triggers.hotCorner))
            corner.notes.push_back({.text = SettingsText::cornerWarning, .warning = true});
        corner.notes.push_back({.text = "Pick the same corner again to turn it off."});
    } else {
        corner.notes.push_back({.text = "Pick a corner to turn it on."});
    }
    return corner;
}

}  // namespace

FormContent SettingsPanes::blur(PreferencesModel& model) {
    const auto& offered = model.capabilities;
    FormContent content;
    // Without a blur of the program's own everything is hidden in one way.
    if (offered.focusBlur)
        content.sections.push_back(intensity(model));
    else
        content.sections.push_back(
            {.id = "noBlur",
             .rows = {FormParts::textRow("noBlur", SettingsText::noBlur(offered))}});
    if (auto away = steppingAway(model); !away.rows.empty())
        content.sections.push_back(std::move(away));
    if (offered.hotCorners) content.sections.push_back(hotCorner(model));
    return content;
}

FormContent SettingsPanes::privateApps(PreferencesModel& model) {
    if (!model.capabilities.appCovers)
        return {.sections = {{.id = "noCovers",
                              .rows = {FormParts::textRow("noCovers", SettingsText::noCovers)}}}};
    const bool hides = model.capabilities.hidesApps;
    FormSection list{
        .id = "list",
        .title = hides ? "Hidden unless you are using them" : "Blurred unless you are using them"};
    if (hides) list.notes.push_back({.text = SettingsText::hidesApps});
    for (const auto& app : model.privateApps.get())
        list.rows.push_back(
            FormParts::appRow(app, "private:",
                              {.title = "Remove",
                               .kind = FormButton::Kind::symbol,
                               .symbol = "minus.circle.fill",
                               .accessibleName = fmt::format("Remove {}", app.name),
                               .verbatim = true,
                               .press = [&model, id = app.id] { model.onRemoveApp(id); }}));
    if (list.rows.empty())
        list.rows.push_back(
            {.id = "none",
             .label = {.text = "No apps yet. Chat and mail apps are the usual choice.",
                       .role = TextRole::note}});
    if (!model.showsAddableApps.get())
        list.rows.push_back(FormParts::buttonRow(
            "add", {},
            {.title = "Add App…", .press = [&model] { model.showsAddableApps.set(true); }}));
    FormContent content{.sections = {std::move(list)}};

    if (model.showsAddableApps.get()) {
        FormSection running{.id = "running", .title = "Running apps"};
        for (const auto& app : model.addableApps.get())
            running.rows.push_back(
                FormParts::appRow(app, "addable:",
                                  {.title = "Add",
                                   .accessibleName = fmt::format("Add {}", app.name),
                                   .verbatim = true,
                                   .press = [&model, id = app.id] { model.onAddApp(id); }}));
        running.rows.push_back(
            {.id = "choose",
             .control =
                 RowActions{.buttons = {{.title = "Choose from Applications…",
                                         .press = [&model] { model.onChooseFromApplications(); }},
                                        {.title = "Done", .press = [&model] {
                                             model.showsAddableApps.set(false);
                                         }}}}});
        content.sections.push_back(std::move(running));
    }

    if (!hides)
        content.sections.push_back(
            {.id = "peek",
             .rows = {FormParts::preferenceSwitch(model, "peekWithOption",
                                                  "Hold Option over a blurred app to peek",
                                                  &Preferences::peekWithOption)}});
    content.sections.push_back(
        {.id = "notifications",
         .title = "Notifications",
         .rows = {{.id = "tip", .label = {.text = SettingsText::notificationTip}},
                  FormParts::buttonRow("openNotifications", {},
                                       {.title = "Open Notifications Settings…", .press = [&model] {
                                            model.onOpenNotificationSettings();
                                        }})}});
    return content;
}

FormContent SettingsPanes::about(AboutPaneModel& model) {
    FormRow version{.id = "version",
                    .label = {.text = std::string(Brand::name)},
                    .note = SettingsNote{.text = fmt::format("Version {}", model.version.get())},
                    .control = RowActions{.buttons = {{.title = "Email Support",
                                                       .press = [&model] { model.onEmail(); }}}}};
    if (const auto icon = model.icon.get()) version.icon = icon;
    RowActions actions{.spins = model.checking.get()};
    if (model.updateReady.get())
        actions.buttons.push_back({.title = "Install",
                                   .hint = AccessibilityText::installUpdate(),
                                   .kind = FormButton::Kind::prominent,
                                   .press = [&model] { model.onInstall(); }});
    if (model.checking.get())
        actions.buttons.push_back(
            {.title = "Cancel", .press = [&model] { model.onCancelCheck(); }});
    else
        actions.buttons.push_back({.title = "Check Now", .press = [&model] { model.onCheck(); }});
    FormSection updates{.id = "updates",
                        .title = "Updates",
                        .rows = {{.id = "status",
                                  .label = {.text = model.updateStatus.get()},
                                  .control = std::move(actions)},
                                 {.id = "automatic",
                                  .label = {.text = "Check for updates automatically"},
                                  .control = SettingsSwitch{.on = model.automaticChecks.get(),
                                                            .set = [&model](bool on) {
                                                                if (model.automaticChecks.set(on))
                                                                    model.onSetAutomatic(on);
                                                            }}}}};
    FormSection privacy{.id = "privacy",
                        .title = "Privacy",
                        .rows = {FormParts::textRow("privacy", AboutPaneModel::privacy())}};
    FormRow uninstall = FormParts::buttonRow("uninstall", {},
                                             {.title = fmt::format("Uninstall {}…", Brand::name),
                                              .kind = FormButton::Kind::destructive,
                                              .press = [&model] { model.onUninstall(); }});
    return {.sections = {{.id = "version", .rows = {std::move(version)}},
                         std::move(updates),
                         std::move(privacy),
                         {.id = "exits", .rows = {std::move(uninstall)}}}};
}

}  // namespace OrvelUI
