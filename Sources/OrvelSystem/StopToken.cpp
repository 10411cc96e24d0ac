#include "OrvelSystem/StopToken.h"

#include <utility>

namespace OrvelSystem {

bool StopToken::isStopRequested() const {
    if (!state_) return false;
    const std::scoped_lock lock(state_->mutex);
    return state_->isRequested;
}

void StopSource::requestStop() const {
    const std::scoped_lock lock(state_->mutex);
    if (std::exchange(state_->isRequested, true)) return;
    for (const auto& call : state_->callbacks) call();
}

StopCallback::StopCallback(const StopToken& token, std::function<void()> call)
    : state_(token.state_) {
    if (!state_) return;
    const std::scoped_lock lock(state_->mutex);
    if (state_->isRequested) call();
    position_ = state_->callbacks.insert(state_->callbacks.end(), std::move(call));
}

StopCallback::~StopCallback() {
    if (!state_) return;
    const std::scoped_lock lock(state_->mutex);
    state_->callbacks.erase(position_);
}

}  // namespace OrvelSystem
