#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "OrvelCore/Lifetime.h"
#include "OrvelCore/ShortcutRecording.h"
#include "OrvelModes/Windows/AppWindow.h"

namespace OrvelModes {

/// Records a new key combination for an action. Until it ends, the shortcuts are paused, and keys
/// typed into the Settings window become decisions. Main thread only.
class ShortcutRecorder {
  public:
    using Action = OrvelCore::ShortcutSet::Action;
    using OnKey =
        std::function<void(std::uint32_t keyCode, OrvelCore::Shortcut::Modifiers modifiers,
                           const std::optional<std::string>& characters)>;

    struct Hooks {
        std::function<void()> pauseShortcuts;
        std::function<void()> resumeShortcuts;
        /// Starts to deliver key presses. `characters` is what the key types with no modifier
        /// except Shift; `nullopt` for a key that types nothing.
        std::function<void(OnKey)> watchKeys;
        /// Starts to report that the recording must end. May report more than once.
        std::function<void(std::function<void()>)> watchEnds;
        /// Ends both watches. Also called from inside them.
        std::function<void()> stopWatching;

        /// Watches the keys of the window that `window` returns when a recording starts; nothing is
        /// watched if that is null.
        static Hooks live(std::function<AppWindow*()> window, std::function<void()> pause,
                          std::function<void()> resume);
    };

    /// Called while the shortcuts are still paused, so that `resumeShortcuts` registers the set
    /// that is saved here.
    std::function<void(Action, const OrvelCore::RecorderDecision&)> onDecision =
        [](Action, const OrvelCore::RecorderDecision&) {};

    explicit ShortcutRecorder(Hooks hooks);

    /// If a recording is running, only its action changes.
    void start(Action action);
    /// Ends a recording with the decision `cancel`.
    void stop();
    /// Ends a recording like `stop`, then reports the decision `clear` for `action`.
    void clear(Action action);
    /// The action that gets the next keys; `nullopt` when no recording is running.
    std::optional<Action> recording() const { return recording_; }

    /// Whether a key typed into `eventWindow` is for the recorder of the `settings` window. Windows
    /// are compared by identity; null means no window.
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
