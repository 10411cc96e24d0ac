#include "OrvelSystem/Wayland/IdleTime.h"

#include <ext-idle-notify-v1.h>

namespace OrvelSystem {

namespace {

constexpr double noticed = 1;  // seconds

}  // namespace

IdleTime::IdleTime(const Compositor& compositor, MainLoop& loop) : loop_(loop) {
    auto* const seat = Compositor::seat();
    if (compositor.idleNotifier == nullptr || seat == nullptr) return;
    static constexpr ext_idle_notification_v1_listener listener{
        .idled =
            [](void* data, ext_idle_notification_v1*) {
                auto& self = *static_cast<IdleTime*>(data);
                self.idleSince_ = self.loop_.uptime() - noticed;
            },
        .resumed =
            [](void* data, ext_idle_notification_v1*) {
                static_cast<IdleTime*>(data)->idleSince_.reset();
            }};
    notification_ = ext_idle_notifier_v1_get_idle_notification(
        compositor.idleNotifier, static_cast<std::uint32_t>(noticed * 1000), seat);
    ext_idle_notification_v1_add_listener(notification_, &listener, this);
}

IdleTime::~IdleTime() {
    if (notification_ != nullptr) ext_idle_notification_v1_destroy(notification_);
}

double IdleTime::seconds() const {
    return idleSince_ ? loop_.uptime() - *idleSince_ : 0;
}

}  // namespace OrvelSystem
