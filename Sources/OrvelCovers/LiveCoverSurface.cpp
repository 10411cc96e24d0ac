#include "OrvelCovers/LiveCoverSurface.h"

#include <ranges>
#include <utility>

#include "OrvelCovers/CoverLook.h"

namespace OrvelCovers {

using OrvelBlur::BlurSurface;
using OrvelBlur::OverlayPanel;
using OrvelCore::CoverKind;

namespace {

constexpr OrvelCore::Rect initialFrame{0, 0, 10, 10};

}  // namespace

LiveCoverSurface::LiveCoverSurface(const OrvelCore::CoverRequest& request, Environment environment,
                                   std::function<void()> onClick)
    : request_(request), environment_(std::move(environment)), onClick_(std::move(onClick)) {
    surfaces_.push_back(makeSurface());
}

std::unique_ptr<BlurSurface> LiveCoverSurface::makeSurface() const {
    auto panel = OverlayPanel::make(initialFrame, static_cast<int>(request_.layer));
    panel->setCollectionBehavior(OrvelBlur::CollectionBehavior::attached);
    panel->setWindowsInFront(inFront_);
    panel->setIgnoresMouseEvents(request_.kind == CoverKind::privateApp);
    if (request_.kind == CoverKind::appLock) panel->onClick = onClick_;
    const auto fill =
        environment_.reduceTransparency() ? std::optional(CoverLook::opaqueFill) : std::nullopt;
    return std::make_unique<BlurSurface>(std::move(panel), environment_.backend, CoverLook::tint,
                                         fill, CoverLook::cornerRadius, environment_.loop);
}

OrvelCore::WindowID LiveCoverSurface::windowNumber() const {
    return surfaces_.front()->panel().windowNumber();
}

OrvelCore::WindowID LiveCoverSurface::frontNumber() const {
    return surfaces_.back()->panel().windowNumber();
}

void LiveCoverSurface::place(const OrvelCore::Rect& rect) {
    const auto pieces = OrvelCore::CoverPlanner::pieces(rect, environment_.displays());
    const bool grows = surfaces_.size() < pieces.size();
    while (surfaces_.size() < pieces.size()) {
        auto& added = *surfaces_.emplace_back(makeSurface());
        added.setFrame(pieces[surfaces_.size() - 1]);
        if (shown_) show(added, 0);
    }
    while (surfaces_.size() > pieces.size()) {
        surfaces_.back()->remove();
        surfaces_.pop_back();
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) surfaces_[i]->setFrame(pieces[i]);
    // A piece that is shown later comes directly above the window, below the first piece.
    if (grows && shown_) order(request_.window);
}

/// Stack in reverse, so that the first piece ends up directly above the window:
/// `CoverController::apply` checks that one.
void LiveCoverSurface::order(OrvelCore::WindowID above) {
    for (const auto& surface : surfaces_ | std::views::reverse) surface->panel().orderAbove(above);
}

void LiveCoverSurface::drawInFront(const std::vector<OrvelCore::WindowID>& windows) {
    inFront_ = windows;
    for (const auto& surface : surfaces_) surface->panel().setWindowsInFront(windows);
}

void LiveCoverSurface::show(bool fade) {
    shown_ = true;
    for (const auto& surface : surfaces_) show(*surface, fade ? fadeIn : 0);
}

/// In its place from the first frame on, so that it never covers what is in front of the window.
void LiveCoverSurface::show(BlurSurface& surface, double duration) const {
    surface.show(CoverLook::radius, duration, request_.window);
}

void LiveCoverSurface::remove() {
    for (const auto& surface : surfaces_) surface->remove();
}

}  // namespace OrvelCovers
