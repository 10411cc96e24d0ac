#include "OrvelModes/Blur/SleepController.h"

#include <utility>

namespace OrvelModes {

using OrvelCore::SleepLock;

SleepController::SleepController(OrvelSystem::MainLoop& loop, SleepSources sources)
    : loop_(loop), sources_(std::move(sources)) {}

void SleepController::screenCovered() {
    settled_ = loop_.after(SleepLock::settling, [this] { handle(SleepLock::Event::screenHidden); });
}

void SleepController::handle(SleepLock::Event event) {
    for (const auto effect : rules_.handle(event, sources_.situation())) {
        switch (effect) {
            case SleepLock::Effect::delaySleep:
                sources_.delaySleep(true);
                break;
            case SleepLock::Effect::allowSleep:
                settled_.cancel();
                limit_.cancel();
                sources_.delaySleep(false);
                break;
            case SleepLock::Effect::lock:
                settled_.cancel();
                limit_ = loop_.after(SleepLock::patience,
                                     [this] { handle(SleepLock::Event::delayEnded); });
                sources_.lock();
                break;
        }
    }
}

}  // namespace OrvelModes
