#pragma once

#include <functional>
#include <memory>

#include "OrvelApp/AppSystem.h"

namespace OrvelApp {

/// The parts of an `AppSystem` that depend on the window system of the session. They are chosen
/// once, before Qt connects, because nothing of one window system may be used in a session of the
/// other.
struct SessionForms {
    /// Keeps alive what the other members refer to.
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
    /// Calls back after each change of `screens` until the program ends.
    std::function<void(std::function<void()>)> observeScreens;
    OrvelModes::ToastSystem toasts;
    OrvelModes::MenuPanelSystem menuPanel;
    std::function<std::unique_ptr<OrvelModes::StatusItem>(OrvelModes::StatusMenuController&)>
        makeStatusItem;
    decltype(WindowSystem::recorderHooks) recorderHooks;
    /// Whether a lock of this program prevents the session's own locker from locking.
    bool locksExclusively = false;
    /// Whether such a lock is held or requested.
    std::function<bool()> holdsLock = [] { return false; };
};

}  // namespace OrvelApp
