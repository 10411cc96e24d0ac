#pragma once

#include <memory>
#include <utility>

#include "OrvelBlur/BlurSurface.h"
#include "OrvelLock/LockSurface.h"

namespace OrvelLock {

/// The card or the pill, drawn by the platform's toolkit. Each toolkit implements it.
std::shared_ptr<OrvelBlur::PanelContent> makeLockContent(const LockSurfaceContent& content);

/// A cover made of a blur surface with such a content on top.
class LiveLockSurface final : public LockSurface {
  public:
    explicit LiveLockSurface(std::unique_ptr<OrvelBlur::BlurSurface> surface)
        : surface_(std::move(surface)) {}

    OrvelCore::Rect frame() const override { return surface_->frame(); }
    bool acceptsKeyboard() const override { return surface_->panel().acceptsKeyboard; }
    void setAcceptsKeyboard(bool accepts) override { surface_->panel().acceptsKeyboard = accepts; }
    bool isKey() const override { return surface_->panel().isKeyWindow(); }
    bool owns(OrvelCore::WindowID window) const override { return surface_->panel().owns(window); }
    void makeKey() override { surface_->panel().makeKeyAndOrderFront(); }
    void setFrame(const OrvelCore::Rect& frame) override { surface_->setFrame(frame); }
    void setContent(const std::optional<LockSurfaceContent>& content) override {
        surface_->setContent(content ? makeLockContent(*content) : nullptr);
    }
    void show(int radius, double duration) override { surface_->show(radius, duration); }
    void hide(double duration, std::function<void()> completion) override {
        surface_->hide(duration, std::move(completion));
    }
    void remove() override { surface_->remove(); }

  private:
    std::unique_ptr<OrvelBlur::BlurSurface> surface_;
};

}  // namespace OrvelLock
