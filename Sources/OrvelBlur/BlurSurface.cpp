#include "OrvelBlur/BlurSurface.h"

#include <cmath>
#include <utility>

#include "OrvelBlur/Easing.h"

namespace OrvelBlur {

namespace {

constexpr double frameInterval = 1.0 / 60;

}  // namespace

BlurSurface::BlurSurface(std::unique_ptr<OverlayPanel> panel, BlurBackend backend,
                         const OrvelCore::Color& tint, std::optional<OrvelCore::Color> opaqueFill,
                         double cornerRadius, OrvelSystem::MainLoop& loop)
    : panel_(std::move(panel)), backend_(backend), loop_(loop) {
    if (cornerRadius > 0) panel_->setCornerRadius(cornerRadius);
    if (opaqueFill)
        panel_->setBackdrop(OverlayPanel::Fill{*opaqueFill});
    else if (backend == BlurBackend::skyLight)
        panel_->setBackdrop(OverlayPanel::ServerBlur{});
    else
        panel_->setBackdrop(OverlayPanel::VisualEffect{});
    panel_->setTint(tint);
    apply(0, 0);
}

BlurSurface::~BlurSurface() = default;

void BlurSurface::apply(double progress, int radius) {
    progress_ = progress;
    currentRadius_ = radius;
    // If the radius is refused, the last one stays in effect; tint and grain are still shown.
    if (backend_ == BlurBackend::skyLight) panel_->setRadius(radius);
    for (const auto layer : {OverlayPanel::Layer::effect, OverlayPanel::Layer::tint,
                             OverlayPanel::Layer::grain, OverlayPanel::Layer::content})
        panel_->setOpacity(layer, progress);
    panel_->display();
}

void BlurSurface::setContent(std::shared_ptr<PanelContent> content) {
    panel_->setContent(std::move(content));
    panel_->setOpacity(OverlayPanel::Layer::content, progress_);
    panel_->display();
}

void BlurSurface::show(int radius, double duration, std::optional<OrvelCore::WindowID> above) {
    if (above)
        panel_->orderAbove(*above);
    else
        panel_->orderFrontRegardless();
    fadeIn(radius, duration);
}

void BlurSurface::showBelow(int radius, double duration, OrvelCore::WindowID below) {
    panel_->orderBelow(below);
    fadeIn(radius, duration);
}

void BlurSurface::fadeIn(int radius, double duration) {
    rampTimer_.cancel();
    if (duration > 0)
        startRamp(1, radius, duration, nullptr);
    else
        apply(1, radius);
}

void BlurSurface::hide(double duration, std::function<void()> completion) {
    rampTimer_.cancel();
    auto finish = [this, completion = std::move(completion)] {
        panel_->orderOut();
        if (completion) completion();
    };
    if (duration > 0) {
        startRamp(0, 0, duration, std::move(finish));
    } else {
        apply(0, 0);
        finish();
    }
}

void BlurSurface::rehearse(int radius) {
    apply(1, radius);
    panel_->rehearse();
}

void BlurSurface::setFrame(const OrvelCore::Rect& frame) {
    panel_->setFrame(frame);
    panel_->display();
}

void BlurSurface::remove() {
    rampTimer_.cancel();
    panel_->orderOut();
}

void BlurSurface::startRamp(double progress, int radius, double duration,
                            std::function<void()> completion) {
    // The panel is already ordered in; without this its first frame would wait for the first tick.
    panel_->display();
    const double start = loop_.uptime();
    rampTimer_ = loop_.every(
        frameInterval, [this, start, duration, progress, radius, fromProgress = progress_,
                        fromRadius = currentRadius_, completion = std::move(completion)] {
            const double t = (loop_.uptime() - start) / duration;
            const double eased = Easing::easeOut(t);
            apply(fromProgress + eased * (progress - fromProgress),
                  static_cast<int>(std::round(fromRadius + eased * (radius - fromRadius))));
            if (t < 1) return;
            // Must be last, because either call may destroy this closure or the surface itself.
            const auto done = completion;
            rampTimer_.cancel();
            if (done) done();
        });
}

}  // namespace OrvelBlur
