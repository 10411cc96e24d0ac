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
        // Only root can write to "/", so a write fails with an error.
        return std::filesystem::path(path ? path : "/") / Brand::name;
    }
}

// The system determines the folder, not the environment.
std::filesystem::path dataFolder(const std::function<const char*(const char*)>&) {
    return dataFolder();
}

std::filesystem::path configFolder() {
    return dataFolder();
}

}  // namespace OrvelCore
