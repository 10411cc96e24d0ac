#include <utility>

#include <fmt/format.h>

#include "OrvelApp/AppDelegate.h"
#include "OrvelCore/RawValue.h"
#include "OrvelCore/Shortcut.h"

namespace OrvelApp {

using namespace OrvelCore;
using Action = ShortcutSet::Action;

namespace {

constexpr auto takenNote = "Another app already uses this shortcut, so it does nothing here.";
constexpr auto noKeysNote =
    "Your desktop has given this no keys. Record it again, or choose the keys in its settings.";
constexpr auto givenKeysNote = "Your desktop has given this {}. Its settings can change that.";

/// Sets the note beside a shortcut; `nullopt` removes it. `refused` means that the note reports
/// that nothing was saved.
void setNote(OrvelUI::PreferencesModel& model, Action action,
             const std::optional<std::string>& note, bool refused) {
    auto notes = model.shortcutNotes.get();
    auto refusedNotes = model.refusedNotes.get();
    if (note)
        notes[action] = *note;
    else
        notes.erase(action);
    if (refused)
        refusedNotes.insert(action);
    else
        refusedNotes.erase(action);
    model.refusedNotes.set(std::move(refusedNotes));
    model.shortcutNotes.set(std::move(notes));
}

}  // namespace

void AppDelegate::installShortcuts() {
    shortcuts_ = std::make_unique<OrvelModes::ShortcutRegistrar>(
        [this](Action action, const Shortcut& shortcut,
               std::function<void()> handler) -> std::function<void()> {
            const auto number = hotkeys_.registerHotkey(
                shortcut, std::move(handler), title(action),
                [this, action](const std::string& keys) { noteGivenKeys(action, keys); });
            if (!number) return nullptr;
            return lifetime_.guard([this, number = *number] { hotkeys_.unregister(number); });
        });
    shortcuts_->onPressed =
        lifetime_.guard([this](ShortcutSet::Action action) { shortcutPressed(action); });
    shortcuts_->onTaken = lifetime_.guard(
        [this](const std::set<ShortcutSet::Action>& taken) { noteTakenShortcuts(taken); });
}

void AppDelegate::shortcutPressed(ShortcutSet::Action action) {
    if (!isLaunched_) return;
    switch (action) {
        case ShortcutSet::Action::lockMac:
            if (onboarding_ && onboarding_->model.lockShortcutPressed())
                tryLock();
            else
                lockNow(false);
            break;
        case ShortcutSet::Action::lockApp:
            appLock_->shortcutPressed();
            break;
        case ShortcutSet::Action::quickBlur:
            switchQuickBlur(URLCommands::Switch::toggle);
            break;
        case ShortcutSet::Action::focusBlur:
            switchFocusBlur(URLCommands::Switch::toggle);
            break;
    }
}

void AppDelegate::noteTakenShortcuts(const std::set<Action>& taken) {
    auto& model = settings_.model.preferences;
    for (const auto action : allCases<Action>()) {
        const auto& notes = model.shortcutNotes.get();
        const auto note = notes.find(action);
        if (taken.contains(action))
            setNote(model, action, takenNote, true);
        else if (note != notes.end() && note->second == takenNote)
            setNote(model, action, {}, false);
    }
}

void AppDelegate::noteGivenKeys(Action action, const std::string& keys) {
    setNote(settings_.model.preferences, action,
            keys.empty() ? noKeysNote : fmt::format(givenKeysNote, keys), keys.empty());
}

void AppDelegate::installRecorder() {
    auto& model = settings_.model.preferences;
    shortcutRecorder_ =
        std::make_unique<OrvelModes::ShortcutRecorder>(system_.windows.recorderHooks(
            [this] { return settings_.window(); }, [this] { shortcuts_->pause(); },
            [this] { shortcuts_->resume(); }));
    shortcutRecorder_->onDecision = [this](Action action, const RecorderDecision& decision) {
        shortcutDecided(action, decision);
    };
    model.onRecord = [this](Action action) {
        setNote(settings_.model.preferences, action, {}, false);
        shortcutRecorder_->start(action);
        settings_.model.preferences.recording.set(action);
    };
    model.onStopRecording = [this] { shortcutRecorder_->stop(); };
    model.onClearShortcut = [this](Action action) { shortcutRecorder_->clear(action); };
    settings_.model.onPaneChange = [this] { shortcutRecorder_->stop(); };
}

void AppDelegate::shortcutDecided(Action action, const RecorderDecision& decision) {
    auto& model = settings_.model.preferences;
    model.recording.set(std::nullopt);
    const auto result = ShortcutEditor::apply(decision, action, prefs_.shortcuts, system_.osVersion,
                                              system_.reservedShortcuts);
    setNote(model, action, result.note, result.note && !result.saved);
    if (result.saved) model.change(&Preferences::shortcuts, result.set);
}

}  // namespace OrvelApp
