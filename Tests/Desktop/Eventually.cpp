#include "Eventually.h"

namespace DesktopTest {

namespace {

constexpr std::chrono::milliseconds pause{20};

}  // namespace

bool eventually(const std::function<bool()>& holds, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    for (;;) {
        if (holds()) return true;
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(pause);
    }
}

bool stays(const std::function<bool()>& holds, std::chrono::milliseconds period) {
    return !eventually([&] { return !holds(); }, period);
}

}  // namespace DesktopTest
