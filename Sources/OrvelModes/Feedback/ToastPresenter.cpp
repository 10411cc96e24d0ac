#include "OrvelModes/Feedback/ToastPresenter.h"

#include <algorithm>
#include <utility>

namespace OrvelModes {

namespace {

/// Seconds between two frames of the fade.
constexpr double frame = 1.0 / 60;

}  // namespace

ToastPresenter::ToastPresenter(OrvelSystem::MainLoop& loop, ToastSystem system)
    : loop_(loop), system_(std::move(system)) {}

ToastPresenter::~ToastPresenter() = default;

void ToastPresenter::show(const std::string& title, const std::optional<std::string>& detail,
                          const std::string& symbol) {
    const auto screens = system_.screens();
    if (screens.empty()) return;
    const auto pointer = system_.pointer();
    auto screen = std::ranges::find_if(
        screens, [&](const OrvelCore::Rect& display) { return display.contains(pointer); });
    if (screen == screens.end()) screen = screens.begin();
    if (!panel_) panel_ = system_.makePanel();
    panel_->show(OrvelUI::ToastPill::content(title, detail, symbol, std::nullopt,
                                             system_.increasedContrast()),
                 *screen);
    timer_ = loop_.after(visibleFor, [this] { fadeOut(); });
}

void ToastPresenter::fadeOut() {
    if (system_.reduceMotion()) return panel_->orderOut();
    timer_ = loop_.every(frame, [this, start = loop_.uptime()] {
        const double left = 1 - (loop_.uptime() - start) / fade;
        if (left > 0) return panel_->setAlpha(left);
        timer_.cancel();
        panel_->orderOut();
    });
}

}  // namespace OrvelModes
