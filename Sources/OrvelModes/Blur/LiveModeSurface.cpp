#include "OrvelModes/Blur/LiveModeSurface.h"

#include <utility>

#include "OrvelUI/Palette.h"

namespace OrvelModes {

using OrvelBlur::BlurSurface;
using OrvelBlur::OverlayPanel;
namespace CollectionBehavior = OrvelBlur::CollectionBehavior;
namespace Palette = OrvelUI::Palette;

namespace {

constexpr OrvelCore::Rect initialFrame{0, 0, 10, 10};
/// Seconds; long enough that competing with another program for the keyboard costs nothing.
constexpr double retakeAfter = 0.25;

}  // namespace

LiveModeSurface::LiveModeSurface(Options options) : options_(std::move(options)) {
    auto panel = OverlayPanel::make(initialFrame, options_.level);
    panel->acceptsKeyboard = options_.keyboard;
    panel->setIgnoresMouseEvents(options_.passesClicks);
    panel->setCollectionBehavior(options_.stationary ? CollectionBehavior::overlay
                                                     : CollectionBehavior::attached);
    panel->onCancel = lifetime_.guard([this] {
        const auto cancelled = onCancel;
        if (cancelled) cancelled();
    });
    if (options_.keyboard) {
        panel->onClick = lifetime_.guard([this] {
            if (wantsKeyboard_) takeKeyboard();
        });
        panel->onKeyChanged = lifetime_.guard([this] { keyChanged(); });
    }
    const auto fill =
        options_.look.solid ? std::optional(Palette::solidColor(options_.look)) : std::nullopt;
    surface_ =
        std::make_shared<BlurSurface>(std::move(panel), options_.backend,
                                      Palette::tintColor(options_.look), fill, 0, options_.loop);
}

std::function<std::unique_ptr<ModeSurface>(bool)> LiveModeSurface::forQuickBlur(
    OrvelSystem::MainLoop& loop, OrvelBlur::BlurBackend backend,
    std::function<OrvelCore::OverlayLook()> look, std::function<bool()> macLocked) {
    return
        [&loop, backend, look = std::move(look), macLocked = std::move(macLocked)](bool keyboard) {
            Options options{.loop = loop, .backend = backend};
            options.level = OrvelBlur::WindowLevel::quickBlur;
            options.keyboard = keyboard;
            options.stationary = true;
            options.look = look();
            options.mayRetakeKeyboard = [macLocked] { return !macLocked(); };
            return std::make_unique<LiveModeSurface>(std::move(options));
        };
}

std::function<std::unique_ptr<ModeSurface>()> LiveModeSurface::forFocusBlur(
    OrvelSystem::MainLoop& loop, OrvelBlur::BlurBackend backend,
    std::function<OrvelCore::OverlayLook()> look) {
    return [&loop, backend, look = std::move(look)] {
        Options options{.loop = loop, .backend = backend};
        options.level = OrvelBlur::WindowLevel::normal;
        options.passesClicks = true;
        options.look = look();
        return std::make_unique<LiveModeSurface>(std::move(options));
    };
}

OrvelCore::WindowID LiveModeSurface::windowNumber() const {
    return surface_->panel().windowNumber();
}

void LiveModeSurface::setContent(std::shared_ptr<OrvelBlur::PanelContent> content) {
    surface_->setContent(std::move(content));
}

void LiveModeSurface::place(const OrvelCore::Rect& rect) {
    surface_->setFrame(rect);
}

void LiveModeSurface::show(double duration) {
    // At the level of other programs' windows, the surface is shown when it gets its place in the
    // stacking order: at the front it would briefly cover the window in use.
    if (options_.level == OrvelBlur::WindowLevel::normal)
        pendingFade_ = duration;
    else
        surface_->show(options_.look.radius, duration);
}

void LiveModeSurface::hide(double duration) {
    wantsKeyboard_ = false;
    pendingFade_.reset();
    retake_.cancel();
    surface_->hide(duration, [surface = surface_] { surface->setContent(nullptr); });
}

void LiveModeSurface::takeKeyboard() {
    wantsKeyboard_ = true;
    surface_->panel().makeKeyAndOrderFront();
}

// A window that opens behind the surface may get the keyboard. Escape would then go to that hidden
// window instead of ending the mode.
void LiveModeSurface::keyChanged() {
    if (!wantsKeyboard_ || surface_->panel().isKeyWindow()) return;
    retake_ = options_.loop.after(retakeAfter, [this] {
        if (wantsKeyboard_ && !surface_->panel().isKeyWindow() && options_.mayRetakeKeyboard())
            takeKeyboard();
    });
}

void LiveModeSurface::order(OrvelCore::WindowID below) {
    if (const auto duration = std::exchange(pendingFade_, {}))
        surface_->showBelow(options_.look.radius, *duration, below);
    else
        surface_->panel().orderBelow(below);
}

void LiveModeSurface::orderFront() {
    if (const auto duration = std::exchange(pendingFade_, {})) {
        surface_->show(options_.look.radius, *duration);
    } else {
        surface_->panel().orderFrontRegardless();
        surface_->panel().display();
    }
}

void LiveModeSurface::leaveOpen(const std::vector<OrvelCore::Rect>& parts) {
    surface_->panel().setOpenings(parts);
}

}  // namespace OrvelModes
