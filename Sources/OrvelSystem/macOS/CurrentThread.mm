#include "OrvelSystem/CurrentThread.h"

#import <Foundation/Foundation.h>
#include <pthread/qos.h>

#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelSystem {

void CurrentThread::describe(const std::string& name, Urgency urgency) {
    @autoreleasepool {
        NSThread.currentThread.name = Cocoa::string(name);
    }
    // `NSThread` can set this only before its thread starts.
    pthread_set_qos_class_self_np(
        urgency == Urgency::userWaits ? QOS_CLASS_USER_INITIATED : QOS_CLASS_UTILITY, 0);
}

}  // namespace OrvelSystem
