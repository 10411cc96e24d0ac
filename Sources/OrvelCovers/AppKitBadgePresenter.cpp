#include "OrvelCovers/AppKitBadgePresenter.h"

#include <cmath>
#include <utility>

#include "OrvelUI/CardContent.h"

namespace OrvelCovers {

using OrvelCore::Rect;
using OrvelUI::AppLockBadgeContent;

namespace {

constexpr Rect initialFrame{0, 0, 10, 10};

}  // namespace

Rect badgeFrame(const Rect& over, bool unlocking, double scale) {
    const auto size = unlocking ? AppLockBadgeContent::openSize : AppLockBadgeContent::compactSize;
    const double width = size.width * scale;
    const double height = size.height * scale;
    return {std::round(over.x + over.width / 2 - width / 2),
            std::round(over.y + over.height / 2 - height / 2), width, height};
}

AppKitBadgePresenter::AppKitBadgePresenter(System system) : system_(std::move(system)) {}
AppKitBadgePresenter::~AppKitBadgePresenter() = default;

AppKitBadgePresenter::Badge* AppKitBadgePresenter::find(std::int64_t pid) {
    const auto found = badges_.find(pid);
    return found == badges_.end() ? nullptr : &found->second;
}

void AppKitBadgePresenter::show(std::int64_t pid, std::shared_ptr<OrvelUI::LockCardModel> model) {
    auto panel = system_.makePanel(initialFrame, OrvelBlur::WindowLevel::normal);
    panel->acceptsKeyboard = true;
    panel->setCollectionBehavior(OrvelBlur::CollectionBehavior::attached);
    // Keeps the card's field up to date however the panel loses the keyboard.
    panel->onKeyChanged = lifetime_.guard([this, pid] { keyChanged(pid); });
    panel->onCancel = lifetime_.guard([this, pid] { onCancelUnlock(pid); });
    auto& badge = badges_[pid] = Badge{.panel = std::move(panel), .model = std::move(model)};
    render(pid, badge);
}

void AppKitBadgePresenter::render(std::int64_t pid, Badge& badge) {
    badge.panel->setContent(system_.makeContent(
        badge.model, badge.unlocking, lifetime_.guard([this, pid] { onRequestUnlock(pid); }),
        lifetime_.guard([this, pid] { onCancelUnlock(pid); })));
    layOut(badge);
}

void AppKitBadgePresenter::layOut(Badge& badge) const {
    const Rect over = badge.windowRect ? *badge.windowRect : system_.visibleFrame();
    badge.panel->setFrame(badgeFrame(over, badge.unlocking, system_.scale()));
    badge.panel->display();
}

void AppKitBadgePresenter::place(std::int64_t pid, const Rect& over,
                                 std::optional<OrvelCore::WindowID> above) {
    auto* const badge = find(pid);
    if (!badge || (badge->windowRect == over && badge->cover == above)) return;
    badge->windowRect = over;
    badge->cover = above;
    layOut(*badge);
    if (!badge->panel->isVisible()) badge->panel->orderFrontRegardless();
    if (above) badge->panel->orderAbove(*above);
    badge->panel->display();
}

void AppKitBadgePresenter::drawInFront(std::int64_t pid,
                                       const std::vector<OrvelCore::WindowID>& windows) {
    auto* const badge = find(pid);
    if (!badge) return;
    badge->inFront = windows;
    if (!badge->unlocking) badge->panel->setWindowsInFront(windows);
}

void AppKitBadgePresenter::hide(std::int64_t pid) {
    auto* const badge = find(pid);
    if (!badge || !badge->panel->isVisible()) return;
    badge->panel->orderOut();
    badge->windowRect.reset();
    badge->cover.reset();
}

void AppKitBadgePresenter::setUnlocking(std::int64_t pid, bool unlocking) {
    auto* const badge = find(pid);
    if (!badge) return;
    badge->unlocking = unlocking;
    // The card that takes the password is in front of all windows.
    badge->panel->setWindowsInFront(unlocking ? std::vector<OrvelCore::WindowID>()
                                              : badge->inFront);
    render(pid, *badge);
}

bool AppKitBadgePresenter::takeKeyboard(std::int64_t pid) {
    auto* const badge = find(pid);
    if (!badge) return false;
    badge->panel->makeKeyAndOrderFront();
    // Ordering to the front uses a list of windows that may not yet contain a cover that has just
    // been made or moved.
    if (badge->cover) {
        const auto cover = *badge->cover;
        if (!system_.isAbove(badge->panel->windowNumber(), cover)) badge->panel->orderAbove(cover);
    }
    const bool isKey = badge->panel->isKeyWindow();
    badge->model->hasKeyboard.set(isKey);
    return isKey;
}

bool AppKitBadgePresenter::holdsKeyboard(std::int64_t pid) const {
    const auto badge = badges_.find(pid);
    return badge != badges_.end() && badge->second.panel->isKeyWindow();
}

void AppKitBadgePresenter::remove(std::int64_t pid) {
    const auto badge = badges_.extract(pid);
    if (!badge.empty()) badge.mapped().panel->orderOut();
}

void AppKitBadgePresenter::keyChanged(std::int64_t pid) {
    if (auto* const badge = find(pid)) badge->model->hasKeyboard.set(badge->panel->isKeyWindow());
}

}  // namespace OrvelCovers
