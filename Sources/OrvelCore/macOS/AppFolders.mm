#include "OrvelCore/AppFolders.h"

#import <Foundation/Foundation.h>

#include "OrvelCore/Brand.h"

namespace OrvelCore {

std::filesystem::path dataFolder() {
    @autoreleasepool {
        NSArray* const found = NSSearchPathForDirectoriesInDomains(NSApplicationSupportDirectory,
                                                                   NSUserDomainMask, YES);
        NSString* const support = found.firstObject;
        const char* const path = support.fileSystemRepresentation;
        // Nobody but root may write at the top, so that writing fails and says so.
        return std::filesystem::path(path ? path : "/") / Brand::name;
    }
}

// The system decides where the folder lies, not the environment.
std::filesystem::path dataFolder(const std::function<const char*(const char*)>&) {
    return dataFolder();
}

std::filesystem::path configFolder() {
    return dataFolder();
}

}  // namespace OrvelCore
