#pragma once

#include <functional>
#include <memory>

#import <Foundation/Foundation.h>

namespace OrvelSystem {

/// Calls `tell` on the main thread for each notification of that name, until the token is
/// destroyed.
[[nodiscard]] std::shared_ptr<void> observeNotification(NSNotificationCenter* center,
                                                        NSNotificationName name,
                                                        std::function<void(NSNotification*)> tell);

}  // namespace OrvelSystem
