#import <AppKit/AppKit.h>
#include <gmock/gmock.h>

#include "Support/Scripted.h"

void Scripted::runUntil(const std::function<bool()>& done) {
    NSDate* const limit = [NSDate dateWithTimeIntervalSinceNow:60];
    while (!done()) {
        ASSERT_GT(limit.timeIntervalSinceNow, 0) << "nothing happened";
        // For GNUstep the common modes are another mode, not a set of them.
        for (NSString* mode in @[ NSDefaultRunLoopMode, NSRunLoopCommonModes ])
            [NSRunLoop.currentRunLoop runMode:mode
                                   beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.002]];
    }
}

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    @autoreleasepool {
        [NSApplication sharedApplication];
        return RUN_ALL_TESTS();
    }
}
