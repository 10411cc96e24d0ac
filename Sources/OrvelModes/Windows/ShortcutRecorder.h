#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "OrvelCore/Lifetime.h"
#include "OrvelCore/ShortcutRecording.h"
#include "OrvelModes/Windows/AppWindow.h"

namespace OrvelModes {

/// Drives the moment in which the user presses a new combination for an action: the shortcuts are
/// held off, and keys typed into the Settings window become decisions. Main thread only.
class ShortcutRecorder {
  public:
    using Action = OrvelCore::ShortcutSet::Action;
    using OnKey =
        std::function<void(std::uint32_t keyCode, OrvelCore::Shortcut::Modifiers modifiers,
                           const std::optional<std::string>& characters)>;

    struct Hooks {
        std::function<void()> pauseShortcuts;
        std::function<void()> resumeShortcuts;
        /// Starts delivering key presses. `characters` are what the key types with no other
        /// modifier than Shift; nothing for a key that types nothing.
        std::function<void(OnKey)> watchKeys;
        /// Starts telling when recording must end. May be told more than once.
        std::function<void(std::function<void()>)> watchEnds;
        /// Ends both watches. Called from inside them too.
        std::function<void()> stopWatching;

        /// Watches the keys of the window that `window` gives when a recording starts; nothing is
        /// watched while there is none.
        static Hooks live(std::function<AppWindow*()> window, std::function<void()> pause,
                          std::function<void()> resume);
    };

    /// Called while the shortcuts are still held off, so that a set saved here is what comes back.
    std::function<void(Action, const OrvelCore::RecorderDecision&)> onDecision =
        [](Action, const OrvelCore::RecorderDecision&) {};

    explicit ShortcutRecorder(Hooks hooks);

    /// While recording this only changes the action that takes the keys.
    void start(Action action);
    /// Decides `cancel` if recording.
    void stop();
    /// Ends a recording as `stop` does, then decides `clear` for `action`.
    void clear(Action action);
    /// The action that takes the next keys; nothing when idle.
    std::optional<Action> recording() const { return recording_; }

    /// Whether a key typed into one window is for the recorder of the other. Windows are compared
    /// by identity; null is no window.
    static bool takes(const void* eventWindow, const void* settings);

  private:
    void keyPressed(std::uint32_t keyCode, OrvelCore::Shortcut::Modifiers modifiers,
                    const std::optional<std::string>& characters);
    void finish(const OrvelCore::RecorderDecision& decision);

    std::optional<Action> recording_;
    Hooks hooks_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelModes
