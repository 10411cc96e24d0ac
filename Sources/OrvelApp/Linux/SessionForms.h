#pragma once

#include <functional>
#include <memory>

#include "OrvelApp/AppSystem.h"

namespace OrvelApp {

/// What the window system of the session gives to the program; the rest of an `AppSystem` is the
/// same in every session. Chosen once, before Qt connects: nothing of one window system may be
/// touched in a session of the other.
struct SessionForms {
    /// What the others refer to.
    std::shared_ptr<void> shared;
    OrvelCore::Capabilities capabilities;
    std::unique_ptr<OrvelSystem::HotkeyPlatform> hotkeys;
    OrvelLock::KioskSystem kiosk;
    OrvelBlur::BlurSupport blurSupport;
    std::function<OrvelLock::LockPresenterSystem(OrvelBlur::BlurBackend)> lockPresenter;
    CoverSystem covers;
    std::function<OrvelModes::QuickBlurSystem(OrvelBlur::BlurBackend, ModeSystem::Look,
                                              std::function<bool()> macLocked)>
        quickBlur;
    std::function<OrvelModes::FocusBlurSystem(OrvelBlur::BlurBackend, ModeSystem::Look)> focusBlur;
    /// Seconds since the last input.
    std::function<double()> idleSeconds;
    std::function<std::unique_ptr<OrvelModes::CornerPanel>()> makeCornerPanel;
    std::function<std::vector<OrvelCore::Rect>()> screens;
    /// Calls back after each change of `screens`, to the end of the program.
    std::function<void(std::function<void()>)> observeScreens;
    OrvelModes::ToastSystem toasts;
    OrvelModes::MenuPanelSystem menuPanel;
    std::function<std::unique_ptr<OrvelModes::StatusItem>(OrvelModes::StatusMenuController&)>
        makeStatusItem;
    decltype(WindowSystem::recorderHooks) recorderHooks;
    /// The session's own locker cannot come up while a lock of this program holds.
    bool locksExclusively = false;
    /// Whether one holds, or is being taken.
    std::function<bool()> holdsLock = [] { return false; };
};

}  // namespace OrvelApp
