#pragma once

#include <functional>

#include "OrvelSystem/HotkeyPlatform.h"

namespace OrvelSystem {

/// Hotkeys of Carbon's event manager, the only API that needs no permission. The object must live
/// as long as the process, since the event handler is never removed.
class CarbonHotkeys final : public HotkeyPlatform {
  public:
    void installEventHandler(std::function<void(std::uint32_t number)> pressed) override;
    std::optional<HotkeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                            std::uint32_t number) override;
    void unregisterHotKey(HotkeyRef ref) override;

  private:
    std::function<void(std::uint32_t)> pressed_ = [](std::uint32_t) {};
};

}  // namespace OrvelSystem
