#include "OrvelUI/Qt/FrameTimer.h"

#include <utility>

namespace OrvelUI {

void FrameTimer::start(std::function<bool(double)> frame) {
    frame_ = std::move(frame);
    clock_.start();
    timer_.start(16, Qt::PreciseTimer, this);
}

void FrameTimer::stop() {
    timer_.stop();
}

void FrameTimer::timerEvent(QTimerEvent*) {
    if (!frame_(static_cast<double>(clock_.nsecsElapsed()) / 1e9)) timer_.stop();
}

}  // namespace OrvelUI
