#include "OrvelModes/Windows/ShortcutRecorder.h"

#include <utility>

namespace OrvelModes {

using OrvelCore::RecorderDecision;
using OrvelCore::Shortcut;
namespace RecorderDecisions = OrvelCore::RecorderDecisions;

ShortcutRecorder::ShortcutRecorder(Hooks hooks) : hooks_(std::move(hooks)) {}

void ShortcutRecorder::start(Action action) {
    if (!recording_) {
        hooks_.pauseShortcuts();
        hooks_.watchKeys(
            lifetime_.guard([this](std::uint32_t keyCode, Shortcut::Modifiers modifiers,
                                   const std::optional<std::string>& characters) {
                keyPressed(keyCode, modifiers, characters);
            }));
        hooks_.watchEnds(lifetime_.guard([this] { stop(); }));
    }
    recording_ = action;
}

void ShortcutRecorder::stop() {
    if (recording_) finish(RecorderDecisions::Cancel{});
}

void ShortcutRecorder::clear(Action action) {
    stop();
    onDecision(action, RecorderDecisions::Clear{});
}

bool ShortcutRecorder::takes(const void* eventWindow, const void* settings) {
    return eventWindow && eventWindow == settings;
}

void ShortcutRecorder::keyPressed(std::uint32_t keyCode, Shortcut::Modifiers modifiers,
                                  const std::optional<std::string>& characters) {
    if (!recording_) return;
    const auto decision = OrvelCore::ShortcutRecording::decide(keyCode, modifiers, characters);
    if (!std::holds_alternative<RecorderDecisions::Ignore>(decision)) finish(decision);
}

void ShortcutRecorder::finish(const RecorderDecision& decision) {
    const Action action = *std::exchange(recording_, std::nullopt);
    hooks_.stopWatching();
    onDecision(action, decision);
    hooks_.resumeShortcuts();
}

}  // namespace OrvelModes
