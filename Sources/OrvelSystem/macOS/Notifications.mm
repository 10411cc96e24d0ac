#include "OrvelSystem/macOS/Notifications.h"

#include <utility>

namespace OrvelSystem {

namespace {

// The call may destroy the token, and the block that holds `tell` with it.
void call(std::function<void(NSNotification*)> tell, NSNotification* notification) {
    tell(notification);
}

}  // namespace

OrvelCore::Subscription observeNotification(NSNotificationCenter* center, NSNotificationName name,
                                          std::function<void(NSNotification*)> tell) {
    const auto alive = std::make_shared<bool>(true);
    const std::weak_ptr<bool> observed = alive;
    id token = [center addObserverForName:name
                                   object:nil
                                    queue:nil
                               usingBlock:^(NSNotification* notification) {
                                 if (NSThread.isMainThread) return call(tell, notification);
                                 dispatch_async(dispatch_get_main_queue(), ^{
                                   if (!observed.expired()) call(tell, notification);
                                 });
                               }];
    return {nullptr, [center, token, alive](void*) { [center removeObserver:token]; }};
}

}  // namespace OrvelSystem
