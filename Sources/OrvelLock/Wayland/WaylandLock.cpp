#include "OrvelLock/Wayland/WaylandLock.h"

#include <utility>

#include <unistd.h>

#include "OrvelAuth/Biometrics.h"
#include "OrvelBlur/Wayland/LayerSurface.h"
#include "OrvelLock/LiveLockSurface.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelUI/Palette.h"

namespace OrvelLock {

using OrvelSystem::Appearance;

namespace {

/// Seconds that a compositor has to grant the lock. Some wait for a frame of each output.
constexpr double lockPatience = 5;

/// Shows what a lock would show, above the windows and without the keyboard.
struct Preview {
    Preview(const OrvelSystem::Compositor& compositor, QScreen& screen,
            const OrvelCore::Color& color)
        : window(color), surface(compositor, window, screen, {}, [this](const QSize& size) {
              window.fill(size);
          }) {}

    OrvelBlur::FilledWindow window;
    OrvelBlur::LayerSurface surface;
};

class OutputCover final : public LockSurface {
  public:
    OutputCover(SessionLock& lock, QScreen* screen, const OrvelCore::Rect& frame,
                const OrvelCore::OverlayLook& look)
        : lock_(lock), screen_(screen), frame_(frame), look_(look) {}

    OrvelCore::Rect frame() const override { return frame_; }
    bool acceptsKeyboard() const override { return takesKeys_; }
    void setAcceptsKeyboard(bool accepts) override {
        takesKeys_ = accepts;
        if (surface_) surface_->takesKeys = accepts;
    }
    // While the lock is held, the compositor sends all keys to one of the surfaces of the lock.
    bool isKey() const override { return takesKeys_ && lock_.isWanted(); }
    bool owns(OrvelCore::WindowID) const override { return false; }
    void makeKey() override {}
    // The compositor decides the size of each surface.
    void setFrame(const OrvelCore::Rect& frame) override { frame_ = frame; }
    void setContent(const std::optional<LockSurfaceContent>& content) override {
        content_ =
            content
                ? std::dynamic_pointer_cast<OrvelBlur::QtPanelContent>(makeLockContent(*content))
                : nullptr;
        if (surface_) surface_->window().setContent(content_);
        if (preview_) preview_->window.setContent(content_);
    }
    // The desktop is not visible behind a lock, so there is nothing to fade from.
    void show(int, double) override {
        if (surface_ || screen_ == nullptr) return;
        if (!lock_.isWanted() && !lock_.isRefused()) {
            preview_.emplace(lock_.compositor(), *screen_, OrvelUI::Palette::solidColor(look_));
            preview_->window.setContent(content_);
            return;
        }
        surface_.emplace(lock_, *screen_, OrvelUI::Palette::solidColor(look_));
        surface_->takesKeys = takesKeys_;
        surface_->window().setContent(content_);
    }
    // The cover itself stays until the session is unlocked. Otherwise the compositor would show its
    // own colour for a moment.
    void hide(double, std::function<void()> completion) override {
        preview_.reset();
        if (surface_) surface_->window().clear();
        if (completion) completion();
    }
    void remove() override {
        preview_.reset();
        surface_.reset();
    }

  private:
    SessionLock& lock_;
    QScreen* screen_;
    OrvelCore::Rect frame_;
    OrvelCore::OverlayLook look_;
    bool takesKeys_ = false;
    std::shared_ptr<const OrvelBlur::QtPanelContent> content_;
    std::optional<SessionLockSurface> surface_;
    std::optional<Preview> preview_;
};

}  // namespace

KioskSystem waylandKiosk(OrvelSystem::MainLoop& loop, SessionLock& lock) {
    KioskSystem system{.loop = loop,
                       .ownPID = getpid(),
                       .frontmostApp = [] { return std::optional<AppHandle>(); },
                       .setRegular = [] {},
                       .setAccessory = [] {},
                       .activate = [] {},
                       .tryActivate = [&lock] { return lock.isHeld(); },
                       .setPresentationOptions =
                           [&lock](std::uint32_t options) {
                               if (options == 0) lock.unlock();
                           },
                       // The compositor restores the focus by itself.
                       .activateApp = [](const AppHandle&) {}};
    system.activationTimeout = lockPatience;
    // This request hides the desktop, so it is sent before the covers are made.
    system.prepare = [&lock] { lock.request(); };
    system.reassert = [&lock] {
        lock.request();
        return lock.isHeld();
    };
    system.isHeldBySystemLock = [&lock] { return lock.isRefused(); };
    // The compositor reports the end of a lock that is held, but not that a refused one is free.
    system.reportsLosses = [&lock] { return lock.isHeld(); };
    system.observe = [&lock](std::function<void()> disturbed) {
        lock.onChanged = std::move(disturbed);
    };
    return system;
}

LockPresenterSystem waylandLockPresenter(OrvelSystem::MainLoop& loop, SessionLock& lock,
                                         OrvelSystem::Outputs& outputs) {
    LockPresenterSystem system{.loop = loop, .ownPID = getpid()};
    system.displays = [&outputs] {
        std::vector<DisplayInfo> infos;
        for (const auto& output : outputs.list())
            infos.push_back({output.id, output.frame, std::nullopt});
        return infos;
    };
    // A program does not know the position of the pointer, so the card is on the first output.
    system.pointer = [] { return OrvelCore::Point{}; };
    system.makeSurface = [&lock, &outputs](const DisplayInfo& display,
                                           const OrvelCore::OverlayLook& look) {
        return std::make_unique<OutputCover>(lock, outputs.screen(display.id), display.frame, look);
    };
    system.appIsActive = [&lock] { return lock.isHeld(); };
    system.activateApp = [] {};
    system.biometricsAvailable = OrvelAuth::Biometrics::isAvailable;
    system.makeBiometricContext = [&loop] { return OrvelAuth::Biometrics::makeContext(loop); };
    system.evaluateBiometrics = OrvelAuth::Biometrics::evaluate;
    system.reduceMotion = [] { return Appearance::shared().reducesMotion(); };
    system.wallClock = [] { return OrvelCore::Date(std::chrono::system_clock::now()); };
    // No other program can take the keyboard, so there is nothing to observe.
    system.observe = [](const LockPresenterEvents&) { return OrvelCore::Subscription(); };
    return system;
}

}  // namespace OrvelLock
