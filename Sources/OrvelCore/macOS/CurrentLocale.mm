#import <Foundation/Foundation.h>

#include "OrvelCore/Text.h"

namespace OrvelCore {

// An agent that launchd starts has no locale in its environment. The system's identifier contains
// the user's region and, as a keyword, the choice between the 12-hour and the 24-hour clock.
Locale currentLocale() {
    @autoreleasepool {
        const char* const name = NSLocale.currentLocale.localeIdentifier.UTF8String;
        return {name ? name : "en_US_POSIX"};
    }
}

}  // namespace OrvelCore
