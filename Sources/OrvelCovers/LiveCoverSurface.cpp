#include "OrvelCovers/LiveCoverSurface.h"

#include <utility>

#include "OrvelCovers/CoverLook.h"

namespace OrvelCovers {

using OrvelBlur::BlurSurface;
using OrvelBlur::OverlayPanel;
using OrvelCore::CoverKind;

namespace {

constexpr OrvelCore::Rect initialFrame{0, 0, 10, 10};

}  // namespace

LiveCoverSurface::LiveCoverSurface(const OrvelCore::CoverRequest& request, Setting setting,
                                   std::function<void()> onClick)
    : request_(request), setting_(std::move(setting)), onClick_(std::move(onClick)) {
    surfaces_.push_back(makeSurface());
}

std::unique_ptr<BlurSurface> LiveCoverSurface::makeSurface() const {
    auto panel = OverlayPanel::make(initialFrame, static_cast<int>(request_.layer));
    panel->setCollectionBehavior(OrvelBlur::CollectionBehavior::attached);
    panel->setIgnoresMouseEvents(request_.kind == CoverKind::privateApp);
    if (request_.kind == CoverKind::appLock) panel->onClick = onClick_;
    const auto fill =
        setting_.reduceTransparency() ? std::optional(CoverLook::opaqueFill) : std::nullopt;
    return std::make_unique<BlurSurface>(std::move(panel), setting_.backend, CoverLook::tint, fill,
                                         CoverLook::cornerRadius, setting_.loop);
}

std::int64_t LiveCoverSurface::windowNumber() const {
    return static_cast<std::int64_t>(surfaces_.front()->panel().windowNumber());
}

void LiveCoverSurface::place(const OrvelCore::Rect& rect) {
    const auto pieces = OrvelCore::CoverPlanner::pieces(rect, setting_.displays());
    while (surfaces_.size() < pieces.size()) {
        const auto& piece = pieces[surfaces_.size()];
        auto& added = *surfaces_.emplace_back(makeSurface());
        added.setFrame(piece);
        if (!shown_) continue;
        added.show(CoverLook::radius, 0);
        if (target_) added.panel().orderAbove(static_cast<std::uint64_t>(*target_));
    }
    while (surfaces_.size() > pieces.size()) {
        surfaces_.back()->remove();
        surfaces_.pop_back();
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) surfaces_[i]->setFrame(pieces[i]);
}

void LiveCoverSurface::order(std::int64_t above) {
    target_ = above;
    for (const auto& surface : surfaces_)
        surface->panel().orderAbove(static_cast<std::uint64_t>(above));
}

void LiveCoverSurface::show(bool fade) {
    shown_ = true;
    for (const auto& surface : surfaces_) surface->show(CoverLook::radius, fade ? fadeIn : 0);
}

void LiveCoverSurface::remove() {
    for (const auto& surface : surfaces_) surface->remove();
}

}  // namespace OrvelCovers
