#pragma once

#include <functional>
#include <memory>

#import <Foundation/Foundation.h>

#include "OrvelCore/WeakList.h"

namespace OrvelSystem {

/// Calls `tell` on the main thread for each notification of that name, until the token is
/// destroyed: at once for one that is posted there, else in a later turn of the loop.
[[nodiscard]] OrvelCore::Subscription observeNotification(
    NSNotificationCenter* center, NSNotificationName name,
    std::function<void(NSNotification*)> tell);

}  // namespace OrvelSystem
