#include "OrvelCovers/Ticker.h"

#include <utility>

namespace OrvelCovers {

void TimerTicker::start(double interval, std::function<void()> tick) {
    timer_ = loop_.every(interval, std::move(tick));
    interval_ = interval;
}

void TimerTicker::stop() {
    timer_.cancel();
}

}  // namespace OrvelCovers
