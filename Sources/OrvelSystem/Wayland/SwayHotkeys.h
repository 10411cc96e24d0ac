#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>

#include "OrvelSystem/HotkeyPlatform.h"
#include "OrvelSystem/Wayland/SwayConnection.h"

namespace OrvelSystem {

/// Global hotkeys as bindings of sway, made while it runs. sway does not report its bindings, and a
/// new one silently replaces one with the same keys, so a combination that the configuration binds
/// is refused. Bindings that other programs have made while sway runs cannot be seen. The
/// destructor removes the bindings. Those of a program that was killed do nothing.
class SwayHotkeys final : public HotkeyPlatform {
  public:
    /// `sway` must outlive this object.
    explicit SwayHotkeys(SwayConnection& sway);
    ~SwayHotkeys() override;
    SwayHotkeys(const SwayHotkeys&) = delete;
    SwayHotkeys& operator=(const SwayHotkeys&) = delete;

    void installEventHandler(std::function<void(std::uint32_t)> pressed) override;
    /// The label decides which letter is bound, so that the binding follows the layout.
    std::optional<HotkeyRef> registerShortcut(const OrvelCore::Shortcut& shortcut,
                                              std::uint32_t number,
                                              std::string_view title) override;
    void unregisterHotKey(HotkeyRef ref) override;

  private:
    struct Binding {
        std::set<std::string> modifiers;
        std::string keyName;
        std::uint32_t xKeycode = 0;
        bool isBound = false;

        /// As sway writes it, such as "Mod4+l".
        std::string keys() const;
    };

    bool bind(std::uint32_t number, const Binding& binding);
    void unbind(Binding& binding);
    /// The configuration was read again, which removes all bindings that were made meanwhile.
    void reloaded();
    bool runInDefaultMode(const std::string& command);

    SwayConnection& sway_;
    std::function<void(std::uint32_t)> pressed_ = [](std::uint32_t) {};
    std::map<std::uint32_t, Binding> bindings_;  // by number
    OrvelCore::Subscription events_;
};

}  // namespace OrvelSystem
