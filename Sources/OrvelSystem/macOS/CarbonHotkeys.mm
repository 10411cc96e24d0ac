#include "OrvelSystem/macOS/CarbonHotkeys.h"

#import <Carbon/Carbon.h>

namespace OrvelSystem {

void CarbonHotkeys::installEventHandler(std::function<void(std::uint32_t)> pressed) {
    pressed_ = std::move(pressed);
    const EventTypeSpec type{kEventClassKeyboard, kEventHotKeyPressed};
    const auto handler = [](EventHandlerCallRef, EventRef event, void* self) -> OSStatus {
        if (!event || !self) return noErr;
        EventHotKeyID hotkey{};
        GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID, nullptr, sizeof hotkey,
                          nullptr, &hotkey);
        static_cast<CarbonHotkeys*>(self)->pressed_(hotkey.id);
        return noErr;
    };
    EventHandlerRef installed = nullptr;
    InstallEventHandler(GetApplicationEventTarget(), handler, 1, &type, this, &installed);
}

std::optional<HotkeyRef> CarbonHotkeys::registerHotKey(std::uint32_t keyCode,
                                                       std::uint32_t modifiers,
                                                       std::uint32_t number) {
    EventHotKeyRef ref = nullptr;
    const EventHotKeyID hotkey{signature, number};
    const OSStatus status =
        RegisterEventHotKey(keyCode, modifiers, hotkey, GetApplicationEventTarget(), 0, &ref);
    if (status != noErr || !ref) return std::nullopt;
    return reinterpret_cast<HotkeyRef>(ref);
}

void CarbonHotkeys::unregisterHotKey(HotkeyRef ref) {
    UnregisterEventHotKey(reinterpret_cast<EventHotKeyRef>(ref));
}

}  // namespace OrvelSystem
